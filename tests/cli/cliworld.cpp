#include "tests/cli/cliworld.h"

#include <gtest/gtest.h>

#include <stdlib.h>
#include <sys/wait.h>

namespace test {

CliResult CliWorld::RunCli(const std::string& arguments) const {
  const std::string out = sandbox.Root() / "out";
  const std::string err = sandbox.Root() / "err";
  const int status = system((program + " " + arguments + " >" + out + " 2>" + err + " </dev/null").c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadFile(out), ReadFile(err)};
}

Json CliWorld::Ask(const std::string& arguments) const {
  const CliResult result = RunCli("--json --root " + sandbox.Install().string() + " " + arguments);
  EXPECT_EQ(result.status, 0) << arguments << "\n" << result.err;
  const Json document = Json::parse(result.out, nullptr, false);
  EXPECT_FALSE(document.is_discarded()) << arguments << "\n" << result.out;
  return document;
}

void CliWorld::WriteGame(const std::string& script) const {
  WriteFile(sandbox.Install() / "bzone.exe", "#!/bin/sh\n" + script + "\n");
  std::filesystem::permissions(sandbox.Install() / "bzone.exe", std::filesystem::perms::owner_all);
}

Json CliWorld::Stored(const std::string& section) const {
  Json keys = Json::object();
  for (const Json& row : Ask("settings --all"))
    if (row["Section"] == section) keys[row["Key"].get<std::string>()] = row["Value"];
  return keys;
}

}  // namespace test
