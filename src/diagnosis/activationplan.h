#pragma once

#include "definition/modentry.h"
#include "modengine/activationsteps.h"

#include <optional>
#include <string>
#include <vector>

// What an activation would do to the selected install, step by step. It is found by a rehearsal of the activation
// itself, so that it holds whatever the passes do.
namespace varnik {

struct ActivationPlan {
  bool active = false;  // false: an EXE takes over
  std::vector<ActivationStep> steps;
  std::optional<std::string> configuration;  // the bzone.cfg that the game would find; nothing when it stays as it is

  // What would differ from now once the mod is deactivated: "put back" steps that do not work, in name order.
  std::vector<ActivationStep> left;
};

// Changes nothing. For a row of the catalogue.
ActivationPlan PlanActivation(const ModEntry& mod);

}  // namespace varnik
