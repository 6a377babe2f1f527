#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "diagnosis/check.h"
#include "installs/installlist.h"
#include "platform/system/paths/paths.h"

#include <algorithm>

namespace varnik::cli {

namespace {

std::string_view NameOf(Severity severity) { return severity == Severity::kError ? "error" : "warning"; }

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

// An author with several installs may have forgotten which one is selected.
void NoteOtherInstall(const std::string& path) {
  const std::string folder = path.substr(0, path.size() - win::FileNameOf(path).size());
  const std::string root = InstallRoot();
  if (!root.empty() && IsBZ2Install(folder) && win::NativePath(folder) != win::NativePath(root))
    Note("looked at with the install at " + root + ", though the file lies in another one; --root chooses");
}

}  // namespace

int CheckFile(const Arguments& arguments) {
  if (!OpenInstallIfAny(arguments)) return kFailed;
  const std::string path = GivenPath(arguments.file);
  const std::optional<CheckReport> report = CheckDefinition(path);
  if (!report) return Fail(arguments.file, "cannot be read");
  NoteOtherInstall(path);
  if (!report->leftOut.empty()) Note(report->leftOut);
  const int status = PrintFindings(arguments, report->findings);
  const bool anyError = std::any_of(report->findings.begin(), report->findings.end(), [](const Finding& finding) {
    return KindOf(finding.problem).severity == Severity::kError;
  });
  return status == kDone && anyError ? kFailed : status;
}

}  // namespace varnik::cli
