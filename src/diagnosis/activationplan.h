#pragma once

#include "definition/modentry.h"
#include "platform/system/filesystem/operations.h"

#include <optional>
#include <string>
#include <vector>

// What an activation would do to the selected install, step by step. It is found by a rehearsal of the activation
// itself, so that it holds whatever the passes do.
namespace varnik {

struct PlanStep {
  // Of the definition, from 1; for a step of an included file the line that includes it. 0: behind the last line.
  int line = 0;
  std::string step;    // a verb, such as "rename"
  std::string target;  // a name inside the install, or `section\key` of what the program stores
  std::string source;  // the name that is renamed, the line that is added, or the value that is stored
  bool works = false;
  std::string why;  // one clause: what keeps it from working, or where in an included file it stands
};

// Turns what the platform layer reports during an activation on the selected install into steps.
class PlanSteps {
 public:
  PlanSteps();

  void Take(const win::FileOperation& operation);

  // To be called after the last operation.
  std::vector<PlanStep> All();

 private:
  PlanStep StepOf(const win::FileOperation& operation) const;
  std::string Named(const std::string& path) const;
  void TakeLine(const win::FileOperation& operation);
  void TakeLook(const win::FileOperation& operation);
  void Add(PlanStep step);

  std::string root_;
  std::vector<PlanStep> steps_;
  std::optional<PlanStep> missing_;  // what the present line did not find, as long as it did nothing else
};

struct ActivationPlan {
  bool active = false;  // false: an EXE takes over
  std::vector<PlanStep> steps;
  std::optional<std::string> configuration;  // the bzone.cfg that the game would find; nothing when it stays as it is

  // What would differ from now once the mod is deactivated: "put back" steps that do not work, in name order.
  std::vector<PlanStep> left;
};

// Changes nothing. For a row of the catalogue.
ActivationPlan PlanActivation(const ModEntry& mod);

}  // namespace varnik
