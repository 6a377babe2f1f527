#include "modengine/takeover.h"

#include "definition/directive.h"
#include "journal/journal.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/process/process.h"

#include <functional>
#include <optional>

namespace varnik {

namespace {

std::string Refusal(const std::string& what, const std::string& commandLine) {
  const std::string problem = commandLine.empty() ? "" : win::RunnerProblem(commandLine);
  return problem.empty() ? "" : what + " cannot be run: " + problem + "\r\nNothing was changed.";
}

// The command line of the EXE that ends the pass, which then returns false; empty when none does.
std::string TakeoverIn(const std::function<bool()>& pass) {
  std::string started;
  const win::Rehearsal rehearsal;
  const win::OperationObserver observer([&started](const win::FileOperation& operation) {
    if (operation.kind == win::Operation::kStart) started = operation.target;
  });
  return pass() ? "" : started;
}

std::string RefusalOfTakeover(const std::string& commandLine) { return Refusal("The mod's own program", commandLine); }

// By its lines, which is how an EXE comes in; a definition that is not what it was is undone without them.
bool IsUndoneByDefinition(const std::string& definitionFile, const std::string& root) {
  double version = 0;
  if (!ReadMarker(win::LineReader(definitionFile).ReadLine(), version) || version != kCurrentFormat) return false;
  const std::optional<Journal> journal = FindJournal(root, definitionFile);
  return !journal || DefinitionsAreAsNoted(*journal);
}

}  // namespace

std::string GameProblem(const std::string& game) { return Refusal("The game", game); }

std::string ActivationProblem(const std::string& definitionFile, bool isLegacy, const std::string& game) {
  const std::string takeover = TakeoverIn([&] {
    ActivationState state;
    return RunActivation(definitionFile, isLegacy, state);
  });
  return takeover.empty() ? GameProblem(game) : RefusalOfTakeover(takeover);
}

std::string DeactivationProblem(const std::string& definitionFile, const std::string& root) {
  if (!IsUndoneByDefinition(definitionFile, root)) return "";
  return RefusalOfTakeover(TakeoverIn([&] {
    bool persistent = false;
    return UndoLines(definitionFile, root, persistent);
  }));
}

}  // namespace varnik
