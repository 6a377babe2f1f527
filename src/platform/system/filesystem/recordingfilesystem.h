#pragma once

#include "platform/system/filesystem/contentid.h"
#include "platform/system/filesystem/overlayfilesystem.h"

#include <map>
#include <set>
#include <string>

namespace win {

// An overlay that notes what its changes concern, so that somebody who makes them for real can undo them. All paths are
// resolved ones.
class RecordingFileSystem : public OverlayFileSystem {
 public:
  using OverlayFileSystem::OverlayFileSystem;

  std::unique_ptr<ReadableFile> OpenForReading(const std::string& path) override;
  std::unique_ptr<WritableFile> OpenForWriting(const std::string& path, OpenMode mode, mode_t permissions) override;
  bool Rename(const std::string& from, const std::string& to) override;
  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override;
  bool Remove(const std::string& path) override;
  bool MakeFolder(const std::string& path, mode_t permissions) override;
  bool RemoveFolder(const std::string& path) override;
  bool SetPermissions(const std::string& path, mode_t permissions) override;

  // Every path that a call was to change, whether it did or not, and where what stood there is in the file system
  // below.
  const std::set<std::string>& Touched() const { return touched_; }

  // Files of the file system below whose content a call overwrote or removed.
  const std::set<std::string>& Destroyed() const { return destroyed_; }

  // A file that could not be opened or read to its end, and the reason as in errno. Empty when there was none. What
  // follows such a failure may be other than what another try would do.
  const std::string& Unreadable() const { return unreadable_; }
  int ReadError() const { return readError_; }

  // What files held that calls wrote: of each file what it held last, and what it held when it was renamed or emptied.
  std::set<ContentId> Written() const;

  // What the files hold, by path, that have been written and not removed.
  std::map<std::string, std::string> Contents() const;

  // Where what the file system below has at a path is now, for all that is elsewhere.
  std::map<std::string, std::string> Moves() const;

 private:
  class Reader;

  void NoteUnreadable(const std::string& path);
  void Touch(const std::string& resolved);
  void TouchForGood(const std::string& resolved);
  void TouchForRename(const std::string& from, const std::string& to);

  std::string unreadable_;
  int readError_ = 0;
  std::set<std::string> touched_;
  std::set<std::string> destroyed_;
  std::set<ContentId> written_;
};

}  // namespace win
