#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/paths/program.h"
#include "platform/system/store/configfolder.h"
#include "platform/system/store/registry.h"
#include "platform/system/store/settings.h"
#include "tests/harness/crash.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <regex>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class Settings : public testing::Test {
 protected:
  const test::Sandbox sandbox_;
  const fs::path file_ = sandbox_.Home() / "config" / "varnik" / "settings.json";

  std::string Get(const std::string& key) { return win::GetSetting("App", "Section", key, "fallback"); }
  bool Save(const std::string& key, const std::string& value) { return win::SaveSetting("App", "Section", key, value); }
};

TEST_F(Settings, KeepEveryByte) {
  for (const std::string& value : {""s, " \r\n\t\"\\"s, "nul\0inside"s, "\xE9\x80 no UTF-8 \xFF"s, "\xC3\xA9"s,
                                   std::string(100000, '\xF0'), "[1,2]"s}) {
    EXPECT_TRUE(Save("key", value));
    EXPECT_EQ(Get("key"), value);
  }
}

TEST_F(Settings, HaveReachedTheDiskWhenTheCallReturns) {
  const auto operations = test::Operations({{win::ExecutablePath(), "--gtest_filter=Settings.KeepEveryByte"}});
  std::string lines;
  for (const test::Operation& operation : operations)
    lines += operation.line + "\n";
  const std::regex stored(
      R"(fsync\(.*settings.json.new~>\).*\nrename.*/settings.json"\).*\nfsync\(.*/config/varnik>\))");
  EXPECT_EQ(std::distance(std::sregex_iterator(lines.begin(), lines.end(), stored), std::sregex_iterator()), 7);
}

TEST_F(Settings, NamesMatchWithoutCaseAndKeepTheirFirstSpelling) {
  const auto all = [] {
    std::string text;
    for (const auto& row : win::AllSettings("app"))
      text += row.section + "." + row.key + "=" + row.value + ";";
    return text;
  };
  EXPECT_TRUE(Save("One", "1") && Save("b", "3") && win::SaveSetting("APP", "SECTION", "oNE", "2"));
  EXPECT_TRUE(win::SaveSetting("App", "Another", "x", "\xFF") && win::SaveSetting("Other", "Section", "One", "4"));
  EXPECT_EQ(all(), "Another.x=\xFF;Section.One=2;Section.b=3;");
  EXPECT_TRUE(win::DeleteSetting("App", "section", "ONE"));
  EXPECT_TRUE(win::SaveSection("app", "section", {{"a", "4"}, {"B", "5"}}, win::OtherKeys::kKeep));
  EXPECT_EQ(all(), "Another.x=\xFF;Section.a=4;Section.b=5;");
  EXPECT_TRUE(win::SaveSection("App", "Section", {{"a", "6"}}, win::OtherKeys::kRemove));
  EXPECT_TRUE(win::DeleteSetting("App", "another"));
  EXPECT_EQ(all(), "Section.a=6;");
  EXPECT_TRUE(win::SaveSection("App", "Section", {}, win::OtherKeys::kRemove));
  EXPECT_EQ(all(), "");
  EXPECT_TRUE(Save("c", "7") && win::DeleteSetting("app"));
  EXPECT_EQ(all() + win::GetSetting("Other", "Section", "One"), "4");
}

TEST_F(Settings, SeeWhatAnotherProgramWroteInTheSameInstant) {
  Save("key", "old");
  const auto time = fs::last_write_time(file_);
  test::WriteFile(file_, std::regex_replace(test::ReadFile(file_), std::regex("old"), "new"));
  fs::last_write_time(file_, time);
  EXPECT_EQ(Get("key"), "new");
}

TEST_F(Settings, DamagedStoresAreKeptAsideOneByOne) {
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  int n = 0;
  for (const std::string& content :
       {""s, R"({"App": {"Section": {"key": "v"}}} x)"s, "[]"s, R"({"App":{"Section":{"key":)" + deep + "}}}"}) {
    const std::string kept = file_.string() + ".damaged-" + std::to_string(++n);
    SCOPED_TRACE(kept);
    test::WriteFile(file_, content);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(n % 2 || Get("key") == "fallback");  // half of them meet a reader first, half a writer
    EXPECT_TRUE(Save("key", "value") && Get("key") == "value");
    EXPECT_NE(testing::internal::GetCapturedStderr().find(kept + "\n"), std::string::npos);
    EXPECT_TRUE(test::ReadFile(kept) == content);
  }
}

