#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "diagnosis/check.h"
#include "installs/installlist.h"
#include "platform/system/paths/paths.h"

#include <algorithm>

namespace varnik::cli {

namespace {

// The text has the form of a compiler's messages, so that editors find the line.
int PrintFindings(const Arguments& arguments, const std::string& file, const std::vector<Finding>& findings) {
  Json list = Json::array();
  int status = kDone;
  for (const auto& [line, problem, message] : findings) {
    const FindingKind& kind = KindOf(problem);
    const std::string severity = kind.severity == Severity::kError ? "error" : "warning";
    if (arguments.json)
      list.push_back({{"Line", line}, {"Severity", severity}, {"Code", kind.code}, {"Message", Text(message)}});
    else if (status == kDone)
      status = PrintLine(file + ":" + std::to_string(line) + ": " + severity + ": " + message + " [" +
                         std::string(kind.code) + "]");
  }
  return arguments.json ? Print(list) : status;
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
  const std::string path = FindFileToLookAt(arguments.file);
  const std::optional<CheckReport> report = CheckDefinition(path);
  if (!report) return Fail(arguments.file, "cannot be read");
  NoteOtherInstall(path);
  if (!report->leftOut.empty()) Note(report->leftOut);
  const bool isHere = win::IsSamePath(path, GivenPath(arguments.file));
  const int status = PrintFindings(arguments, isHere ? arguments.file : win::NativePath(path), report->findings);
  const bool anyError = std::any_of(report->findings.begin(), report->findings.end(), [](const Finding& finding) {
    return KindOf(finding.problem).severity == Severity::kError;
  });
  return status == kDone && anyError ? kFailed : status;
}

}  // namespace varnik::cli
