#include "support/ini_sm.h"

#include "platform/system/services.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace {

struct ReadCase {
  const char* line;
  std::string value;
};

const ReadCase kReads[] = {
    {"plain  value", "plain  value"},
    {"\"text\" // comment", "text"},
    {"\"text \" // comment", "text "},
    {"\" text\"x\" // comment", "text\"x"},
    {"\"http://host/path\" // c", "http:"},
    {"\"http://host/path\"", "http:"},
    {"\"  text \"", "text"},
    {"'\"text\"'", "text"},
    {"// only a comment", "none"},
    {"\"\"", "none"},
    {"\"", "none"},
    {"\" \" // c", "none"},
    {"", "none"},
    {"\t\"text\t\" // c", "text\t"},
    {"Case // a // b", "Case"},
};

TEST(ReadIniValue, CleansTheValue) {
  test::Sandbox sandbox;
  const std::string file = sandbox.InstallText() + "game.ini";
  for (const ReadCase& c : kReads) {
    SCOPED_TRACE(c.line);
    test::WriteFile(sandbox.Install() / "game.ini", std::string("[s]\r\nk=") + c.line + "\r\n");
    EXPECT_EQ(varnik::ReadIniValue("s", "k", file, "none"), c.value);
  }
  EXPECT_EQ(varnik::ReadIniValue("s", "k", sandbox.InstallText() + "missing.ini", "none"), "none");
}

TEST(ReadIniValue, CutsBeforeItCleans) {
  test::Sandbox sandbox;
  const std::string kept(252, 'x');
  test::WriteFile(sandbox.Install() / "game.ini", "[s]\nk=" + kept + " // comment\n");
  EXPECT_EQ(varnik::ReadIniValue("s", "k", sandbox.InstallText() + "game.ini", ""), kept + " /");
}

TEST(ReadIniValue, PumpsEventsOnce) {
  test::Sandbox sandbox;
  int pumped = 0;
  win::WindowServices services;
  services.doEvents = [&] { ++pumped; };
  win::SetWindowServices(services);
  varnik::ReadIniValue("s", "k", sandbox.InstallText() + "game.ini", "");
  win::SetWindowServices({});
  EXPECT_EQ(pumped, 1);
}

TEST(WriteIniValue, StoresTheTextUnchanged) {
  test::Sandbox sandbox;
  const std::string file = sandbox.InstallText() + "game.ini";
  test::WriteFile(sandbox.Install() / "game.ini", "[s]\r\nk=\"old\" // gone\r\n");
  EXPECT_TRUE(varnik::WriteIniValue("s", "k", " \"new\" ", file));
  EXPECT_EQ(test::ReadFile(sandbox.Install() / "game.ini"), "[s]\r\nk= \"new\" \r\n");
}

}  // namespace
