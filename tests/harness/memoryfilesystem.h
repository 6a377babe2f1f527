#pragma once

#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/overlayfilesystem.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace test {

using Links = std::map<std::string, std::string>;  // absolute path to target

// The root folder, these links and the folders above them. Nothing in it can be changed.
class EmptyFileSystem : public win::FileSystem {
 public:
  explicit EmptyFileSystem(const Links& links) : targets_(links), names_{{"/", {}}} {
    for (const auto& [link, target] : links)
      for (std::string path = link; path != "/"; path = win::FolderAbove(path)) {
        targets_.try_emplace(path);
        names_[win::FolderAbove(path)].Add(win::LastName(path));
      }
  }
  std::unique_ptr<win::ReadableFile> OpenForReading(const std::string&) override { return nullptr; }
  std::unique_ptr<win::WritableFile> OpenForWriting(const std::string&, win::OpenMode, mode_t) override { return {}; }
  std::unique_ptr<win::FolderListing> OpenFolder(const std::string& path) override {
    auto listing = std::make_unique<Listing>(*this, path);
    for (const auto& [name, target] : targets_)
      if (win::FolderAbove(name) == path)
        listing->entries.push_back({std::string(win::LastName(name)), target.empty(), !target.empty()});
    return names_.contains(path) ? std::move(listing) : nullptr;
  }
  bool Status(const std::string& path, win::FileStatus& status) override { return LinkStatus(path, status); }
  bool LinkStatus(const std::string& path, win::FileStatus& status) override {
    using Kind = win::FileStatus::Kind;
    const bool isFolder = names_.contains(path);
    status = {.kind = isFolder ? Kind::kFolder : Kind::kLink, .permissions = 0755};
    status.identity.inode = std::hash<std::string>()(path) / 2;  // the upper half is the overlay's
    return isFolder || targets_.contains(path) || win::FailWith(ENOENT);
  }
  std::string LinkTarget(const std::string& path) override { return targets_.contains(path) ? targets_[path] : ""; }
  bool IsAllowed(const std::string&, int) override { return true; }
  bool Rename(const std::string&, const std::string&) override { return false; }
  bool RenameWithoutReplacing(const std::string&, const std::string&) override { return false; }
  bool Remove(const std::string&) override { return false; }
  bool MakeFolder(const std::string&, mode_t) override { return false; }
  bool RemoveFolder(const std::string&) override { return false; }
  bool SetPermissions(const std::string&, mode_t) override { return false; }
  bool SetModified(const std::string&, const timespec&) override { return false; }
  bool Sync(const std::string&) override { return true; }
  bool SyncAll(const std::string&) override { return true; }
  std::unique_ptr<win::FileLock> TryLock(const std::string&) override { return nullptr; }
  std::unique_ptr<win::FileLock> TryLockFolder(const std::string&) override { return nullptr; }
  const win::FolderNames* NamesIn(const std::string& path) override {
    return names_.contains(path) ? &names_[path] : nullptr;
  }
  bool IsSeenByPrograms() const override { return false; }

 private:
  struct Listing : win::FolderListing {
    Listing(EmptyFileSystem& all, std::string folder) : files(all), path(std::move(folder)) {}
    bool Next(win::FoundEntry& entry) override { return next < entries.size() && (entry = entries[next++], true); }
    std::unique_ptr<FolderListing> Descend(const std::string& name) override {
      return files.OpenFolder(win::JoinPath(path, name));
    }
    win::FileIdentity Identity() override {
      win::FileStatus status;
      return files.LinkStatus(path, status), status.identity;
    }
    EmptyFileSystem& files;
    std::string path;
    std::vector<win::FoundEntry> entries;
    std::size_t next = 0;
  };
  Links targets_;  // empty for a folder
  std::map<std::string, win::FolderNames> names_;
};

}  // namespace test
