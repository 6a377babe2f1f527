#include "cli/commandtable.h"
#include "cli/completion.h"
#include "cli/output.h"
#include "cli/session.h"
#include "diagnosis/finding.h"
#include "diagnosis/spelling.h"
#include "modengine/runguard.h"
#include "platform/system/paths/program.h"
#include "platform/system/text/text.h"
#include "support/install.h"
#include "support/version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <csignal>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace {

using varnik::cli::Arguments;
using varnik::cli::Command;
using varnik::cli::kCommands;
using varnik::cli::kWrongUsage;

std::string ExamplesOf(const Command& command) {
  std::string text = "Examples:\n  varnik-cli ";
  for (const char* c = command.examples; *c; ++c)
    text += *c == '\n' ? "\n  varnik-cli " : std::string(1, *c);
  return text;
}

CLI::App* DeclareCommand(CLI::App& app, const Command& command, Arguments& arguments) {
  const std::string name = command.name;
  const std::size_t blank = name.find(' ');
  CLI::App& parent = blank == std::string::npos ? app : *app.get_subcommand(name.substr(0, blank));
  CLI::App* const declared = parent.add_subcommand(name.substr(blank + 1), command.help);
  declared->fallthrough()->footer(ExamplesOf(command));
  if (command.declare) command.declare(*declared, arguments);
  return declared;
}

// Where words are left over that should name a command, the parser only says that one is required, or too much given.
std::string DescribeFailure(const CLI::App* app, const CLI::Error& error) {
  const CLI::App* command = app;
  std::string given;
  for (auto parsed = app->get_subcommands(); !parsed.empty(); parsed = command->get_subcommands()) {
    command = parsed.back();
    given += command->get_name() + " ";
  }
  const std::vector<std::string> rest = app->remaining(true);
  const auto known = command->get_subcommands([](const CLI::App*) { return true; });
  if (known.empty() || rest.empty() || rest[0].starts_with('-')) return CLI::FailureMessage::simple(app, error);
  std::vector<std::string_view> names;
  for (const CLI::App* one : known)
    names.push_back(one->get_name());
  const std::string likely(varnik::LikelyName(win::LowerCase(rest[0]), names));
  return "unknown command " + varnik::Quoted(given + rest[0]) +
         (likely.empty() ? "" : "; did you mean " + varnik::Quoted(given + likely) + "?") +
         "\n`varnik-cli --help` lists the commands.\n";
}

int RunCommand(const Command& command, const Arguments& arguments) {
  using namespace varnik::cli;
  const bool locks = command.needs & kRunLock;
  const auto refuse = [&] { return Fail(arguments.mod == kNoMod ? command.name : arguments.mod, varnik::kRunRefused); };
  // Taken before the first reading of the store, which may hold the marker of a run that is just ending.
  std::optional<varnik::RunGuard> guard;
  if (locks && !guard.emplace().IsHeld()) return refuse();
  StartSession(arguments);
  if (command.needs & kRunLock && !SessionSettings().IsReadable()) return FailWithoutSettings();
  if (command.needs & kInstall && !OpenInstall(arguments)) return kFailed;
  std::optional<varnik::RunGuard> installGuard;
  if (locks && !installGuard.emplace(varnik::InstallRoot()).IsHeld()) return refuse();
  return command.act(arguments);
}

int ParseAndRun(int argc, char** argv) {
  Arguments arguments;
  CLI::App app("Varnik without a window: the installs, mods and maps of Battlezone II", "varnik-cli");
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("Subcommands", "Commands");
  app.get_formatter()->label("REQUIRED", "");
  app.require_subcommand(1)->footer("varnik-cli COMMAND --help tells more, with examples.");
  app.add_option("--root", arguments.root, "The install to work on, listed or not; without: the selected one")
      ->type_name("DIR");
  app.add_option("--app-path", arguments.appPath, "The program's folder, which holds varnik.cmd and mods/")
      ->type_name("DIR");
  app.add_flag("--json", arguments.json, "One JSON document on standard output, and nothing else there");
  app.failure_message(DescribeFailure);
  app.set_version_flag("--version", std::string("varnik-cli ") + varnik::kVersion, "Print the version and exit");
  std::vector<CLI::App*> declared;
  for (const Command& command : kCommands)
    declared.push_back(DeclareCommand(app, command, arguments));
  if (argc > 1 && argv[1] == std::string_view(varnik::cli::kComplete))
    return varnik::cli::PrintCompletions(app, {argv + 2, argv + argc});
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? varnik::cli::kDone : kWrongUsage;
  }
  // A command precedes its subcommands, so the last one parsed is the one to run.
  const auto given = std::find_if(declared.rbegin(), declared.rend(), [](const auto* one) { return one->parsed(); });
  return RunCommand(kCommands[declared.rend() - given - 1], arguments);
}

}  // namespace

int main(int argc, char** argv) try {
  // A reader that goes away must not end the program while a mod is active.
  std::signal(SIGPIPE, SIG_IGN);
  // What the next log-in starts after a crash is the program with the window, which lies beside this one.
  const std::string path = win::ExecutablePath();
  win::SetProgram({"varnik", "Varnik", path.substr(0, path.rfind('/') + 1) + "varnik", varnik::kVersion});
  return ParseAndRun(argc, argv);
} catch (const std::exception& error) {
  return varnik::cli::Fail("unexpected", error.what());
}
