#pragma once

#include "tests/harness/sandbox.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

// The real varnik-cli, run as a script runs it, in a world of its own.
namespace test {

using Json = nlohmann::ordered_json;

struct CliResult {
  int status = -1;
  std::string out;
  std::string err;
};

class CliWorld {
 public:
  // `arguments` go through a shell.
  CliResult RunCli(const std::string& arguments) const;

  // The same with --json and --root for the sandbox's install; a status other than 0 fails the test.
  Json Ask(const std::string& arguments) const;

  // The stand-in game: a shell script, which starts in the install.
  void WriteGame(const std::string& script) const;

  // Keys and values below one section of the settings store.
  Json Stored(const std::string& section) const;

  Sandbox sandbox;
  const std::string program = BINARY_DIR "/varnik-cli";
};

}  // namespace test
