#include "cli/commandtable.h"

#include "cli/commands.h"
#include "maps/mapclass.h"

#include <CLI/CLI.hpp>

namespace varnik::cli {

namespace {

void DeclareMod(CLI::App& app, Arguments& arguments) {
  app.add_option("MOD", arguments.mod, "File name of a definition in the catalogue, or a path to one")
      ->required()
      ->type_name("");
}

void DeclareFile(CLI::App& app, Arguments& arguments) {
  app.add_option("FILE", arguments.file, "File name of a definition in the catalogue, or a path to any file")
      ->required()
      ->type_name("");
}

void DeclareRow(CLI::App& app, Arguments& arguments) {
  app.add_option("N", arguments.index, "Number of the install in the list, from 0")->required()->type_name("");
}

void DeclareAddInstall(CLI::App& app, Arguments& arguments) {
  app.add_option("DIR", arguments.folder, "Folder of the install")->required()->type_name("");
  app.add_option("--description", arguments.description, "What the menus call it; without: its version and folder");
}

void DeclareMapAndEdit(CLI::App& app, Arguments& arguments) {
  app.add_option("--map", arguments.map, "File name of the map to load, .bzn or .trn")->type_name("NAME");
  app.add_flag("--edit", arguments.edit, "Start the game's editor, which needs a map");
}

void DeclareRun(CLI::App& app, Arguments& arguments) {
  app.add_option("MOD", arguments.mod, "File name of a definition in the catalogue, or a path to one; - for no mod")
      ->required()
      ->type_name("");
  DeclareMapAndEdit(app, arguments);
  app.add_option("--options", arguments.options, "The game's options, in place of the ticked ones");
}

void DeclareLine(CLI::App& app, Arguments& arguments) {
  app.add_option("--tick", arguments.tick, "Tick this row of the option list, counted from 0")->allow_extra_args(false);
  app.add_option("--untick", arguments.untick, "Untick this row")->allow_extra_args(false);
  DeclareMapAndEdit(app, arguments);
}

void DeclareListSettings(CLI::App& app, Arguments& arguments) {
  app.add_flag("--all", arguments.all, "Every section, and what the registry holds");
}

void DeclareSetSetting(CLI::App& app, Arguments& arguments) {
  app.add_option("KEY", arguments.key, "One of the keys that `varnik-cli settings` lists")->required()->type_name("");
  app.add_option("VALUE", arguments.value, "Its new text; options are exactly On or Off")->required()->type_name("");
}

std::vector<std::string> MapPageKeys() {
  std::vector<std::string> keys;
  keys.reserve(kMapPages.size());
  for (const MapPage& page : kMapPages)
    keys.emplace_back(page.key);
  return keys;
}

void DeclareMaps(CLI::App& app, Arguments& arguments) {
  app.add_option("--mod", arguments.mod, "Select this mod first; without: none")->type_name("MOD");
  app.add_option("--page", arguments.page, "Rows of one page, in the order of its list")
      ->type_name("KEY")
      ->check(CLI::IsMember(MapPageKeys()));
  app.add_flag("--rescan", arguments.rescan, "Search the install anew and rewrite varnik.lst");
  app.add_flag("--convert", arguments.convert, "Write what version 1.3 needs into maps that lack it");
  app.add_flag("--details", arguments.details, "With type, description file and picture file");
}

void DeclarePlan(CLI::App& app, Arguments& arguments) {
  DeclareMod(app, arguments);
  app.add_flag("--config", arguments.configuration, "Print the bzone.cfg that the game would find, and nothing else");
  app.add_flag("--after", arguments.after,
               "Add a row `put back` for all that would differ from now once the mod is deactivated again");
}

void DeclareDeactivate(CLI::App& app, Arguments& arguments) {
  DeclareMod(app, arguments);
  app.add_flag("--force", arguments.force,
               "Undo what the definition says though nothing tells that the mod is active; may move files of yours");
}

void DeclareDoctor(CLI::App& app, Arguments& arguments) {
  app.add_flag("--fix", arguments.fix,
               "Undo what can be undone safely, with a copy kept of every file that is replaced");
}

}  // namespace

const std::vector<Command> kCommands = {
    {"installs", "List the installs of the game", kNothing, nullptr, ListInstalls, "installs\n--json installs"},
    {"installs add", "Add an install at the end of the list", kNothing, DeclareAddInstall, AddInstall,
     "installs add ~/games/bz2\ninstalls add ~/games/bz2-1.3 --description \"For the league\""},
    {"installs remove", "Take an install off the list; its folder stays", kNothing, DeclareRow, RemoveInstall,
     "installs remove 1"},
    {"installs select", "Select the install that other commands work on", kNothing, DeclareRow, SelectInstallRow,
     "installs select 0"},
    {"mods", "List the mods that fit the install", kInstall, nullptr, ListMods, "mods\n--root ~/games/bz2 --json mods"},
    {"parse", "Show a definition file as its readers see it, line by line", kNothing, DeclareFile, ParseFile,
     "parse mymod.bzm\nparse ~/games/bz2/mymod.bzm"},
    {"check", "Report what readers of a definition file would skip in silence", kNothing, DeclareFile, CheckFile,
     "check mymod.bzm\ncheck ~/work/mymod.bzm\n--root ~/games/bz2 check ~/work/mymod.bzm"},
    {"plan", "Show each step that an activation would take now, and change nothing", kInstall | kRunLock, DeclarePlan,
     PlanGivenMod, "plan mymod.bzm\nplan mymod.bzm --after\nplan mymod.bzm --config"},
    {"activate", "Activate a mod", kInstall | kRunLock, DeclareMod, ActivateGivenMod, "activate mymod.bzm"},
    {"deactivate", "Deactivate a mod", kInstall | kRunLock, DeclareDeactivate, DeactivateGivenMod,
     "deactivate mymod.bzm"},
    {"run", "Activate a mod, run the game, and put everything back", kInstall | kRunLock, DeclareRun, RunGivenMod,
     "run mymod.bzm\nrun mymod.bzm --map stalker.bzn\nrun - --options \"/win /nointro\""},
    {"options", "List the game's command-line options", kInstall, nullptr, ListOptions, "options"},
    {"line", "Show the command line that a launch would use", kInstall, DeclareLine, ShowLine,
     "line\nline --tick 0 --untick 2 --map \"my map.bzn\""},
    {"maps", "List the maps of the install", kInstall, DeclareMaps, ListMaps,
     "maps --details\nmaps --mod mymod.bzm --page CMap1\n--json maps --rescan"},
    {"settings", "List the program's settings", kNothing, DeclareListSettings, ListSettings,
     "settings\nsettings --all --json"},
    {"settings set", "Store a setting", kNothing, DeclareSetSetting, SetSetting, "settings set RenameLog On"},
    {"recover", "Undo a run that was interrupted, as a start of Varnik does", kRunLock, nullptr, Recover, "recover"},
    {"doctor", "Show what an interrupted or failed run left behind, and what undoes it", kInstall | kRunLock,
     DeclareDoctor, LookAtInstall, "doctor\n--root ~/games/bz2 doctor --fix"},
};

}  // namespace varnik::cli
