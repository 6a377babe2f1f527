#include "platform/system/store/settings.h"

#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace {

using namespace std::string_literals;

class Settings : public testing::Test {
 protected:
  test::Sandbox sandbox_;
  const std::filesystem::path file_ = sandbox_.Home() / "config" / "varnik" / "settings.json";

  std::string Get(const std::string& key) { return win::GetSetting("App", "Section", key, "fallback"); }
  bool Save(const std::string& key, const std::string& value) { return win::SaveSetting("App", "Section", key, value); }
};

pid_t Fork(const std::function<void()>& child) {
  const pid_t pid = fork();
  if (pid == 0) {
    child();
    _exit(0);
  }
  return pid;
}

int StatusOf(pid_t pid) {
  int status = -1;
  waitpid(pid, &status, 0);
  return status;
}

TEST_F(Settings, KeepEveryByte) {
  for (const std::string& value : {""s, "plain"s, " \r\n\t\"\\"s, "nul\0inside"s, "\xE9\x80 no UTF-8 \xFF"s,
                                   "\xC3\xA9"s, std::string(100000, '\xF0'), "[1,2]"s}) {
    EXPECT_TRUE(Save("key", value));
    EXPECT_EQ(Get("key"), value);
  }
}

TEST_F(Settings, NamesMatchWithoutCaseAndKeepTheirFirstSpelling) {
  const auto all = [] {
    std::string text;
    for (const auto& row : win::AllSettings("app"))
      text += row.section + "." + row.key + "=" + row.value + ";";
    return text;
  };
  Save("One", "1");
  EXPECT_TRUE(win::SaveSetting("APP", "SECTION", "oNE", "2"));
  Save("b", "3");
  win::SaveSetting("App", "Another", "x", "\xFF");
  win::SaveSetting("Other", "Section", "One", "4");
  EXPECT_EQ(all(), "Another.x=\xFF;Section.One=2;Section.b=3;");
  EXPECT_TRUE(win::DeleteSetting("App", "section", "ONE"));
  EXPECT_EQ(all(), "Another.x=\xFF;Section.b=3;");
  EXPECT_TRUE(win::DeleteSetting("App", "section"));
  EXPECT_EQ(all(), "Another.x=\xFF;");
  EXPECT_TRUE(win::DeleteSetting("app"));
  EXPECT_EQ(all(), "");
  EXPECT_EQ(win::GetSetting("Other", "Section", "One"), "4");
}

TEST_F(Settings, OfASectionAreReplacedAsAWhole) {
  Save("old", "1");
  win::SaveSetting("App", "Another", "x", "2");
  EXPECT_TRUE(win::SaveSection("app", "section", {{"a", "3"}, {"b", "4"}}, win::OtherKeys::kKeep));
  EXPECT_EQ(Get("old") + Get("a") + Get("B"), "134");
  EXPECT_TRUE(win::SaveSection("App", "Section", {{"a", "5"}}, win::OtherKeys::kRemove));
  EXPECT_EQ(Get("old") + Get("a") + Get("b"), "fallback5fallback");
  EXPECT_TRUE(win::SaveSection("App", "Section", {}, win::OtherKeys::kRemove));
  EXPECT_EQ(win::AllSettings("App").size(), 1u);
}

TEST_F(Settings, SeeWhatAnotherProgramWroteInTheSameInstant) {
  Save("key", "old");
  const auto time = std::filesystem::last_write_time(file_);
  std::string content = test::ReadFile(file_);
  content.replace(content.find("old"), 3, "new");
  test::WriteFile(file_, content);
  std::filesystem::last_write_time(file_, time);
  EXPECT_EQ(Get("key"), "new");
}

TEST_F(Settings, DamagedStoresAreKeptAsideOneByOne) {
  int n = 0;
  for (const std::string& content :
       {""s, R"({"App": {"Section": {"key": "va)"s, R"({"App": {"Section": {"key": "v"}}} x)"s,
        "{\"App\": {\"Section\": {\"key\": \"\xFF\"}}}"s, "[]"s, R"({"App": {"Section": "text"}})"s,
        std::string(1 << 20, '['),
        R"({"App":{"Section":{"key":)" + std::string(100000, '[') + std::string(100000, ']') + "}}}",
        std::string(65 << 20, ' ') + "{}"}) {
    const std::string kept = file_.string() + ".damaged-" + std::to_string(++n);
    SCOPED_TRACE(kept);
    test::WriteFile(file_, content);
    testing::internal::CaptureStderr();
    // Half of them meet a reader first, half a writer.
    EXPECT_TRUE(n % 2 || Get("key") == "fallback");
    EXPECT_TRUE(Save("key", "value"));
    EXPECT_EQ(Get("key"), "value");
    EXPECT_NE(testing::internal::GetCapturedStderr().find(kept + "\n"), std::string::npos);
    EXPECT_TRUE(test::ReadFile(kept) == content);
  }
}

TEST_F(Settings, AStoreThatCannotBeReadIsLeftAlone) {
  std::filesystem::create_directories(file_ / "folder");
  testing::internal::CaptureStderr();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Get("key"), "fallback");
    EXPECT_FALSE(Save("key", "value"));
    EXPECT_FALSE(win::DeleteSetting("App"));
  }
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  EXPECT_TRUE(std::filesystem::exists(file_ / "folder"));
}

TEST_F(Settings, ProcessesDoNotLoseEachOthersKeys) {
  std::vector<pid_t> children;
  for (const std::string name : {"a", "b", "c"})
    children.push_back(Fork([&] {
      for (int i = 0; i < 30; ++i)
        Save(name + std::to_string(i), "value");
    }));
  for (const pid_t child : children)
    EXPECT_EQ(StatusOf(child), 0);
  EXPECT_EQ(win::AllSettings("App").size(), 90u);
}

}  // namespace
