#include "cli/commands.h"
#include "cli/output.h"
#include "diagnosis/doctor.h"

#include <algorithm>

namespace varnik::cli {

namespace {

struct Finding {
  Leaving leaving;
  bool fixed = false;
};

Json AsJson(const Finding& finding) {
  return {{"Item", Text(finding.leaving.item)},
          {"Meaning", Text(finding.leaving.meaning)},
          {"Remedy", Text(finding.leaving.remedy)},
          {"Fixable", finding.leaving.mend != nullptr},
          {"Fixed", finding.fixed}};
}

std::string StateOf(const Finding& finding) {
  return finding.fixed ? "fixed" : finding.leaving.mend ? "--fix does it" : "by hand";
}

void Fix(Finding& finding) {
  if (!finding.leaving.mend) return;
  Note(finding.leaving.item + ": " + finding.leaving.remedy);
  finding.fixed = Mend(finding.leaving);
  if (!finding.fixed) Note(finding.leaving.item + ": could not be fixed");
}

int PrintFindings(const Arguments& arguments, const std::vector<Finding>& findings) {
  Json list = Json::array();
  std::string text;
  for (const Finding& finding : findings) {
    const Leaving& leaving = finding.leaving;
    list.push_back(AsJson(finding));
    text += leaving.item + " (" + StateOf(finding) + ")\n  " + leaving.meaning + "\n  " + leaving.remedy + "\n";
  }
  if (arguments.json) return Print(list);
  return PrintBytes(findings.empty() ? "Nothing was left behind.\n" : text);
}

}  // namespace

int LookAtInstall(const Arguments& arguments) {
  std::vector<Finding> findings;
  for (Leaving& leaving : FindLeavings())
    findings.push_back({std::move(leaving)});
  for (Finding& finding : findings)
    if (arguments.fix) Fix(finding);
  const int printed = PrintFindings(arguments, findings);
  const bool allFixed = std::all_of(findings.begin(), findings.end(), [](const Finding& one) { return one.fixed; });
  return allFixed ? printed : kFailed;
}

}  // namespace varnik::cli
