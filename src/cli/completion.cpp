#include "cli/completion.h"

#include "cli/arguments.h"
#include "cli/output.h"
#include "cli/session.h"
#include "installs/installlist.h"
#include "maps/maplist.h"
#include "modengine/catalogue.h"
#include "platform/system/files/findfile.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"
#include "support/install.h"
#include "support/runstate.h"
#include "support/settings.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

namespace varnik::cli {

namespace {

constexpr char kFiles[] = ":file";
constexpr char kFolders[] = ":folder";
constexpr char kNoFiles[] = ":none";

// What has been typed ahead of the word.
struct Typed {
  const CLI::App* command = nullptr;
  const CLI::Option* option = nullptr;  // which the word is the value of
  std::vector<std::string> values;      // that stand alone
  Arguments arguments;                  // those that choose the install
};

bool HasControls(const std::string& text) {
  return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; });
}

struct Completions {
  explicit Completions(const std::string& word) : begin(word) {}

  // What has control characters cannot be typed, and would act on the terminal.
  void Add(const std::string& text, const std::string& meaning = "") {
    if (text.empty() || HasControls(text) || !win::StartsWithNoCase(text, begin) || !seen.insert(text).second) return;
    lines += text + (meaning.empty() || HasControls(meaning) ? "" : "\t" + meaning) + "\n";
  }

  std::string begin;
  std::string lines;
  std::string files = kNoFiles;
  std::set<std::string> seen;
};

bool IsOption(const std::string& word) { return word.size() > 1 && word[0] == '-'; }

// The shell leaves the home folder as it was typed.
std::string WithHome(const std::string& path) {
  const char* const home = std::getenv("HOME");
  return home && path.starts_with("~/") ? home + path.substr(1) : path;
}

const CLI::Option* FindOption(const CLI::App* command, const std::string& name) {
  for (; command; command = command->get_parent())
    if (const CLI::Option* const option = command->get_option_no_throw(name)) return option;
  return nullptr;
}

// The help option and other flags take no value.
bool TakesValue(const CLI::Option* option) { return option && option->get_items_expected_max() > 0; }

const CLI::App* FindSubcommand(const CLI::App* command, const std::string& name) {
  const auto all = command->get_subcommands([](const CLI::App*) { return true; });
  const auto found = std::find_if(all.begin(), all.end(), [&](const CLI::App* one) { return one->get_name() == name; });
  return found == all.end() ? nullptr : *found;
}

Typed ReadWords(const CLI::App& app, const std::vector<std::string>& words) {
  Typed typed;
  typed.command = &app;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const std::string& word = words[i];
    const CLI::App* const subcommand = FindSubcommand(typed.command, word);
    if (typed.option) {
      if (typed.option->check_name("--root")) typed.arguments.root = WithHome(word);
      if (typed.option->check_name("--app-path")) typed.arguments.appPath = WithHome(word);
      typed.option = nullptr;
    } else if (IsOption(word)) {
      const CLI::Option* const option = FindOption(typed.command, word);
      typed.option = TakesValue(option) ? option : nullptr;
    } else if (subcommand && typed.values.empty()) {
      typed.command = subcommand;
    } else {
      typed.values.push_back(word);
    }
  }
  return typed;
}

void AddMods(Completions& found, const Typed& typed) {
  const bool isRun = typed.command->get_name() == "run";
  if (isRun) found.Add(kNoMod, "no mod");
  LoadModList();
  for (std::size_t row = 1; row < ModList.size(); ++row)
    if (!isRun || ModList[row].State == 0)
      found.Add(win::Utf8FromBytes(win::FileNameOf(ModList[row].DefinitionFile)),
                win::Utf8FromBytes(ModList[row].Name));
  if (found.begin.find('/') != std::string::npos) found.files = kFiles;
}

// Those that do not fit as well: their authors want to know why.
void AddFiles(Completions& found, const Typed& typed) {
  AddMods(found, typed);
  for (const std::string& folder : {InstallRoot(), AppPath + "mods\\"}) {
    if (folder.empty()) continue;
    win::FolderReader reader(folder);
    for (win::FoundEntry entry; reader.Next(entry);)
      if (win::PathMatchSpec(entry.name, kDefinitionPattern)) found.Add(win::Utf8FromBytes(entry.name));
  }
  found.files = kFiles;
}

void AddMaps(Completions& found, const Typed&) {
  for (const std::string& name : CachedMapNames())
    found.Add(win::Utf8FromBytes(name));
}

void AddInstalls(Completions& found, const Typed&) {
  ReadInstallList();
  for (std::size_t row = 0; row < InstallList.size(); ++row)
    found.Add(std::to_string(row), win::Utf8FromBytes(InstallList[row].Path));
}

void AddSettings(Completions& found, const Typed&) {
  for (const SettingKey& key : kSettingKeys)
    found.Add(key.name);
}

void AddSettingValues(Completions& found, const Typed& typed) {
  for (const SettingKey& key : kSettingKeys)
    if (win::EqualNoCase(key.name, typed.values[0]) && std::string_view(key.fallback).starts_with("O"))
      for (const char* const value : {"On", "Off"})
        found.Add(value);
}

void AddFolders(Completions& found, const Typed&) { found.files = kFolders; }

// By what the help calls the value.
constexpr std::pair<std::string_view, void (*)(Completions&, const Typed&)> kKinds[] = {
    {"MOD", AddMods},     {"FILE", AddFiles},  {"NAME", AddMaps},           {"N", AddInstalls},
    {"KEY", AddSettings}, {"DIR", AddFolders}, {"VALUE", AddSettingValues},
};

// A value of which the help lists all, as in `KEY:{A,B}`.
void AddListed(Completions& found, const std::string& kind) {
  const std::size_t open = kind.find('{');
  std::istringstream list(kind.substr(open + 1, kind.rfind('}') - open - 1));
  for (std::string value; std::getline(list, value, ',');)
    found.Add(value);
}

void AddValues(Completions& found, const Typed& typed, const std::string& kind) {
  if (kind.find('{') != std::string::npos) return AddListed(found, kind);
  for (const auto& [name, add] : kKinds)
    if (kind == name) add(found, typed);
}

void AddOptions(Completions& found, const CLI::App* command) {
  for (; command; command = command->get_parent())
    for (const CLI::Option* option :
         command->get_options([](const CLI::Option* one) { return !one->get_positional(); }))
      found.Add(option->get_name(), option->get_description());
}

void AddCommands(Completions& found, const CLI::App* command) {
  for (const CLI::App* one : command->get_subcommands([](const CLI::App*) { return true; }))
    found.Add(one->get_name(), one->get_description());
}

}  // namespace

int PrintCompletions(const CLI::App& app, const std::vector<std::string>& words) {
  Completions found(words.empty() ? "" : words.back());
  const Typed typed = ReadWords(app, words);
  StartSession(typed.arguments);
  if (!OpenInstallIfAny(typed.arguments)) return kFailed;
  const auto places = typed.command->get_options([](const CLI::Option* one) { return one->get_positional(); });
  if (typed.option)
    AddValues(found, typed, typed.option->get_type_name());
  else if (IsOption(found.begin))
    AddOptions(found, typed.command);
  else if (typed.values.size() < places.size())
    AddValues(found, typed, places[typed.values.size()]->get_name(true));
  else if (typed.values.empty())
    AddCommands(found, typed.command);
  return PrintBytes(found.lines + found.files + "\n");
}

}  // namespace varnik::cli
