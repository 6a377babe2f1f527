#pragma once

#include "definition/report.h"
#include "platform/system/filesystem/operations.h"

#include <optional>
#include <string>
#include <vector>

// What an activation or a deactivation does, step by step, as the platform layer reports it.
namespace varnik {

struct ActivationStep {
  // Of the definition, from 1; for a step of an included file the line that includes it. 0: behind the last line.
  int line = 0;
  std::string step;    // a verb, such as "rename"
  std::string target;  // a name inside the install, or `section\key` of what the program stores
  std::string source;  // the name that is renamed, the line that is added, or the value that is stored
  bool works = false;
  std::string why;  // one clause: what keeps it from working, or where in an included file it stands
};

// Takes what is reported while alive; of nested ones only the innermost. For passes on the install at `root`.
class ActivationSteps {
 public:
  ActivationSteps();

  void Take(const win::FileOperation& operation);

  // To be called after the last operation.
  std::vector<ActivationStep> All();

 private:
  ActivationStep StepOf(const win::FileOperation& operation) const;
  std::string Named(const std::string& path) const;
  void TakeLine(const win::FileOperation& operation);
  void TakeLook(const win::FileOperation& operation);
  void Add(ActivationStep step);

  std::string root_;
  std::vector<ActivationStep> steps_;
  std::optional<ActivationStep> missing_;  // what the present line did not find, as long as it did nothing else
};

// Those that did not work, of a pass that began with this definition.
Report FailedSteps(const std::vector<ActivationStep>& steps, const std::string& definitionFile);

}  // namespace varnik
