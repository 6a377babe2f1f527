#include "platform/system/filesystem/deeds.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace win {

namespace {

DeedWatch::Listener listening;
bool isInside = false;  // a deed that belongs to another

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
    {ENOTEMPTY, "the folder is not empty"},
    {EXDEV, "a folder cannot be moved to another file system"},
    {ENOEXEC, "this system has nothing that runs it"},
    {EINVAL, "a folder cannot be moved into itself"},
};

std::string Explained(int error) {
  for (const Explanation& row : kExplanations)
    if (row.error == error) return row.clause;
  return error == 0 ? "it was refused" : std::strerror(error);
}

}  // namespace

DeedWatch::DeedWatch(Listener listener) : outer_(std::exchange(listening, std::move(listener))) {}

DeedWatch::~DeedWatch() { listening = std::move(outer_); }

bool DeedsAreWatched() { return listening != nullptr && !isInside; }

bool Tell(Act act, const std::string& target, const std::string& source, const std::function<bool()>& work) {
  if (!DeedsAreWatched()) return work();
  isInside = true;
  errno = 0;
  Deed deed{act, target, source, work(), ""};
  const bool isQuestion = act == Act::kLookFor || act == Act::kSearch;
  if (!deed.done) deed.why = Explained(isQuestion ? ENOENT : errno);
  isInside = false;
  listening(deed);
  return deed.done;
}

}  // namespace win
