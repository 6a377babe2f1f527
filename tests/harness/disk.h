#pragma once

#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/overlayfilesystem.h"

#include <cerrno>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test {

// One call that changes something, or makes changes last.
struct DiskCall {
  enum class Kind { kOpen, kAppend, kRename, kMove, kRemove, kMakeFolder, kRemoveFolder, kSync, kSyncAll };

  Kind kind;
  std::string path, target;  // of a rename to `target`; a move replaces nothing
  std::string content = {};
  win::OpenMode mode = {};

  bool IsSync() const { return kind == Kind::kSync || kind == Kind::kSyncAll; }
};

// Another file system with changes in memory, failing as disks do and dying as processes and machines do. Calls that
// change something are counted from 1, syncs and appends included; with CountReads also those that open and read.
class Disk : public win::OverlayFileSystem {
 public:
  using OverlayFileSystem::OverlayFileSystem;

  int Calls() const { return calls_; }
  const std::vector<DiskCall>& Log() const { return log_; }
  void CountReads() { countReads_ = true; }

  // Call `n` fails with `error` and changes nothing. With `cutShort` an append writes its first half before it fails.
  void FailAt(int n, int error, bool cutShort = false) { fault_ = {n, n, error, cutShort}; }

  // From call `n` on nothing changes any more, as when the process has been killed; 0: never.
  void StopAt(int n) { fault_ = {n, n == 0 ? 0 : 1 << 30, EIO, false}; }

  // Does again what another disk was asked to do.
  void Do(const DiskCall& call) {
    using Kind = DiskCall::Kind;
    if (call.kind == Kind::kOpen) OverlayFileSystem::OpenForWriting(call.path, call.mode, 0666);
    if (call.kind == Kind::kAppend)
      if (const auto file = OverlayFileSystem::OpenForWriting(call.path, win::OpenMode::kAppend, 0666))
        file->Append(call.content);
    if (call.kind == Kind::kRename) OverlayFileSystem::Rename(call.path, call.target);
    if (call.kind == Kind::kMove) OverlayFileSystem::RenameWithoutReplacing(call.path, call.target);
    if (call.kind == Kind::kRemove) OverlayFileSystem::Remove(call.path);
    if (call.kind == Kind::kMakeFolder) OverlayFileSystem::MakeFolder(call.path, 0777);
    if (call.kind == Kind::kRemoveFolder) OverlayFileSystem::RemoveFolder(call.path);
  }

  std::unique_ptr<win::ReadableFile> OpenForReading(const std::string& path) override {
    if (countReads_ && Fails()) return nullptr;
    auto file = OverlayFileSystem::OpenForReading(path);
    return file && countReads_ ? std::make_unique<Reader>(*this, std::move(file)) : std::move(file);
  }
  std::unique_ptr<win::WritableFile> OpenForWriting(const std::string& path, win::OpenMode mode,
                                                    mode_t permissions) override {
    auto file = Fails() ? nullptr : OverlayFileSystem::OpenForWriting(path, mode, permissions);
    if (!file) return nullptr;
    const std::string real = Resolved(path, true);
    log_.push_back({DiskCall::Kind::kOpen, real, "", "", mode});
    return std::make_unique<File>(*this, real, std::move(file));
  }
  bool Rename(const std::string& from, const std::string& to) override {
    const DiskCall call{DiskCall::Kind::kRename, Resolved(from, false), Resolved(to, false)};
    return Logged(call, !Fails() && OverlayFileSystem::Rename(from, to));
  }
  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override {
    const DiskCall call{DiskCall::Kind::kMove, Resolved(from, false), Resolved(to, false)};
    return Logged(call, !Fails() && OverlayFileSystem::RenameWithoutReplacing(from, to));
  }
  bool Remove(const std::string& path) override {
    const DiskCall call{DiskCall::Kind::kRemove, Resolved(path, false), ""};
    return Logged(call, !Fails() && OverlayFileSystem::Remove(path));
  }
  bool MakeFolder(const std::string& path, mode_t permissions) override {
    const DiskCall call{DiskCall::Kind::kMakeFolder, Resolved(path, false), ""};
    return Logged(call, !Fails() && OverlayFileSystem::MakeFolder(path, permissions));
  }
  bool RemoveFolder(const std::string& path) override {
    const DiskCall call{DiskCall::Kind::kRemoveFolder, Resolved(path, false), ""};
    return Logged(call, !Fails() && OverlayFileSystem::RemoveFolder(path));
  }
  bool SetPermissions(const std::string& path, mode_t permissions) override {
    return !Fails() && OverlayFileSystem::SetPermissions(path, permissions);
  }
  bool SetModified(const std::string& path, const timespec& time) override {
    return !Fails() && OverlayFileSystem::SetModified(path, time);
  }
  bool Sync(const std::string& path) override {
    const DiskCall call{DiskCall::Kind::kSync, Resolved(path, true), ""};
    return Logged(call, !Fails() && OverlayFileSystem::Sync(path));
  }
  bool SyncAll(const std::string& path) override {
    const DiskCall call{DiskCall::Kind::kSyncAll, Resolved(path, true), ""};
    return Logged(call, !Fails() && OverlayFileSystem::SyncAll(path));
  }

 private:
  struct Reader : win::ReadableFile {
    Reader(Disk& all, std::unique_ptr<win::ReadableFile> opened) : disk(all), file(std::move(opened)) {}
    ssize_t Read(char* buffer, std::size_t size) override { return disk.Fails() ? -1 : file->Read(buffer, size); }
    bool Status(win::FileStatus& status) override { return file->Status(status); }
    Disk& disk;
    std::unique_ptr<win::ReadableFile> file;
  };

  struct File : win::WritableFile {
    File(Disk& all, std::string name, std::unique_ptr<win::WritableFile> opened)
        : disk(all), path(std::move(name)), file(std::move(opened)) {}
    bool Append(std::string_view content) override {
      const bool fails = disk.Fails();
      if (fails && disk.fault_.cutShort) file->Append(content.substr(0, content.size() / 2));
      if (fails) return win::FailWith(disk.fault_.error);
      return disk.Logged({DiskCall::Kind::kAppend, path, "", std::string(content)}, file->Append(content));
    }
    bool Sync() override { return disk.Sync(path); }
    bool Close() override { return file->Close(); }
    Disk& disk;
    std::string path;
    std::unique_ptr<win::WritableFile> file;
  };

  bool Logged(const DiskCall& call, bool isDone) {
    if (isDone) log_.push_back(call);
    return isDone;
  }
  bool Fails() {
    ++calls_;
    return calls_ >= fault_.first && calls_ <= fault_.last && !win::FailWith(fault_.error);
  }

  std::vector<DiskCall> log_;
  bool countReads_ = false;
  int calls_ = 0;
  struct {
    int first = 0, last = 0, error = 0;
    bool cutShort = false;
  } fault_;
};

// What a power cut may leave of the calls of a log whose changes have not been synced, one row of flags for each state:
// true for a call that lasts. A sync of a file or folder makes its content last, or the names in it. With `isOrdered`
// it makes all earlier changes of names last too, and no change of a name lasts without the one before it, as on ext4;
// else they last in any combination, as on btrfs. Paths below `other` lie on a disk of their own. At most about `limit`
// rows.
std::vector<std::vector<bool>> CutsOf(const std::vector<DiskCall>& log, bool isOrdered, const std::string& other,
                                      int limit);

// Does those calls on another disk. Of a file that lacks a part in the middle the part is zeros.
void DoWhatLasts(const std::vector<DiskCall>& log, const std::vector<bool>& lasts, Disk& disk);

}  // namespace test
