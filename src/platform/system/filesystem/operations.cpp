#include "platform/system/filesystem/operations.h"

#include "platform/system/filesystem/confinedfilesystem.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace win {

namespace {

OperationObserver::Listener listening;
bool isInside = false;  // within an operation that is reported as a whole

struct Explanation {
  int error;
  const char* clause;
};

constexpr Explanation kExplanations[] = {
    {ENOENT, "there is no such file or folder"},
    {ENOTDIR, "the folder that it is to lie in is missing"},
    {EEXIST, "the name is taken"},
    {EPERM, "the file is read-only"},
    {EACCES, "permission denied"},
    {EISDIR, "it is a folder"},
    {EBADSLT, "the install is not as it was a moment ago"},
    {ENOTEMPTY, "the folder is not empty"},
    {EXDEV, "a folder cannot be moved to another file system"},
    {ENOEXEC, "this system has nothing that runs it"},
    {EINVAL, "a folder cannot be moved into itself"},
    {kErrorOutside, "it lies outside the install"},
};

}  // namespace

std::string ExplainError(int error) {
  for (const Explanation& row : kExplanations)
    if (row.error == error) return row.clause;
  return error == 0 ? "it was refused" : std::strerror(error);
}

OperationObserver::OperationObserver(Listener listener) : outer_(std::exchange(listening, std::move(listener))) {}

OperationObserver::~OperationObserver() { listening = std::move(outer_); }

bool OperationsAreObserved() { return listening != nullptr && !isInside; }

bool ReportOperation(Operation operation, const std::string& target, const std::string& source,
                     const std::function<bool()>& work) {
  if (!OperationsAreObserved()) return work();
  isInside = true;
  errno = 0;
  FileOperation report{operation, target, source, work(), ""};
  const bool isQuestion = operation == Operation::kLookFor || operation == Operation::kSearch;
  if (!report.done) report.why = ExplainError(isQuestion ? ENOENT : errno);
  isInside = false;
  listening(report);
  return report.done;
}

}  // namespace win