TEST_F(Settings, NothingElseIsLostForWhatCannotBeUnderstood) {
  const std::pair<std::string, std::string> cases[] = {// what stands there, and what of it a write must leave
                                                       {"5", "5"},
                                                       {"[{}]", "{}"},
                                                       {"\"text\"", "\"text\""},
                                                       {"1e400", "1e400"},
                                                       {"{\"a\": -01}", "-01"},
                                                       {"True", "True"},
                                                       {"\"\xE9\"", "\xC3\xA9"},
                                                       {"\"C:\\games\"", "C:\\\\games"},
                                                       {"{\"a\": \"\t\"}", "\\t"}};
  for (const auto& [text, left] : cases)
    for (const std::string& start :
         {R"({"App": {"Section": {"key": "v", "x": )"s, R"({"App": {"Odd": )"s, R"({"Odd": )"s}) {
      SCOPED_TRACE(start + text);
      const std::string end(static_cast<std::size_t>(std::count(start.begin(), start.end(), '{')), '}');
      test::WriteFile(file_, start + text + end);
      fs::permissions(file_, fs::perms(0644));
      EXPECT_EQ(Get("key"), start.find("\"v\"") != start.npos ? "v" : "fallback");
      EXPECT_TRUE(win::SaveSetting("App", "Odd", "new", "1") && win::SaveSetting("Odd", "Odd", "new", "2"));
      EXPECT_EQ(win::GetSetting("App", "Odd", "new") + win::GetSetting("Odd", "odd", "new"), "12");
      EXPECT_NE(test::ReadFile(file_).find(left), std::string::npos) << test::ReadFile(file_);
      EXPECT_EQ(fs::status(file_).permissions(), fs::perms(0600));
    }
  EXPECT_FALSE(fs::exists(file_.string() + ".damaged-1"));
}

TEST_F(Settings, AStartRemovesWhatAKilledWriteLeftAndHidesThePassword) {
  const fs::path folder = file_.parent_path();
  const auto put = [&](const std::string& name) { test::WriteFile(folder / name, "{}"); };
  for (const char* name : {"settings.json", ".settings.json.new~", ".registry.json.new~", ".new~", "mine.new~"})
    put(name);
  fs::permissions(file_, fs::perms(0644));
  const auto writer = win::CurrentFileSystem().TryLock(folder / ".registry.json.new~");
  win::TidyConfigFolder();
  std::string left;
  for (const auto& [name, content] : test::Snapshot(folder))
    left += name + " ";
  EXPECT_EQ(left, ".new~ .registry.json.new~ mine.new~ settings.json ");
  EXPECT_EQ(fs::status(file_).permissions(), fs::perms(0600));
}

TEST_F(Settings, ALinkIsFollowedAndStaysOne) {
  const fs::path kept = sandbox_.Home() / "elsewhere.json";
  fs::create_directories(file_.parent_path());
  fs::create_symlink("../../elsewhere.json", file_);
  for (const char* content : {"", "{}", "[]"}) {
    test::WriteFile(kept, content);
    EXPECT_TRUE(Save("key", content) && Get("key") == content);
    EXPECT_TRUE(fs::is_symlink(file_) && test::ReadFile(kept).find("Section") != std::string::npos) << content;
  }
  EXPECT_EQ(test::ReadFile(kept.string() + ".damaged-2"), "[]");
}

TEST_F(Settings, AStoreThatCannotBeReadOrMovedIsLeftAloneAndThatIsSaidOnce) {
  const fs::path folder = file_.parent_path(), lock = file_.string() + ".lock";
  const auto said = [&] {
    testing::internal::CaptureStderr();
    const int status = test::StatusOf(test::Fork([&] {
      if (geteuid() == 0 && setuid(65534) != 0) return 2;  // root may move any file
      const bool stored = Save("key", "value") || Save("key", "value") || win::DeleteSetting("App");
      return stored || Get("key") != "fallback" ? 1 : 0;
    }));
    EXPECT_EQ(status, 0);
    return testing::internal::GetCapturedStderr();
  };
  for (const fs::path& file : {file_, lock})
    test::WriteFile(file, "[]");
  for (const fs::path& path : {sandbox_.Root(), sandbox_.Home(), folder.parent_path(), folder, lock})
    fs::permissions(path, path == folder ? fs::perms(0555) : fs::perms(0777));
  EXPECT_EQ(said(), "varnik: " + file_.string() + " is damaged and cannot be moved; it stays as it is\n");
  EXPECT_EQ(test::ReadFile(file_), "[]");
  fs::permissions(file_, fs::perms(0));
  EXPECT_EQ(said(), "varnik: " + file_.string() + " is there and cannot be read; nothing is stored\n");
}

TEST_F(Settings, ProcessesDoNotLoseEachOthersKeys) {
  std::vector<pid_t> children;
  for (const std::string name : {"a", "b", "c"})
    children.push_back(test::Fork([&] {
      for (int i = 0; i < 30; ++i)
        Save(name + std::to_string(i), "value");
      return 0;
    }));
  for (const pid_t child : children)
    EXPECT_EQ(test::StatusOf(child), 0);
  EXPECT_EQ(win::AllSettings("App").size(), 90u);
}

const std::string kVersion = "Software\\Microsoft\\Windows\\CurrentVersion", kRun = kVersion + "\\Run",
                  kRunOnce = kVersion + "\\RunOnce";

