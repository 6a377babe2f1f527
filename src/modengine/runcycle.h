#pragma once

#include "definition/report.h"
#include "support/settings.h"

#include <functional>
#include <string>

// One run from end to end, and what a click on the launch button comes to.
namespace varnik {

// What the run needs of a window. An empty function means that there is none.
struct RunHooks {
  std::function<void(const std::string& tip)> setTrayTip;
  std::function<void()> restoreTrayTip;
  std::function<void()> hideWindow;  // remembers visibility and window state
  std::function<void()> restoreWindow;
  std::function<void(const std::string& picture)> showSplash;  // full path of the picture
  std::function<void()> finishSplash;                  // waits until the picture has had its time, then unloads it
  std::function<void()> reloadInstall;                 // the catalogue no longer fits the disk
  std::function<void(const Report& report)> foretell;  // steps of the mod that will not work; ahead of any change
};

// How a run went, for a caller that reports it.
struct RunOutcome {
  bool ran = false;         // the game was to be started; false without a problem: an EXE of the mod took over, or a
                            // signal was noted before
  bool asPromised = true;   // with the mod as far as the install allows, and all is as it was before
  Report failed;            // steps that did not work though they should have, and what was not put back
  std::string program;      // full path of it
  std::string commandLine;  // the whole line as spawned
  int exitStatus = -1;      // -1: it could not be started
  std::string earlyEnd;     // see ShellAndWait; for the caller to show
  std::string problem;      // the message that ended the run before the game, if any; it has been shown
};

// `modIndex` is a row of ModList, -1 for no mod. Holds a RunGuard; a refusal is shown. A game, or
// an EXE of the mod, that is there and that this system has no runner for is refused before any change.
RunOutcome LaunchBZ2(int modIndex, const std::string& commandLine, bool useEditor, const RunHooks& hooks,
                     const win::SettingsSnapshot& stored = StoredSettings());

struct ClickOutcome {
  enum class Act { kNone, kActivated, kDeactivated, kRun };

  Act act = Act::kNone;  // kActivated and kDeactivated: the catalogue no longer fits the disk
  bool done = false;     // of an activation or deactivation: false when an EXE took over, or it is not as promised
  Report failed;         // of an activation or deactivation: what did not work
  RunOutcome run;        // for kNone it holds the problem alone
};

// A click on the launch button with this row selected: a persistent mod is activated or deactivated, any other is run.
// `buildLine` gives the game's command line, with the edit switches.
ClickOutcome LaunchClick(int modIndex, const std::function<std::string()>& buildLine, const RunHooks& hooks,
                         const win::SettingsSnapshot& stored = StoredSettings());

}  // namespace varnik
