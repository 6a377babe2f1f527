#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "definition/directive.h"
#include "modengine/catalogue.h"
#include "platform/system/files/lines.h"
#include "platform/system/paths/paths.h"

namespace varnik::cli {

namespace {

Json FoldersAsJson(const ModEntry& mod) {
  Json folders = Json::array();
  for (std::size_t i = 1; i < mod.Folders.size(); ++i)
    folders.push_back(Text(mod.Folders[i]));
  return folders;
}

Json RenamesAsJson(const ModEntry& mod) {
  Json renames = Json::array();
  for (std::size_t i = 1; i < mod.Renames.size(); ++i)
    renames.push_back(Json::array({Text(mod.Renames[i].From), Text(mod.Renames[i].To)}));
  return renames;
}

Json AsJson(const ModEntry& mod) {
  return {{"Name", Text(mod.Name)},
          {"Description", Text(mod.Description)},
          {"Image", Text(mod.Image)},
          {"Splash", Text(mod.Splash)},
          {"DefinitionFile", Text(mod.DefinitionFile)},
          {"State", mod.State},
          {"Standard", mod.Standard},
          {"ExeDeactivates", mod.ExeDeactivates},
          {"Legacy", mod.Legacy},
          {"MarkedX", mod.MarkedX},
          {"Folders", FoldersAsJson(mod)},
          {"Renames", RenamesAsJson(mod)}};
}

std::vector<std::string> AsRow(const ModEntry& mod) {
  return {win::FileNameOf(mod.DefinitionFile), ModRowText(mod),
          mod.Legacy     ? "legacy"
          : mod.Standard ? ""
                         : "own EXE",
          FirstLine(mod.Description)};
}

}  // namespace

int ListMods(const Arguments& arguments) {
  LoadModList();
  Json list = Json::array();
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 1; i < ModList.size(); ++i) {
    if (arguments.json)
      list.push_back(AsJson(ModList[i]));
    else
      rows.push_back(AsRow(ModList[i]));
  }
  return arguments.json ? Print(list) : PrintTable({"Definition", "Name", "Kind", "Description"}, rows);
}

int ParseFile(const Arguments& arguments) {
  win::LineReader file(GivenPath(arguments.file));
  if (!file.IsOpen()) return Fail(arguments.file, "cannot be read");
  Json lines = Json::array();
  std::vector<std::vector<std::string>> rows;
  while (!file.AtEnd()) {
    Args args;
    std::string comment;
    ParseDirective(file.ReadLine(), args, comment);
    Json texts = Json::array();
    std::string shown;
    for (const std::string& arg : args) {
      texts.push_back(Text(arg));
      shown += (shown.empty() ? "" : " | ") + arg;
    }
    lines.push_back({{"Line", lines.size() + 1}, {"Args", std::move(texts)}, {"Comment", Text(comment)}});
    rows.push_back({std::to_string(lines.size()), shown, comment});
  }
  return arguments.json ? Print(lines) : PrintTable({"Line", "Directive | arguments", "Comment"}, rows);
}

}  // namespace varnik::cli
