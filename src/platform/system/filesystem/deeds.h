#pragma once

#include <functional>
#include <string>

// Lets somebody follow what the verbs of this layer do to files and to what the program stores.
namespace win {

enum class Act {
  kLookFor,  // whether there is a file or folder of this name
  kSearch,   // for a file by its bare name, in whole folders
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

struct Deed {
  Act act = Act::kLookFor;
  std::string target;  // the path or name that it is about
  std::string source;
  bool done = false;
  std::string why;  // one clause, when it was not done
};

// Told of every deed while it lives, of one that consists of others the whole only.
class DeedWatch {
 public:
  using Listener = std::function<void(const Deed& deed)>;

  explicit DeedWatch(Listener listener);
  ~DeedWatch();
  DeedWatch(const DeedWatch&) = delete;
  DeedWatch& operator=(const DeedWatch&) = delete;

 private:
  Listener outer_;
};

bool DeedsAreWatched();

// Does `work`, by whose errno a failure is explained, and tells of it when somebody wants to know.
bool Tell(Act act, const std::string& target, const std::string& source, const std::function<bool()>& work);

}  // namespace win
