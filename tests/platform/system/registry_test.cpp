#include "platform/system/store/registry.h"

#include "platform/system/paths/program.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

namespace {

using namespace std::string_literals;

constexpr char kRun[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char kRunOnce[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

class Registry : public testing::Test {
 protected:
  test::Sandbox sandbox_;
  const std::filesystem::path entries_ = sandbox_.Home() / "config" / "autostart";

  win::RegistryHandle Open(const std::string& path) {
    win::RegistryHandle key = 99;
    const long status = win::RegOpenKeyEx(win::kHkeyLocalMachine, path, 0, 0x3F, key);
    EXPECT_EQ(status == win::kErrorSuccess, key != 0);
    return key;
  }
  std::string Query(win::RegistryHandle key, const std::string& name) {
    std::uint32_t type = 0;
    std::string data;
    const long status = win::RegQueryValueEx(key, name, type, data);
    return status == win::kErrorSuccess ? std::to_string(type) + ":" + data : "status " + std::to_string(status);
  }
};

TEST_F(Registry, HasItsKeysAndNoOtherAndKeepsRawData) {
  EXPECT_FALSE(Open("Software\\Microsoft\\Windows\\CurrentVersion"));
  EXPECT_TRUE(Open(kRunOnce));
  const auto key = Open("software\\MICROSOFT\\Internet Explorer\\AboutURLs");
  EXPECT_EQ(win::RegSetValueEx(key, "Name", win::kRegSz, "text\0"s), win::kErrorSuccess);
  EXPECT_EQ(win::RegSetValueEx(key, "Raw", win::kRegBinary, "\xFF\0\x80"s), win::kErrorSuccess);
  EXPECT_EQ(Query(key, "nAME"), "1:text\0"s);
  EXPECT_EQ(Query(key, "Raw"), "3:\xFF\0\x80"s);
  EXPECT_EQ(win::RegDeleteValue(key, "NAME"), win::kErrorSuccess);
  EXPECT_EQ(win::RegDeleteValue(key, "Name"), win::kErrorFileNotFound);
  EXPECT_EQ(Query(key, "Name"), "status 2");
  EXPECT_EQ(win::RegSetValueEx(0, "n", win::kRegSz, "v"), win::kErrorInvalidHandle);
}

// Starts an entry as a desktop does: undo the escapes of entry texts and of field codes, then split as a shell would.
void StartEntry(const std::filesystem::path& entry) {
  std::smatch match;
  const std::string content = test::ReadFile(entry);
  ASSERT_TRUE(std::regex_search(content, match, std::regex("\nExec=(.*)\n"))) << content;
  std::string command = std::regex_replace(match[1].str(), std::regex(R"(\\\\)"), "\\");
  EXPECT_EQ(std::regex_replace(command, std::regex("%%"), "").find('%'), std::string::npos) << command;
  command = std::regex_replace(command, std::regex("%%"), "%");
  ASSERT_EQ(std::system(("env -u VARNIK_HOME " + command).c_str()), 0) << command;
}

TEST_F(Registry, EntriesStartTheProgramWithTheSwitch) {
  for (const char* name : {"plain", "a b", "$HOME", "100%d", "it's", "q\"q", "`id`", "back\\slash", "x=y"}) {
    SCOPED_TRACE(name);
    const auto folder = sandbox_.Home() / name;
    const std::string home = folder.string() + "\\app";
    const std::string slashed = std::regex_replace(home, std::regex(R"(\\)"), "/") + "/";
    test::WriteFile(folder / "varnik",
                    "#!/bin/sh\nprintf '%s|' \"$VARNIK_HOME\" \"$VARNIK_RUNONCE\" \"$@\" > \"$SEEN\"\n");
    std::filesystem::permissions(folder / "varnik", std::filesystem::perms::owner_all);
    setenv("VARNIK_HOME", home.c_str(), 1);
    setenv("SEEN", (folder / "seen").c_str(), 1);
    win::SetProgram({"varnik", "Varnik", folder / "varnik"});
    win::RegSetValueEx(Open(kRun), "Varnik Autoload", win::kRegSz, "\"C:\\some path\\varnik.exe\" /boot\0"s);
    StartEntry(entries_ / "varnik-autoload.desktop");
    EXPECT_EQ(test::ReadFile(folder / "seen"), slashed + "||/boot|");
    win::RegSetValueEx(Open(kRunOnce), "Varnik Crash Recovery", win::kRegSz, "varnik.exe /crash /x\0"s);
    StartEntry(entries_ / "varnik-crash-recovery.desktop");
    EXPECT_EQ(test::ReadFile(folder / "seen"), slashed + "|Varnik Crash Recovery|/crash|/x|");
  }
}

TEST_F(Registry, EntriesGoWithTheirValues) {
  const auto entry = entries_ / "once.desktop";
  const auto key = Open(kRunOnce);
  win::RegSetValueEx(key, "Once", win::kRegSz, "varnik.exe /crash\0"s);
  win::RegSetValueEx(key, "Other", win::kRegSz, "varnik.exe /crash\0"s);
  EXPECT_FALSE(win::HandleAutostartEntry());
  EXPECT_TRUE(std::filesystem::exists(entry));
  setenv("VARNIK_RUNONCE", "Once", 1);
  EXPECT_TRUE(win::HandleAutostartEntry());
  EXPECT_FALSE(std::filesystem::exists(entry));
  EXPECT_EQ(Query(key, "Once"), "status 2");
  EXPECT_EQ(std::getenv("VARNIK_RUNONCE"), nullptr);
  // The record may be lost, the entry goes all the same.
  std::filesystem::remove(sandbox_.Home() / "config" / "varnik" / "registry.json");
  win::RegDeleteValue(key, "Other");
  EXPECT_FALSE(std::filesystem::exists(entries_ / "other.desktop"));
}

TEST_F(Registry, AValueThatCannotBeStoredLeavesNoEntry) {
  std::filesystem::create_directories(sandbox_.Home() / "config" / "varnik" / "registry.json" / "folder");
  EXPECT_EQ(win::RegSetValueEx(Open(kRun), "Name", win::kRegSz, "varnik.exe /boot\0"s), win::kErrorAccessDenied);
  EXPECT_FALSE(std::filesystem::exists(entries_ / "name.desktop"));
}

}  // namespace
