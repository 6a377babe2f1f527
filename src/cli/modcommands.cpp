#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "definition/directive.h"
#include "modengine/catalogue.h"
#include "platform/system/files/lines.h"
#include "platform/system/paths/paths.h"

#include <span>

namespace varnik::cli {

namespace {

Json AsJson(const ModEntry& mod) {
  Json folders = Json::array();
  for (std::size_t i = 1; i < mod.Folders.size(); ++i)
    folders.push_back(Text(mod.Folders[i]));
  Json renames = Json::array();
  for (std::size_t i = 1; i < mod.Renames.size(); ++i)
    renames.push_back(Json::array({Text(mod.Renames[i].From), Text(mod.Renames[i].To)}));
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
          {"Folders", std::move(folders)},
          {"Renames", std::move(renames)}};
}

Row AsRow(const ModEntry& mod) {
  return {win::FileNameOf(mod.DefinitionFile), ModRowText(mod),
          mod.Legacy     ? "legacy"
          : mod.Standard ? ""
                         : "own EXE",
          FirstLine(mod.Description)};
}

}  // namespace

int ListMods(const Arguments& arguments) {
  LoadModList();
  return PrintList(arguments.json, std::span(ModList).subspan(1), AsJson, {"Definition", "Name", "Kind", "Description"},
                   AsRow);
}

int ParseFile(const Arguments& arguments) {
  if (!OpenInstallIfAny(arguments)) return kFailed;
  win::LineReader file(FindFileToLookAt(arguments.file));
  if (!file.IsOpen()) return Fail(arguments.file, "cannot be read");
  Json lines = Json::array();
  std::vector<Row> rows;
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
