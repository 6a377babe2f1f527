#pragma once

#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/overlayfilesystem.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace test {

// Another file system with changes in memory, failing as disks do. Calls that change something are counted from 1,
// syncs and appends included. A power cut may take back what is written and not synced; folders, permissions and times
// stay.
class FaultyFileSystem : public win::OverlayFileSystem {
 public:
  using OverlayFileSystem::OverlayFileSystem;

  int Calls() const { return calls_; }

  // Call `n` fails with `error` and changes nothing. With `cutShort` an append writes its first half before it fails.
  void FailAt(int n, int error, bool cutShort = false) { fault_ = {n, error, cutShort}; }

  // Content waits for the sync of its file, a name for that of its folder.
  void ForgetUnsynced() {
    for (const auto& [path, name] : names_) {
      OverlayFileSystem::Remove(path);
      if (name.synced) OverlayFileSystem::OpenForWriting(path, win::OpenMode::kTruncate, 0666)->Append(*name.synced);
    }
    names_.clear();
  }

  std::unique_ptr<win::WritableFile> OpenForWriting(const std::string& path, win::OpenMode mode,
                                                    mode_t permissions) override {
    Name& name = NameOf(path);
    auto file = Fails() ? nullptr : OverlayFileSystem::OpenForWriting(path, mode, permissions);
    if (!file) return nullptr;
    if (!name.now) name.now = std::make_shared<std::string>();
    return std::make_unique<File>(*this, path, std::move(file));
  }
  bool Rename(const std::string& from, const std::string& to) override {
    Name &source = NameOf(from), &target = NameOf(to);
    if (Fails() || !OverlayFileSystem::Rename(from, to)) return false;
    target.now = std::exchange(source.now, nullptr);
    return true;
  }
  bool RenameWithoutReplacing(const std::string& from, const std::string& to) override {
    return HasEntry(to) ? win::FailWith(EEXIST) : Rename(from, to);
  }
  bool Remove(const std::string& path) override {
    Name& name = NameOf(path);
    if (Fails() || !OverlayFileSystem::Remove(path)) return false;
    name.now.reset();
    return true;
  }
  bool MakeFolder(const std::string& path, mode_t permissions) override {
    return !Fails() && OverlayFileSystem::MakeFolder(path, permissions);
  }
  bool RemoveFolder(const std::string& path) override { return !Fails() && OverlayFileSystem::RemoveFolder(path); }
  bool SetPermissions(const std::string& path, mode_t permissions) override {
    return !Fails() && OverlayFileSystem::SetPermissions(path, permissions);
  }
  bool SetModified(const std::string& path, const timespec& time) override {
    return !Fails() && OverlayFileSystem::SetModified(path, time);
  }
  bool Sync(const std::string& path) override {
    if (Fails() || !OverlayFileSystem::Sync(path)) return false;
    if (const auto& file = NameOf(path).now) *file = *Content(path);
    for (auto& [below, name] : names_)
      if (win::FolderAbove(below) == path) name.synced = name.now;
    return true;
  }

  bool SyncAll(const std::string&) override {
    if (Fails()) return false;
    for (auto& [path, name] : names_) {
      if (name.now) *name.now = *Content(path);
      name.synced = name.now;
    }
    return true;
  }

 private:
  // The files that have a name after a power cut and now, each with the content that is synced. Null for none.
  struct Name {
    std::shared_ptr<std::string> synced, now;
  };

  class File : public win::WritableFile {
   public:
    File(FaultyFileSystem& files, std::string path, std::unique_ptr<win::WritableFile> file)
        : files_(files), path_(std::move(path)), file_(std::move(file)) {}
    bool Append(std::string_view content) override {
      const bool fails = files_.Fails();
      if (fails && files_.fault_.cutShort) file_->Append(content.substr(0, content.size() / 2));
      return fails ? win::FailWith(files_.fault_.error) : file_->Append(content);
    }
    bool Sync() override { return files_.Sync(path_); }
    bool Close() override { return file_->Close(); }

   private:
    FaultyFileSystem& files_;
    std::string path_;
    std::unique_ptr<win::WritableFile> file_;
  };

  bool Fails() { return ++calls_ == fault_.call && !win::FailWith(fault_.error); }
  std::optional<std::string> Content(const std::string& path) {
    win::FileStatus status;
    const auto file = win::OpenFile(*this, path, status);
    return file ? win::ReadUpTo(*file, status.size, status.size + 1) : std::nullopt;
  }
  Name& NameOf(const std::string& path) {
    const auto [found, isNew] = names_.try_emplace(path);
    if (const auto content = isNew ? Content(path) : std::nullopt)
      found->second.synced = found->second.now = std::make_shared<std::string>(*content);
    return found->second;
  }
  std::map<std::string, Name> names_;  // by path, those that have been changed
  int calls_ = 0;
  struct {
    int call, error;
    bool cutShort;
  } fault_ = {};
};

}  // namespace test
