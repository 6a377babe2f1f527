#include "support/rememberedsearches.h"

#include "platform/system/files/findfile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/process/services.h"
#include "platform/system/text/wildcards.h"

#include <chrono>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace varnik {

namespace {

double Seconds(const timespec& time) {
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Times of folders advance by the tick of the clock, and on some file systems by two whole seconds: while one is young,
// the next change may leave it the same.
bool IsSettled(const timespec& modified) {
  const double now = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
  return now - Seconds(modified) > (modified.tv_nsec == 0 ? 2.1 : 0.03);
}

struct SearchedFolder {
  std::string path;  // native
  win::FileStatus status;
  bool mayBeTrusted = false;       // a change is sure to show in the status
  bool isWhole = false;            // listed to its end
  std::vector<std::string> names;  // of sub-folders, with a separator behind them, and the file found; in their order

  explicit SearchedFolder(const std::string& native) : path(native) {
    mayBeTrusted = win::CurrentFileSystem().Status(path, status) && IsSettled(status.modified);
  }

  // True when the entry is what the search looks for, or a folder to enter. What a link leads to may change elsewhere.
  bool Take(const win::FoundEntry& entry, const std::string& pattern) {
    if (entry.isLink) mayBeTrusted = false;
    const bool counts = entry.isFolder ? !entry.name.starts_with('.') : win::PathMatchSpec(entry.name, pattern);
    if (counts) names.push_back(entry.isFolder ? entry.name + "/" : entry.name);
    return counts;
  }

  bool HasStatusOf(const SearchedFolder& other) const {
    return status.identity == other.status.identity && status.modified.tv_sec == other.status.modified.tv_sec &&
           status.modified.tv_nsec == other.status.modified.tv_nsec;
  }
};

class Search {
 public:
  Search(const std::string& folder, std::string pattern) : pattern_(std::move(pattern)) {
    Walk(win::FolderReader(folder), folder);
  }

  const std::string& Found() const { return found_; }

  bool IsAsBefore() {
    for (SearchedFolder& folder : folders_)
      if (!IsAsBefore(folder)) return false;
    return isRepeatable_;
  }

 private:
  bool Walk(win::FolderReader reader, const std::string& path) {
    win::DoEvents();
    if (!reader.IsOpen()) {
      isRepeatable_ = false;
      return false;
    }
    const std::size_t here = folders_.size();
    folders_.emplace_back(reader.Path());
    for (win::FoundEntry entry; reader.Next(entry);) {
      if (!folders_[here].Take(entry, pattern_)) continue;
      if (!entry.isFolder) found_ = path + entry.name;
      if (!entry.isFolder || Walk(reader.Descend(entry), path + entry.name + "\\")) return true;
    }
    folders_[here].isWhole = true;
    return false;
  }

  bool IsAsBefore(SearchedFolder& folder) {
    SearchedFolder now(folder.path);
    if (folder.mayBeTrusted && folder.HasStatusOf(now)) return true;
    const auto listing = win::CurrentFileSystem().OpenFolder(folder.path);
    if (!listing) return false;
    const auto isEnough = [&] { return !folder.isWhole && now.names.size() == folder.names.size(); };
    for (win::FoundEntry entry; !isEnough() && listing->Next(entry);)
      now.Take(entry, pattern_);
    if (now.names != folder.names) return false;
    now.isWhole = folder.isWhole;
    folder = std::move(now);
    return true;
  }

  std::string pattern_;
  std::vector<SearchedFolder> folders_;
  bool isRepeatable_ = true;  // false: what could not be opened, or had been entered by a link, may be next time
  std::string found_;
};

int alive = 0;
std::map<std::pair<std::string, std::string>, Search> searches;  // by folder and pattern

}  // namespace

RememberedSearches::RememberedSearches() { ++alive; }

RememberedSearches::~RememberedSearches() {
  if (--alive == 0) searches.clear();
}

bool RememberedSearches::AreAlive() { return alive > 0; }

std::string RememberedSearches::FindFirstFile(const std::string& folder, const std::string& pattern) {
  const auto known = searches.find({folder, pattern});
  if (known != searches.end() && known->second.IsAsBefore()) return known->second.Found();
  Search search(folder, pattern);
  return searches.insert_or_assign({folder, pattern}, std::move(search)).first->second.Found();
}

}  // namespace varnik
