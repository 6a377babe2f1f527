#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "diagnosis/activationplan.h"
#include "modengine/catalogue.h"

namespace varnik::cli {

namespace {

Json AsJson(const ActivationStep& step) {
  return {{"Line", step.line == 0 ? Json() : Json(step.line)},
          {"Step", step.step},
          {"Target", Text(step.target)},
          {"Source", step.source.empty() ? Json() : Text(step.source)},
          {"Works", step.works},
          {"Why", step.why.empty() ? Json() : Text(step.why)}};
}

Row AsRow(const ActivationStep& step) {
  return {step.line == 0 ? "" : std::to_string(step.line),
          step.step,
          step.target,
          OneLine(step.source),
          step.works ? "yes" : "no",
          step.why};
}

int PrintConfiguration(const Arguments& arguments, const ActivationPlan& plan) {
  if (!plan.configuration) return Fail(arguments.mod, "would leave bzone.cfg as it is");
  if (arguments.json) return Print({{"Configuration", Text(*plan.configuration)}});
  return PrintBytes(*plan.configuration);
}

}  // namespace

int PlanGivenMod(const Arguments& arguments) {
  const std::size_t row = FindGivenMod(arguments.mod);
  if (row == 0) return FailWithoutMod(arguments.mod);
  SelectModFolders(static_cast<int>(row));
  if (const int refused = RefuseActivation(ModList[row]); refused != kDone) return refused;
  const ActivationPlan plan = PlanActivation(ModEntry(ModList[row]));
  if (arguments.configuration) return PrintConfiguration(arguments, plan);
  std::vector<ActivationStep> steps = plan.steps;
  if (!plan.active) Note("an EXE of the mod would take over");
  if (arguments.after) steps.insert(steps.end(), plan.left.begin(), plan.left.end());
  if (arguments.after && plan.left.empty()) Note("a deactivation would leave everything as it is now");
  return PrintList(arguments.json, steps, AsJson, {"Line", "Step", "Target", "Source", "Works", "Why"}, AsRow);
}

}  // namespace varnik::cli
