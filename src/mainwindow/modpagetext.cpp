#include "mainwindow/modpagetext.h"

#include "definition/includes.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

namespace varnik {

namespace {

constexpr char kLineBreak[] = "\r\n";
constexpr char kCreditLine[] = "Written by the Varnik developers for the players of Battlezone II.";

std::string ReadmeText() {
  const std::string readme = AppPath + "Readme.txt";
  if (!FileExists(readme)) return "";
  std::string text =
      std::string(kLineBreak) + kLineBreak + "Varnik Readme:" + kLineBreak + std::string(100, '-') + kLineBreak;
  return text + win::ReadWholeFile(readme).value_or("");
}

}  // namespace

std::string NoModText() {
  const char* lines[] = {
      "Mods with (ACTIVE) shown below may also be used.",
      "",
      kCreditLine,
      "",
      IsVersion13() ? "Varnik has options only availiable with Battlezone II Version 1.3. They have been enabled for "
                      "this install."
                    : "Varnik has options only availiable with Battlezone II Version 1.3. They have been disabled for "
                      "this install.",
      "",
      "You may want to check out the Options screen, you can get to it from the Varnik menu.",
  };
  std::string text = std::string("Standalone Battlezone II") + kLineBreak + "Version " + InstallVersion() +
                     " right out of the box, plus any maps you installed :)" + kLineBreak;
  for (const char* line : lines)
    text += kLineBreak + std::string(line);
  return text + ReadmeText();
}

std::string ModText(const ModEntry& mod) {
  const std::string gap = std::string(kLineBreak) + kLineBreak;
  std::string text = mod.Description;
  if (win::Trim(text).empty()) text = "Sorry, but " + mod.Name + " has no description.";
  if (!mod.ExeDeactivates && !mod.Standard)
    text = "Caution: Emergeny deactivation is NOT available for this mod." + gap + text;
  if (!mod.Standard)
    text =
        "This mod is a seperate EXE that Varnik has no control over. Thus, Map and Command line information are not "
        "available." +
        gap + text;
  if (mod.Legacy)
    text =
        "This mod is in the older Halder style. You may want to contact the creator of the mod to get a newer "
        "definition file." +
        gap + text;
  return text;
}

std::string ModPicture(const ModEntry& mod) { return mod.Image.empty() ? "" : FindModFile(mod.Image); }

}  // namespace varnik
