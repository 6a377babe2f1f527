#include "platform/system/files/findfile.h"

#include "platform/system/filesystem/deeds.h"
#include "platform/system/filesystem/disk.h"
#include "platform/system/filesystem/diskpicture.h"
#include "platform/system/filesystem/nativefile.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/wildcards.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <vector>

namespace win {

namespace {

// Windows' own paths end at 260 characters; below this depth there is nothing that it could have found.
constexpr std::size_t kDeepest = 256;

struct Identity {
  dev_t device;
  ino_t inode;
  bool operator==(const Identity&) const = default;
};

struct CloseFolder {
  void operator()(DIR* stream) const { closedir(stream); }
};

}  // namespace

struct FolderReader::State {
  std::unique_ptr<DIR, CloseFolder> stream;
  std::string pictured;             // native path, when a picture stands in the place of the disk
  std::vector<FoundEntry> entries;  // of that, the last one first
  std::vector<Identity> way;        // the folders from the first reader down to this one

  // Nothing for a folder that lies on its own way, as a link may have it: it would be entered for ever.
  static std::unique_ptr<State> Open(Descriptor folder, const std::vector<Identity>& above) {
    struct stat status;
    if (!folder.IsOpen() || fstat(folder.Get(), &status) != 0 || above.size() >= kDeepest) return nullptr;
    const Identity identity{status.st_dev, status.st_ino};
    if (std::find(above.begin(), above.end(), identity) != above.end()) return nullptr;
    auto state = std::make_unique<State>();
    state->stream.reset(fdopendir(folder.Get()));
    if (state->stream == nullptr) return nullptr;
    folder.Release();
    state->way = above;
    state->way.push_back(identity);
    return state;
  }

  static std::unique_ptr<State> OpenPictured(DiskPicture& picture, const std::string& native,
                                             const std::vector<Identity>& above) {
    struct stat status;
    auto entries = picture.EntriesIn(native);
    if (!entries || picture.Stat(native, status) != 0 || above.size() >= kDeepest) return nullptr;
    const Identity identity{status.st_dev, status.st_ino};
    if (std::find(above.begin(), above.end(), identity) != above.end()) return nullptr;
    auto state = std::make_unique<State>();
    state->pictured = native;
    state->entries.assign(entries->rbegin(), entries->rend());
    state->way = above;
    state->way.push_back(identity);
    return state;
  }

  static std::unique_ptr<State> Open(const std::string& native) {
    if (DiskPicture* const picture = DiskPicture::InUse()) return OpenPictured(*picture, native, {});
    return Open(Descriptor(open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), {});
  }

  bool NextPictured(FoundEntry& entry) {
    if (entries.empty()) return false;
    entry = std::move(entries.back());
    entries.pop_back();
    return true;
  }

  bool IsFolder(const dirent& entry) const {
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
    struct stat status;
    return fstatat(dirfd(stream.get()), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
  }
};

FolderReader::FolderReader(const std::string& folder) : state_(State::Open(NativePath(folder))) {}
FolderReader::FolderReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
FolderReader::~FolderReader() = default;
FolderReader::FolderReader(FolderReader&&) noexcept = default;
FolderReader& FolderReader::operator=(FolderReader&&) noexcept = default;

FolderReader FolderReader::Descend(const std::string& name) const {
  if (!IsOpen()) return FolderReader(std::unique_ptr<State>());
  if (!state_->stream) {
    DiskPicture* const picture = DiskPicture::InUse();
    if (picture == nullptr) return FolderReader(std::unique_ptr<State>());
    return FolderReader(State::OpenPictured(*picture, state_->pictured + "/" + name, state_->way));
  }
  Descriptor folder(openat(dirfd(state_->stream.get()), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return FolderReader(State::Open(std::move(folder), state_->way));
}

bool FolderReader::IsOpen() const { return state_ != nullptr; }

bool FolderReader::Next(FoundEntry& entry) {
  if (IsOpen() && !state_->stream) return state_->NextPictured(entry);
  const dirent* const next = IsOpen() ? readdir(state_->stream.get()) : nullptr;
  if (next == nullptr) return false;
  entry.name = next->d_name;
  entry.isFolder = state_->IsFolder(*next);
  return true;
}

namespace {

bool IsThere(const std::string& path) {
  if (path.empty() || EndsInSeparator(path)) return false;
  const std::string name = FileNameOf(path);
  if (!HasWildcards(name)) return FindNativePath(path).has_value();
  const std::string folder = path.substr(0, path.size() - name.size());
  FolderReader reader(folder.empty() ? "." : folder);
  for (FoundEntry entry; reader.Next(entry);)
    if (MatchesWildcards(entry.name, name)) return true;
  return false;
}

}  // namespace

bool FindFirstFileSucceeds(const std::string& path) {
  if (!DeedsAreWatched()) return IsThere(path);
  return Tell(Act::kLookFor, path, "", [&] { return IsThere(path); });
}

}  // namespace win
