#include "diagnosis/activationplan.h"

#include "definition/bzonecfg.h"
#include "definition/currentline.h"
#include "modengine/listedmod.h"
#include "platform/system/files/lines.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "support/install.h"

#include <algorithm>
#include <utility>

namespace varnik {

namespace {

constexpr std::pair<win::Operation, const char*> kStepNames[] = {
    {win::Operation::kLookFor, "look for"},
    {win::Operation::kSearch, "search for"},
    {win::Operation::kRename, "rename"},
    {win::Operation::kDelete, "delete"},
    {win::Operation::kMakeFolder, "make folder"},
    {win::Operation::kRemoveFolder, "remove folder"},
    {win::Operation::kWrite, "write"},
    {win::Operation::kAppend, "append"},
    {win::Operation::kWriteLine, "append"},
    {win::Operation::kSet, "set"},
    {win::Operation::kStart, "start"},
    {win::Operation::kStore, "store"},
    {win::Operation::kForget, "forget"},
};

std::string NameOf(win::Operation operation) {
  for (const auto& [known, name] : kStepNames)
    if (known == operation) return name;
  return "";
}

const char* ClauseFor(win::PathDifference::Kind kind) {
  using Kind = win::PathDifference::Kind;
  return kind == Kind::kNew    ? "it would be left over"
         : kind == Kind::kGone ? "it would be gone"
                               : "it would have changed";
}

// The line of the file that the pass began with, and where in an included one.
std::pair<int, std::string> Position() {
  const auto& lines = CurrentLines;
  if (lines.empty()) return {0, ""};
  const win::LineReader& inner = *lines.back();
  if (lines.size() == 1) return {inner.LineNumber(), ""};
  return {lines.front()->LineNumber(),
          "line " + std::to_string(inner.LineNumber()) + " of " + win::FileNameOf(inner.Path())};
}

std::optional<std::string> Configuration() { return win::ReadWholeFile(InstallRoot() + kGameConfig); }

}  // namespace

PlanSteps::PlanSteps() : root_(InstallRoot()) {}

std::string PlanSteps::Named(const std::string& path) const {
  if (!path.starts_with(root_)) return path;
  return path.substr(std::min(path.find_first_not_of('\\', root_.size()), path.size()));
}

PlanStep PlanSteps::StepOf(const win::FileOperation& operation) const {
  const auto& [line, within] = Position();
  std::string why = operation.why;
  if (!within.empty()) why += (why.empty() ? "" : ", ") + within;
  const std::string source = operation.kind == win::Operation::kRename ? Named(operation.source) : operation.source;
  return {line, NameOf(operation.kind), Named(operation.target), source, operation.done, why};
}

// What is not found is a step when its line does nothing else.
void PlanSteps::Add(PlanStep step) {
  if (missing_ && missing_->line != step.line) steps_.push_back(*missing_);
  missing_.reset();
  steps_.push_back(std::move(step));
}

void PlanSteps::TakeLook(const win::FileOperation& operation) {
  PlanStep look = StepOf(operation);
  if (look.line == 0) return;
  const bool isSameLine = missing_ && missing_->line == look.line;
  if (missing_ && !isSameLine) steps_.push_back(*missing_);
  if (operation.done)
    missing_.reset();
  else if (!isSameLine)
    missing_ = std::move(look);
}

// Lines belong to the step that opened their file, as long as it is the last one of the same line of the definition.
void PlanSteps::TakeLine(const win::FileOperation& operation) {
  PlanStep step = StepOf(operation);
  // Only a single line is shown.
  const std::string text = operation.source.substr(0, operation.source.find_last_not_of("\r\n") + 1);
  const bool isShown = step.line != 0 && text.find('\n') == std::string::npos;
  step.source = isShown ? win::Trim(text) : "";
  const bool belongs = !steps_.empty() && steps_.back().target == step.target && steps_.back().line == step.line;
  if (!belongs)
    Add(std::move(step));
  else if (!step.source.empty())
    steps_.back().source = step.source;
}

void PlanSteps::Take(const win::FileOperation& operation) {
  if (operation.kind == win::Operation::kLookFor) return TakeLook(operation);
  if (operation.kind == win::Operation::kWriteLine) return TakeLine(operation);
  if (operation.kind == win::Operation::kSearch && operation.done) return;
  Add(StepOf(operation));
}

std::vector<PlanStep> PlanSteps::All() {
  if (missing_) steps_.push_back(*missing_);
  missing_.reset();
  return steps_;
}

ActivationPlan PlanActivation(const ModEntry& mod) {
  win::Rehearsal rehearsal;
  ActivationPlan plan;
  PlanSteps steps;
  const std::optional<std::string> before = Configuration();
  {
    const win::OperationObserver observer([&](const win::FileOperation& operation) { steps.Take(operation); });
    plan.active = ActivateListedMod(mod);
  }
  plan.steps = steps.All();
  if (const auto after = Configuration(); after != before) plan.configuration = after;
  if (plan.active) DeactivateListedMod(mod);
  const std::string root = InstallRoot();
  for (const auto& [path, kind] : rehearsal.Differences(root))
    plan.left.push_back(
        {0, "put back", path.starts_with(root) ? path.substr(root.size()) : path, "", false, ClauseFor(kind)});
  return plan;
}

}  // namespace varnik
