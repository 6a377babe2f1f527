#pragma once

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/recordingfilesystem.h"

#include <string>
#include <vector>

namespace win {

// While one is alive, the verbs of this layer change nothing: neither files nor what the program stores. They return
// what they would return, each seeing the effects of earlier ones. Programs are not started; the result is whether one
// could be; no event is served. Other processes must not change the same folders while it is alive. For one thread.
class Rehearsal {
 public:
  // How the disk would differ from now, in name order, without what the program stores. What lies below `folder`, a
  // Windows path, has a path that begins with it as it was given, anything else a native one. Of a folder that moved or
  // was made only the folder itself.
  std::vector<PathDifference> Differences(const std::string& folder);

  // What has been changed so far, in native paths.
  const RecordingFileSystem& Record() const { return files_; }

 private:
  RecordingFileSystem files_{CurrentFileSystem()};
  ScopedFileSystem scope_{files_};
};

}  // namespace win
