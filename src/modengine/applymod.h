#pragma once

#include "definition/report.h"
#include "modengine/activationsteps.h"

#include <functional>
#include <string>
#include <vector>

// Activation and deactivation as a player gets them. What will be changed is written into a journal first, so that
// every run can be undone exactly, whatever becomes of the machine, the disk or the definition meanwhile; and what did
// not work is said.
namespace varnik {

struct ApplyResult {
  bool active = false;  // false: it was refused, or an EXE took over
  std::string refusal;  // one sentence; nothing was changed then
  std::vector<ActivationStep> steps;
  Report foretold;  // steps that the present install does not allow; known before the first change
  Report failed;    // steps that did not work though they should have

  // All that can work did, and something did.
  bool IsAsPromised() const;
};

// On the selected install. `foretell` is called ahead of the first change when there is something to say. An earlier
// activation of this install that was cut off is put back first.
ApplyResult ApplyMod(const std::string& definitionFile, bool isLegacy,
                     const std::function<void(const Report& report)>& foretell = {});

struct RevertResult {
  enum class End {
    kDone,
    kExeTookOver,
    kNoFormat,   // the file cannot be read, its marker is bad or its version is no format, and no journal tells of it
    kNotActive,  // nothing tells that the mod is active; nothing was changed
    kRefused,    // another process is at work, or the journal cannot be written
  };

  End end = End::kDone;
  std::string refusal;
  Report failed;  // one line for each file that is not as it was; empty: everything is
};

// Undoes a mod of either format in the install at `root`, which ends in a separator: by its definition, and by the
// journal what that leaves. With a definition that is not what it was when the mod was activated, by the journal alone.
// A mod with neither a journal nor a marker is undone when `isForced`, as one of an older version of Varnik may have to
// be: where it is not active, that may move files of the player's.
RevertResult RevertMod(const std::string& definitionFile, const std::string& root, bool isForced);

// Undoes a mod as a start does that finds the marker of an interrupted run: no install is selected, so that the
// player's values and lists are left as the mod set them. `left` receives what a later `RevertMod` puts back.
RevertResult RevertAtStart(const std::string& definitionFile, const std::string& root, Report& left);

// Puts back what activations and deactivations changed that were cut off without a marker: in the install at `root`, or
// in all when it is empty. `count` receives how many there were. With `withLeft` also what a start has left.
Report FinishInterrupted(const std::string& root, bool withLeft, int& count);

}  // namespace varnik
