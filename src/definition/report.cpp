#include "definition/report.h"

#include "platform/system/paths/paths.h"

namespace varnik {

std::string TextOf(const ReportLine& problem) {
  std::string text;
  if (!problem.file.empty()) text = win::FileNameOf(problem.file) + ":";
  if (problem.line != 0) text += std::to_string(problem.line) + ":";
  if (!text.empty()) text += " ";
  return text + problem.what + (problem.why.empty() ? "" : ": " + problem.why);
}

}  // namespace varnik
