#include "definition/directivecatalogue.h"

#include "platform/system/text/text.h"

namespace varnik {

namespace {

constexpr std::string_view kNoRoot = "Don't include @rootdir\\";
constexpr std::string_view kExact = "Must match Exactly";
constexpr std::string_view kLength = "Keep Length in Mind";

}  // namespace

const std::array<DirectiveInfo, 27> Directives = {{
    {"<Blank>", "Blank Line"},
    {"Include", "Includes another BZM-Format file", 1, "Filename", kNoRoot},
    {"SetDirectory", "Ignored by Varnik(?), used in the FE Launcher.", 2, "Ignored1(?)", "Ignored1(?)", "Ignored2(?)",
     "Ignored2(?)"},
    {"DName", "Descriptive name for the mod", 1, "Name", "Don't go too long"},
    {"Description", "Description for the Mod", 1, "Description", "Don't worry about length"},
    {"DescriptionF", "Description File for the Mod", 1, "Filename", kNoRoot},
    {"Image", "Image for the Mod Screen", 1, "Filename", kNoRoot},
    {"Splash", "Image for a Splash Screen", 1, "Filename", kNoRoot},
    {"Version", "BZ2 Version Required for Mod", 3, "Version 1", kExact, "Version 2", kExact, "Version 3", kExact},
    {"RequireFile", "Require a file for the Mod", 1, "Filename", kNoRoot},
    {"RequireFolder", "Require a folder for the Mod", 1, "Folder name", kNoRoot},
    {"RequireEXE", "EXE to run for Mod", 2, "Filename", kNoRoot, "Deactivate Command Line Option",
     "Don't include the filename"},
    {"Rename", "Rename and/or move a file", 2, "Old File", kNoRoot, "New File", kNoRoot},
    {"Replace", "Replace one file with another", 3, "Old File", kNoRoot, "New File", kNoRoot, "Backup File", kNoRoot},
    {"RenameEX", "Replace one file with another", 3, "Old File", kNoRoot, "New File", kNoRoot, "Backup File", kNoRoot},
    {"Pak", "Pak for Generated bzone.cfg file", 1, "Filename", kNoRoot},
    {"Fold", "Fold for Generated bzone.cfg file", 1, "Foldername", kNoRoot},
    {"DefaultName", "Default Server Name, 1.3 Only", 1, "Name", kLength},
    {"DefaultPass", "Default Server Pass, 1.3 Only", 1, "Password", kLength},
    {"DefaultMSG", "Default Server Message, 1.3 Only", 1, "Message", kLength},
    {"RaceName", "Race Name, 1.3 Only", 2, "Starting letter", "Letter that the ODFs start with", "Race Name",
     "Name of the race"},
    {"activated", "Activate/Deactivate Mod Trigger"},
    {"writeid", "Create Dummy ID File", 1, "Dummy Text", "Not really important"},
    {"activatedfold", "Activation Detection: Folder", 1, "Folder", "Folder Name"},
    {"activatedfile", "Activation Detection: File", 1, "File", "File Name"},
    {"activatedrecy", "1.3: Activation Detection: Recy ODF", 2, "ODF", "Recycler ODF Name", "OPT: File",
     "Optional Recycler file"},
    {"addrecy", "1.3: Recycler ODF addition", 3, "ODF", "Recycler ODF Name", "Description", "Recycler Description",
     "OPT: File", "Optional Recycler File"},
}};

std::string_view DirectiveInfo::ParamName(int number) const {
  const std::string_view names[] = {Param1Name, Param2Name, Param3Name};
  return number >= 1 && number <= 3 ? names[number - 1] : "";
}

std::string_view DirectiveInfo::ParamNote(int number) const {
  const std::string_view notes[] = {Param1Note, Param2Note, Param3Note};
  return number >= 1 && number <= 3 ? notes[number - 1] : "";
}

int FindDirective(std::string_view keyword) {
  for (int row = 1; row < static_cast<int>(Directives.size()); ++row)
    if (win::EqualNoCase(Directives[row].Keyword, keyword)) return row;
  return 0;
}

}  // namespace varnik