class Registry : public testing::Test {
 protected:
  const test::Sandbox sandbox_;
  const fs::path entries_ = sandbox_.Home() / "config" / "autostart";

  win::RegistryHandle Open(const std::string& path) {
    win::RegistryHandle key = 99;
    const long status = win::RegOpenKeyEx(win::kHkeyLocalMachine, path, 0, 0x3F, key);
    EXPECT_EQ(status == win::kErrorSuccess, key != 0);
    return key;
  }
  long Set(win::RegistryHandle key, const std::string& name, const std::string& text) {
    return win::RegSetValueEx(key, name, win::kRegSz, text + '\0');
  }
};

TEST_F(Registry, HasItsKeysAndNoOtherAndKeepsRawData) {
  EXPECT_FALSE(Open(kVersion));
  const auto key = Open("software\\MICROSOFT\\Internet Explorer\\AboutURLs");
  EXPECT_EQ(Set(key, "Other", "text"), win::kErrorSuccess);
  EXPECT_EQ(win::RegSetValueEx(key, "Raw", win::kRegBinary, "\xFF\0\x80"s), win::kErrorSuccess);
  std::uint32_t type = 0;
  std::string data;
  EXPECT_EQ(win::RegQueryValueEx(key, "rAW", type, data), win::kErrorSuccess);
  EXPECT_EQ(std::to_string(type) + data, "3\xFF\0\x80"s);
  EXPECT_EQ(win::RegDeleteValue(key, "RAW"), win::kErrorSuccess);
  EXPECT_EQ(win::RegDeleteValue(key, "Raw"), win::kErrorFileNotFound);
  EXPECT_EQ(Set(0, "n", "v"), win::kErrorInvalidHandle);
}

TEST_F(Registry, EntriesStartTheProgramWithTheSwitch) {
  const fs::path folder = sandbox_.Home() / "a b $HOME 100%d it's q\"q `id` back\\slash x=y";
  test::WriteScript(folder / "varnik", "printf '%s|' \"$VARNIK_HOME\" \"$VARNIK_RUNONCE\" \"$@\" > \"$SEEN\"");
  const std::string home = folder.string() + "\\app";
  const std::string slashed = std::regex_replace(home, std::regex(R"(\\)"), "/") + "/";
  setenv("VARNIK_HOME", home.c_str(), 1);
  setenv("SEEN", (folder / "seen").c_str(), 1);
  win::SetProgram({"varnik", "Varnik", folder / "varnik"});
  const struct {
    std::string key;
    const char *name, *command, *entry, *seen;
  } cases[] = {
      {kRun, "My Boot", "\"C:\\some path\\varnik.exe\" /boot", "my-boot.desktop", "||/boot|"},
      {kRunOnce, "A Crash", "varnik.exe /crash /x", "a-crash.desktop", "|A Crash|/crash|/x|"},
  };
  for (const auto& c : cases) {
    Set(Open(c.key), c.name, c.command);
    // As a desktop does: undo the escapes of entry texts and of field codes, then split as a shell would.
    std::smatch match;
    const std::string content = test::ReadFile(entries_ / c.entry);
    ASSERT_TRUE(std::regex_search(content, match, std::regex("\nExec=(.*)\n"))) << content;
    std::string line = std::regex_replace(match[1].str(), std::regex(R"(\\\\)"), "\\");
    EXPECT_EQ(std::regex_replace(line, std::regex("%%"), "").find('%'), std::string::npos) << line;
    line = std::regex_replace(line, std::regex("%%"), "%");
    ASSERT_EQ(std::system(("env -u VARNIK_HOME " + line).c_str()), 0) << line;
    EXPECT_EQ(test::ReadFile(folder / "seen"), slashed + c.seen);
  }
}

TEST_F(Registry, EntriesComeAndGoWithTheirValues) {
  const auto key = Open(kRunOnce);
  const auto has = [&](const char* entry) { return fs::exists(entries_ / entry); };
  for (const char* name : {"Once", "Other"})
    Set(key, name, "varnik.exe /crash");
  EXPECT_TRUE(!win::HandleAutostartEntry() && has("once.desktop") && has("other.desktop"));
  setenv("VARNIK_RUNONCE", "Once", 1);
  EXPECT_TRUE(win::HandleAutostartEntry() && !has("once.desktop"));
  EXPECT_EQ(win::RegDeleteValue(key, "Once"), win::kErrorFileNotFound);
  EXPECT_EQ(std::getenv("VARNIK_RUNONCE"), nullptr);
  // The record may be lost, the entry goes all the same; without a record comes no entry.
  const fs::path record = sandbox_.Home() / "config" / "varnik" / "registry.json";
  fs::remove(record);
  win::RegDeleteValue(key, "Other");
  EXPECT_FALSE(has("other.desktop"));
  fs::create_directories(record / "folder");
  EXPECT_EQ(Set(Open(kRun), "Name", "varnik.exe /boot"), win::kErrorAccessDenied);
  EXPECT_FALSE(has("name.desktop"));
}

}  // namespace
