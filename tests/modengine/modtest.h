#pragma once

#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "platform/system/process/services.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

// A selected install with definitions to act on. `told_` collects the messages shown; `answer_` is that to a question.
namespace test {

class ModTest : public testing::Test {
 protected:
  ModTest() {
    varnik::AppPath = sandbox_.AppText();
    MakeInstall("1.2");
    win::WindowServices services;
    services.msgBox = [this](const std::string& text, int style, const std::string&) {
      told_ += text;
      return style == win::kYesNo ? answer_ : win::Answer::kOk;
    };
    win::SetWindowServices(services);
  }
  ~ModTest() override { win::SetWindowServices({}); }

  void MakeInstall(std::string_view version) {
    std::filesystem::remove_all(sandbox_.Install());
    sandbox_.MakeInstall(version);
    varnik::UseInstallFolder(Root());
    varnik::ClearModList();
    varnik::SelectModFolders(-1);
  }

  std::string Root() const { return sandbox_.InstallText(); }
  std::filesystem::path InRoot(const std::string& name) const { return sandbox_.Install() / name; }
  std::filesystem::path InMods(const std::string& name) const { return sandbox_.App() / "mods" / name; }

  // An install that holds these files, as for Put, and nothing else.
  void StartWith(const std::string& files) {
    std::filesystem::remove_all(sandbox_.Install());
    std::filesystem::create_directory(sandbox_.Install());
    Put(files);
    varnik::UseInstallFolder(Root());
  }

  // Files below the root as they are to be, each "name=content" or, for one that is not there, "name".
  void Put(const std::string& files) {
    for (const auto& [name, content] : Listed(files)) {
      std::filesystem::remove(InRoot(name));
      if (content) WriteFile(InRoot(name), *content);
    }
  }
  void Expect(const std::string& files) {
    for (const auto& [name, content] : Listed(files))
      EXPECT_EQ(Content(name), content) << name;
  }
  void PutReadOnly(const std::string& name, std::string_view content) {
    WriteFile(InRoot(name), content);
    std::filesystem::permissions(InRoot(name), std::filesystem::perms::owner_read);
  }
  void PutProgram(const std::string& name, const std::string& script) { WriteScript(InRoot(name), script); }

  static void OnEvents(const std::function<void()>& handler) { win::SetWindowServices({handler, {}, {}}); }

  // Waits for a file that a started program makes.
  bool Appears(const std::string& name) {
    for (int i = 0; i < 3000 && !Content(name); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return Content(name).has_value();
  }

  // Nothing for a file that is not there.
  std::optional<std::string> Content(const std::string& name) const {
    if (!std::filesystem::is_regular_file(InRoot(name))) return {};
    return ReadFile(InRoot(name));
  }

  // A definition of the current format below the root, as the program holds its path.
  std::string Define(const std::string& lines, const std::string& name = "mod.bzm") {
    WriteFile(InRoot(name), "BZ2HALD5\r\n" + lines);
    return Root() + name;
  }

  // The one row that a definition gives, in short: only what differs from a plain mod's row; "none" without a row.
  static std::string RowOf(const std::string& path) {
    varnik::ClearModList();
    varnik::LoadModFile(path);
    if (!varnik::ModListFilled) return "none";
    const varnik::ModEntry& mod = varnik::ModList[1];
    std::string row = varnik::ModRowText(mod);
    for (const std::string& text : {mod.Description, mod.Image, mod.Splash})
      if (!text.empty()) row += " " + text;
    if (!mod.Standard) row += mod.ExeDeactivates ? " exe2" : " exe";
    for (std::size_t i = 1; i < mod.Renames.size(); ++i)
      row += " " + mod.Renames[i].From + ">" + mod.Renames[i].To;
    for (std::size_t i = 1; i < mod.Folders.size(); ++i)
      row += "|" + mod.Folders[i];
    return row;
  }

  Sandbox sandbox_;
  std::string told_;
  win::Answer answer_ = win::Answer::kNo;

 private:
  static std::map<std::string, std::optional<std::string>> Listed(const std::string& files) {
    std::map<std::string, std::optional<std::string>> listed;
    std::istringstream words(files);
    for (std::string file; words >> file;) {
      const std::size_t split = file.find('=');
      auto& content = listed[file.substr(0, split)];
      if (split < file.size()) content = file.substr(split + 1);
    }
    return listed;
  }
};

}  // namespace test
