#include "diagnosis/activationplan.h"

#include "definition/bzonecfg.h"
#include "modengine/applymod.h"
#include "modengine/rehearsedmod.h"
#include "platform/system/files/rehearsal.h"
#include "platform/system/files/wholefile.h"
#include "support/install.h"

#include <utility>

namespace varnik {

namespace {

const char* ClauseFor(win::PathDifference::Kind kind) {
  using Kind = win::PathDifference::Kind;
  return kind == Kind::kNew    ? "it would be left over"
         : kind == Kind::kGone ? "it would be gone"
                               : "it would have changed";
}

std::vector<ActivationStep> LeftBehind(const ModEntry& mod) {
  win::Rehearsal rehearsal;
  const std::string root = InstallRoot();
  std::vector<ActivationStep> left;
  if (!ApplyMod(mod.DefinitionFile, mod.Legacy).active) return left;
  RevertMod(mod.DefinitionFile, root, true);
  for (const auto& [path, kind] : rehearsal.Differences(root))
    left.push_back(
        {0, "put back", path.starts_with(root) ? path.substr(root.size()) : path, "", false, ClauseFor(kind)});
  return left;
}

}  // namespace

ActivationPlan PlanActivation(const ModEntry& mod) {
  RehearsedMod rehearsed = RehearseMod(mod.DefinitionFile, mod.Legacy);
  ActivationPlan plan{rehearsed.active, std::move(rehearsed.steps), {}, LeftBehind(mod)};
  if (rehearsed.configuration != win::ReadWholeFile(InstallRoot() + kGameConfig))
    plan.configuration = std::move(rehearsed.configuration);
  return plan;
}

}  // namespace varnik
