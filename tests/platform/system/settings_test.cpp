#include "platform/system/settings.h"

#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <random>
#include <thread>

namespace {

using namespace std::string_literals;

class Settings : public testing::Test {
 protected:
  test::Sandbox sandbox_;
  const std::filesystem::path folder_ = sandbox_.Home() / "config" / "varnik";
  const std::filesystem::path file_ = folder_ / "settings.json";

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
  Save("One", "1");
  EXPECT_TRUE(win::SaveSetting("APP", "SECTION", "oNE", "2"));
  Save("b", "3");
  win::SaveSetting("App", "Another", "x", "\xFF");
  win::SaveSetting("Other", "Section", "One", "4");
  std::string all;
  for (const auto& row : win::AllSettings("app"))
    all += row.section + "." + row.key + "=" + row.value + ";";
  EXPECT_EQ(all, "Another.x=\xFF;Section.One=2;Section.b=3;");
}

TEST_F(Settings, DeleteKeySectionAndApplication) {
  const auto fill = [&] {
    Save("a", "1");
    Save("b", "2");
    win::SaveSetting("App", "Section2", "a", "3");
  };
  fill();
  EXPECT_TRUE(win::DeleteSetting("App", "section", "A"));
  EXPECT_EQ(win::AllSettings("App").size(), 2u);
  EXPECT_TRUE(win::DeleteSetting("App", "section"));
  EXPECT_EQ(win::AllSettings("App").size(), 1u);
  fill();
  EXPECT_TRUE(win::DeleteSetting("app"));
  EXPECT_TRUE(win::AllSettings("App").empty());
  EXPECT_TRUE(win::DeleteSetting("App", "Section", "a"));
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

TEST_F(Settings, TakeNumbersTypedByHand) {
  test::WriteFile(file_, R"({"App": {"Section": {"n": 7, "b": true, "none": null, "far": [256]}}})");
  EXPECT_EQ(Get("n"), "7");
  EXPECT_EQ(Get("b"), "true");
  EXPECT_EQ(Get("none"), "fallback");
  EXPECT_EQ(Get("far"), "fallback");
  Save("new", "1");
  EXPECT_NE(test::ReadFile(file_).find("256"), std::string::npos);
}

struct DamagedCase {
  const char* what;
  std::string content;
};

const DamagedCase kDamaged[] = {
    {"empty", ""},
    {"cut in half", R"({"App": {"Section": {"key": "va)"},
    {"text behind the end", R"({"App": {"Section": {"key": "v"}}} x)"},
    {"not UTF-8", "{\"App\": {\"Section\": {\"key\": \"\xFF\"}}}"},
    {"a list", "[]"},
    {"a section that is none", R"({"App": {"Section": "text"}})"},
    {"deep", std::string(1 << 20, '[')},
    {"deep and whole", R"({"App":{"Section":{"key":)" + std::string(100000, '[') + std::string(100000, ']') + "}}}"},
    {"too big", std::string(65 << 20, ' ') + "{}"},
};

TEST_F(Settings, DamagedStoresAreKeptAsideOneByOne) {
  testing::internal::CaptureStderr();
  int n = 0;
  for (const DamagedCase& c : kDamaged) {
    SCOPED_TRACE(c.what);
    test::WriteFile(file_, c.content);
    // Half of them meet a reader first, half a writer.
    if (++n % 2) {
      EXPECT_EQ(Get("key"), "fallback");
    }
    EXPECT_TRUE(Save("key", "value"));
    EXPECT_EQ(Get("key"), "value");
  }
  const std::string said = testing::internal::GetCapturedStderr();
  n = 0;
  for (const DamagedCase& c : kDamaged) {
    const std::string kept = file_.string() + ".damaged-" + std::to_string(++n);
    EXPECT_TRUE(test::ReadFile(kept) == c.content) << kept;
    EXPECT_NE(said.find(kept + "\n"), std::string::npos) << said;
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

TEST_F(Settings, AFullDiskLeavesTheOldStore) {
  Save("key", "old");
  const std::string before = test::ReadFile(file_);
  const pid_t child = Fork([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, 4096};
    setrlimit(RLIMIT_FSIZE, &limit);
    const bool kept = !Save("key", std::string(10000, 'x')) && Get("key") == "old";
    _exit(kept ? 0 : 1);
  });
  EXPECT_EQ(StatusOf(child), 0);
  EXPECT_EQ(test::ReadFile(file_), before);
  EXPECT_TRUE(Save("key", "new"));
}

TEST_F(Settings, AKillAtAnyMomentLeavesTheOldOrTheNewStore) {
  std::mt19937 random(1);
  std::string last = "0";
  Save("key", last);
  Save("other", std::string(50000, 'o'));
  for (int round = 0; round < 40; ++round) {
    const pid_t child = Fork([&] {
      for (int i = std::stoi(last) + 1;; ++i)
        Save("key", std::to_string(i));
    });
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
    kill(child, SIGKILL);
    StatusOf(child);
    const std::string now = Get("key");
    EXPECT_GE(std::stoi(now), std::stoi(last));
    EXPECT_EQ(Get("other").size(), 50000u);
    last = now;
  }
  EXPECT_NE(last, "0");
  for (const auto& entry : std::filesystem::directory_iterator(folder_))
    EXPECT_EQ(entry.path().string().find("damaged"), std::string::npos);
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
