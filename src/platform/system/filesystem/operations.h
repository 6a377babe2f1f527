#pragma once

#include <functional>
#include <string>

// Lets an observer follow what the verbs of this layer do to files and to what the program stores.
namespace win {

enum class Operation {
  kLookFor,  // whether there is a file or folder of this name
  kSearch,   // for a file by its bare name, in whole folders
  kInclude,  // a file that a definition names is read as a part of it
  kRename,   // `source` to `target`
  kDelete,
  kMakeFolder,
  kRemoveFolder,
  kWrite,  // a text file, from empty
  kAppend,
  kWriteLine,  // `source` is the text; follows the kWrite or kAppend of that file
  kSet,        // a key of a profile file; `source` is `key=value`
  kStart,      // a program, without waiting for it
  kStore,      // in the settings store or the registry; `target` is `section\key`, `source` the value
  kForget,
};

struct FileOperation {
  Operation kind = Operation::kLookFor;
  std::string target;  // the path or name that it is about
  std::string source;
  bool done = false;
  std::string why;  // one clause, when it was not done
};

// Sees every operation while alive. A nested operation is reported once, as the outermost. Of several observers only
// the newest is told.
class OperationObserver {
 public:
  using Listener = std::function<void(const FileOperation& operation)>;

  explicit OperationObserver(Listener listener);
  ~OperationObserver();
  OperationObserver(const OperationObserver&) = delete;
  OperationObserver& operator=(const OperationObserver&) = delete;

 private:
  Listener outer_;
};

bool OperationsAreObserved();

// One clause for a value of errno.
std::string ExplainError(int error);

// Does `work`, whose errno explains a failure, and reports it to the observer. Returns what `work` returns.
bool ReportOperation(Operation operation, const std::string& target, const std::string& source,
                     const std::function<bool()>& work);

}  // namespace win
