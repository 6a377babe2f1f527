#include "cli/commands.h"
#include "cli/output.h"
#include "diagnosis/doctor.h"

#include <algorithm>

namespace varnik::cli {

namespace {

struct Finding {
  Leftover leftover;
  bool fixed = false;
};

Json AsJson(const Finding& finding) {
  return {{"Item", Text(finding.leftover.item)},
          {"Meaning", Text(finding.leftover.meaning)},
          {"Remedy", Text(finding.leftover.remedy)},
          {"Fixable", finding.leftover.mend != nullptr},
          {"Fixed", finding.fixed}};
}

int PrintFindings(const Arguments& arguments, const std::vector<Finding>& findings) {
  Json list = Json::array();
  std::string text;
  for (const Finding& finding : findings) {
    const Leftover& leftover = finding.leftover;
    list.push_back(AsJson(finding));
    const char* const state = finding.fixed ? "fixed" : leftover.mend ? "--fix does it" : "by hand";
    text += leftover.item + " (" + state + ")\n  " + leftover.meaning + "\n  " + leftover.remedy + "\n";
  }
  if (arguments.json) return Print(list);
  return PrintBytes(findings.empty() ? "Nothing was left behind.\n" : text);
}

}  // namespace

int LookAtInstall(const Arguments& arguments) {
  std::vector<Finding> findings;
  for (Leftover& leftover : FindLeftovers())
    findings.push_back({std::move(leftover)});
  for (auto& [leftover, fixed] : findings) {
    if (!arguments.fix || !leftover.mend) continue;
    Note(leftover.item + ": " + leftover.remedy);
    fixed = Mend(leftover);
    if (!fixed) Note(leftover.item + ": could not be fixed");
  }
  const int printed = PrintFindings(arguments, findings);
  const bool allFixed = std::all_of(findings.begin(), findings.end(), [](const Finding& one) { return one.fixed; });
  return allFixed ? printed : kFailed;
}

}  // namespace varnik::cli
