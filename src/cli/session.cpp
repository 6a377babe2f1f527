#include "cli/session.h"

#include "cli/output.h"
#include "definition/bzonecfg.h"
#include "definition/crashmarker.h"
#include "definition/includes.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "platform/system/files/files.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/services.h"
#include "platform/system/process/signals.h"
#include "platform/system/store/configfolder.h"
#include "platform/system/text/text.h"
#include "support/modfileexists.h"
#include "support/runstate.h"

#include <cstring>
#include <filesystem>

namespace varnik::cli {

namespace {

bool answerYes = false;
bool silent = false;
win::SettingsSnapshot settings;

win::Answer AnswerBox(const std::string& text, int style, const std::string&) {
  if (win::ButtonsOfStyle(style) != win::kOkOnly) {
    Note(OneLine(text) + (answerYes ? " (taken as Yes)" : " (taken as No)"));
    return answerYes ? win::Answer::kYes : win::Answer::kNo;
  }
  if (!silent) Note(OneLine(text));
  return win::Answer::kOk;
}

bool OpenGivenInstall(const std::string& root) {
  if ((win::GetAttributes(root).value_or(0) & win::kAttributeDirectory) == 0) {
    Note(root + ": there is no such folder");
    return false;
  }
  if (!IsBZ2Install(root)) Note(root + ": bzone.exe, data.pak and binkw32.dll are not all there; going on");
  UseInstallFolder(root);
  return true;
}

bool SelectStoredInstall() {
  ReadInstallList(settings);
  return SelectInstall(StoredActiveInstall(settings));
}

bool IsPath(const std::string& mod) { return mod.find_first_of("\\/") != std::string::npos; }

}  // namespace

void StartSession(const Arguments& arguments) {
  AppPath = arguments.appPath ? GivenFolder(*arguments.appPath) : win::ProgramFolder("varnik.cmd");
  win::TidyConfigFolder();
  win::SetWindowServices({.doEvents = {}, .msgBox = AnswerBox, .inputBox = {}});
  settings = StoredSettings();
  ReadOptionFlags(settings);
}

const win::SettingsSnapshot& SessionSettings() { return settings; }

int FailWithoutSettings() {
  return Fail("settings", "cannot be read, so that an interrupted run may be undone later; nothing was changed");
}

void AnswerYes() { answerYes = true; }

void SilenceMessages() { silent = true; }

std::string GivenPath(const std::string& path) {
  if (path.empty() || win::IsAbsolutePath(path)) return path;
  std::error_code ignored;
  const auto complete = std::filesystem::current_path(ignored) / path;
  return win::WindowsPathFromNative(complete.lexically_normal().string());
}

std::string GivenFolder(const std::string& folder) { return win::WithSeparator(GivenPath(folder)); }

int Uninterrupted(const std::string& outcome, const std::function<int()>& work) {
  const win::SignalHold hold;
  const int status = work();
  const win::NotedSignals noted = win::SignalsNoted();
  if (noted.count == 0) return status;
  Note(std::string("SIG") + sigabbrev_np(noted.first) + ": " +
       (status == kDone ? outcome : "not everything could be done"));
  return 128 + noted.first;
}

bool OpenInstall(const Arguments& arguments) {
  const bool isOpen = arguments.root ? OpenGivenInstall(GivenFolder(*arguments.root)) : SelectStoredInstall();
  if (isOpen) SelectModFolders(-1);
  if (!isOpen && !arguments.root)
    Note("no install is selected: name one with --root DIR, or choose one with `varnik-cli installs select N`");
  return isOpen;
}

bool OpenInstallIfAny(const Arguments& arguments) {
  if (arguments.root) return OpenInstall(arguments);
  if (SelectStoredInstall()) SelectModFolders(-1);
  return true;
}

std::size_t FindGivenMod(const std::string& mod) {
  LoadModList();
  if (!IsPath(mod)) return FindMod(mod);
  const std::string path = GivenPath(mod);
  if (const std::size_t row = FindMod(path)) return row;
  LoadModFile(path);
  return FindMod(path);
}

int FailWithoutMod(const std::string& mod) {
  if (mod == kNoMod) return Fail(mod, "stands for no mod");
  const bool isThere = !FindGivenDefinition(mod).empty();
  return Fail(mod, isThere ? "does not fit this install, or is no definition" : "there is no such definition");
}

std::string FindGivenDefinition(const std::string& mod) {
  if (!IsPath(mod)) return FindModFile(mod);
  const std::string path = GivenPath(mod);
  return FileExists(path) ? path : "";
}

std::string FindFileToLookAt(const std::string& modOrPath) {
  const std::size_t row = FindGivenMod(modOrPath);
  const std::string here = GivenPath(modOrPath);
  if (IsPath(modOrPath)) return here;
  const std::string found = row == 0 ? FindModFile(modOrPath) : ModList[row].DefinitionFile;
  if (found.empty()) return here;
  if (FileExists(here) && !win::IsSamePath(here, found))
    Note(found + " is looked at: ./" + modOrPath + " names the file of this folder");
  return found;
}

int RefuseActivation(const ModEntry& mod) {
  if (const CrashMarker marker = ReadCrashMarker(settings); !marker.root.empty())
    return FailOverActiveMod(marker.definitionFile);
  if (mod.State == 1 && ConfigurationIsReplaced(InstallRoot())) return Fail(mod.DefinitionFile, "is active already");
  return kDone;
}

int FailOverActiveMod(const std::string& definitionFile) {
  return Fail(definitionFile,
              "is active: `varnik-cli deactivate` puts everything back, and so does `varnik-cli doctor --fix`");
}

std::optional<int> SelectMod(const std::string& mod) {
  const auto row = static_cast<int>(FindGivenMod(mod));
  if (row == 0 && mod != kNoMod) {
    FailWithoutMod(mod);
    return std::nullopt;
  }
  SelectModFolders(row == 0 ? -1 : row);
  return row == 0 ? -1 : row;
}

}  // namespace varnik::cli
