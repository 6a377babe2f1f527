#include "modengine/activationsteps.h"

#include "definition/currentline.h"
#include "platform/system/files/lines.h"
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
    {win::Operation::kInclude, "include"},
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

// The line of the file that the pass began with, and where in an included one.
std::pair<int, std::string> Position() {
  const auto& lines = CurrentLines;
  if (lines.empty()) return {0, ""};
  const win::LineReader& inner = *lines.back();
  if (lines.size() == 1) return {inner.LineNumber(), ""};
  return {lines.front()->LineNumber(),
          "line " + std::to_string(inner.LineNumber()) + " of " + win::FileNameOf(inner.Path())};
}

}  // namespace

ActivationSteps::ActivationSteps() : root_(InstallRoot()) {}

std::string ActivationSteps::Named(const std::string& path) const {
  if (!path.starts_with(root_)) return path;
  return path.substr(std::min(path.find_first_not_of('\\', root_.size()), path.size()));
}

ActivationStep ActivationSteps::StepOf(const win::FileOperation& operation) const {
  const auto& [line, within] = Position();
  std::string why = operation.why;
  if (!within.empty()) why += (why.empty() ? "" : ", ") + within;
  const std::string source = operation.kind == win::Operation::kRename ? Named(operation.source) : operation.source;
  return {line, NameOf(operation.kind), Named(operation.target), source, operation.done, why};
}

// What is not found is a step when its line does nothing else.
void ActivationSteps::Add(ActivationStep step) {
  if (missing_ && missing_->line != step.line) steps_.push_back(*missing_);
  missing_.reset();
  steps_.push_back(std::move(step));
}

void ActivationSteps::TakeLook(const win::FileOperation& operation) {
  ActivationStep look = StepOf(operation);
  if (look.line == 0) return;
  const bool isSameLine = missing_ && missing_->line == look.line;
  if (missing_ && !isSameLine) steps_.push_back(*missing_);
  if (operation.done)
    missing_.reset();
  else if (!isSameLine)
    missing_ = std::move(look);
}

// Lines belong to the step that opened their file, as long as it is the last one of the same line of the definition.
void ActivationSteps::TakeLine(const win::FileOperation& operation) {
  ActivationStep step = StepOf(operation);
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

void ActivationSteps::Take(const win::FileOperation& operation) {
  if (operation.kind == win::Operation::kLookFor) return TakeLook(operation);
  if (operation.kind == win::Operation::kWriteLine) return TakeLine(operation);
  const bool isReading = operation.kind == win::Operation::kSearch || operation.kind == win::Operation::kInclude;
  if (isReading && operation.done) return;
  Add(StepOf(operation));
}

std::vector<ActivationStep> ActivationSteps::All() {
  if (missing_) steps_.push_back(*missing_);
  missing_.reset();
  return steps_;
}

Report FailedSteps(const std::vector<ActivationStep>& steps, const std::string& definitionFile) {
  Report report;
  for (const ActivationStep& step : steps) {
    if (step.works) continue;
    const bool hasSource = step.step == "rename" || step.step == "move";
    const std::string what = hasSource ? step.source + " to " + step.target : step.target;
    report.push_back({definitionFile, step.line, step.step + " " + what, step.why});
  }
  return report;
}

}  // namespace varnik
