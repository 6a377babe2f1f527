#include <algorithm>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "diagnosis/check.h"

namespace varnik::cli {

namespace {

std::string_view NameOf(Severity severity) {
  return severity == Severity::kError ? "error" : "warning";
}

Json AsJson(const Finding& finding) {
  const FindingKind& kind = KindOf(finding.problem);
  return {{"Line", finding.line},
          {"Severity", NameOf(kind.severity)},
          {"Code", kind.code},
          {"Message", Text(finding.message)}};
}

// As compilers write it, so that editors find the line.
std::string AsText(const std::string& file, const Finding& finding) {
  const FindingKind& kind = KindOf(finding.problem);
  return file + ":" + std::to_string(finding.line) + ": " + std::string(NameOf(kind.severity)) + ": " +
         finding.message + " [" + std::string(kind.code) + "]";
}

int PrintFindings(const Arguments& arguments, const std::vector<Finding>& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings) {
    if (arguments.json)
      list.push_back(AsJson(finding));
    else if (const int status = PrintLine(AsText(arguments.file, finding)); status != kDone)
      return status;
  }
  return arguments.json ? Print(list) : kDone;
}

bool IsError(const Finding& finding) {
  return KindOf(finding.problem).severity == Severity::kError;
}

}  // namespace

int CheckFile(const Arguments& arguments) {
  if (!OpenInstallIfAny(arguments)) return kFailed;
  const std::optional<CheckReport> report = CheckDefinition(GivenPath(arguments.file));
  if (!report) return Fail(arguments.file, "cannot be read");
  if (!report->leftOut.empty()) Note(report->leftOut);
  const int status = PrintFindings(arguments, report->findings);
  const bool anyError = std::any_of(report->findings.begin(), report->findings.end(), IsError);
  return status == kDone && anyError ? kFailed : status;
}

}  // namespace varnik::cli
