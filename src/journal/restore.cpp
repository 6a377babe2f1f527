#include "journal/restore.h"

#include "journal/places.h"
#include "platform/system/files/files.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/paths/paths.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <numeric>

namespace varnik {

namespace {

class Restoration {
 public:
  Restoration(const Journal& journal, RestoreScope scope) : journal_(journal), scope_(scope), places_(journal) {}

  RestoreResult Run() {
    constexpr int kMaxRounds = 64;  // each brings back what lies one folder deeper, or more
    bool isChanged = true;
    for (int round = 0; isChanged && round < kMaxRounds; ++round) {
      Look();
      isChanged = RemoveOurs() + MakeFolders() + MoveBack() > 0;
    }
    WriteBack();
    RemoveFolders();
    if (isTouched_) Look();
    return Judge();
  }

  // What would be left to do.
  RestoreResult Compare() {
    places_.Look();
    return Judge();
  }

 private:
  std::size_t Count() const { return journal_.entries.size(); }
  FilePlace& At(std::size_t place) { return places_.All()[place]; }
  bool IsCopied(std::size_t i) const { return journal_.entries[i].existed && journal_.entries[i].copy; }

  void Look() {
    places_.Look();
    isTouched_ = false;
  }

  // The file system, to change something.
  win::FileSystem& Disk() {
    isTouched_ = true;
    return win::CurrentFileSystem();
  }

  void Remember(std::size_t entry) { why_[entry] = win::ExplainError(errno); }

  // A file of the mod's that stands where it does not belong, or a second copy of one that was moved to another file
  // system and not removed there.
  bool MayGo(std::size_t i) {
    const FilePlace& place = At(i);
    if (!place.isThere || place.holds != kNowhere || IsCopied(i) || !place.status.IsFile()) return false;
    return places_.IsOurs(place) || IsSecondCopy(i);
  }

  bool IsSecondCopy(std::size_t i) {
    if (secondCopies_.empty())
      for (std::size_t other = 0; other < Count(); ++other)
        if (!journal_.entries[other].movedTo.empty()) secondCopies_[journal_.entries[other].movedTo] = other;
    const auto found = secondCopies_.find(journal_.entries[i].path);
    if (journal_.entries[i].existed || found == secondCopies_.end() || places_.Of(found->second) == kNowhere)
      return false;
    const FilePlace& first = At(places_.Of(found->second));
    if (first.status.size != At(i).status.size || first.status.identity == At(i).status.identity) return false;
    const auto content = win::ReadWholeFile(win::WindowsPathFromNative(At(i).path));
    return content && content == win::ReadWholeFile(win::WindowsPathFromNative(first.path));
  }

  int RemoveOurs() {
    int removed = 0;
    for (std::size_t i = 0; i < Count(); ++i) {
      if (!MayGo(i)) continue;
      if (Disk().Remove(At(i).path)) {
        At(i).isThere = false;
        ++removed;
      } else {
        Remember(i);
      }
    }
    return removed;
  }

  // A folder that was removed because it was empty.
  int MakeFolders() {
    int made = 0;
    for (std::size_t i = 0; i < Count(); ++i) {
      const JournalEntry& entry = journal_.entries[i];
      if (!entry.existed || !entry.before.IsFolder() || places_.Of(i) != kNowhere || At(i).isThere) continue;
      if (Disk().MakeFolder(At(i).path, entry.before.permissions)) ++made;
    }
    return made;
  }

  bool Move(std::size_t from, std::size_t to, std::size_t entry) {
    isTouched_ = true;
    const bool isMoved =
        win::RenameFile(win::WindowsPathFromNative(At(from).path), win::WindowsPathFromNative(At(to).path));
    if (isMoved)
      places_.Move(from, to);
    else
      Remember(entry);
    return isMoved;
  }

  bool IsMisplaced(std::size_t entry) const { return places_.Of(entry) != kNowhere && places_.Of(entry) != entry; }

  // What lies in the way gets another name.
  bool SetAside(std::size_t i) {
    std::string kept;
    for (int number = 1; kept.empty() || win::CurrentFileSystem().HasEntry(kept); ++number)
      kept = At(i).path + ".kept-" + std::to_string(number);
    if (!Disk().RenameWithoutReplacing(At(i).path, kept)) return false;
    At(i).isThere = false;
    return true;
  }

  // Brings back what the entry had. What stands in its place goes first: to its own place if it has one.
  int BringBack(std::size_t entry) {
    std::vector<std::size_t> chain = {entry};  // each waits for the next one to leave
    std::vector<std::size_t> moved;
    for (;;) {
      const FilePlace& target = At(chain.back());
      if (!target.isThere) break;
      const std::size_t next = target.holds;
      if (next == kNowhere) {
        if (!SetAside(chain.back())) return 0;
        break;
      }
      if (std::find(chain.begin(), chain.end(), next) != chain.end()) {
        if (!Move(chain.back(), places_.WaitingPlace(chain.back()), next)) return 0;
        break;
      }
      chain.push_back(next);
    }
    int count = 0;
    for (auto it = chain.rbegin(); it != chain.rend() && Move(places_.Of(*it), *it, *it); ++it)
      ++count;
    return count;
  }

  // From the outermost folders to the innermost, as a folder takes with it what lies in it.
  int MoveBack() {
    std::vector<std::size_t> order(Count());
    std::iota(order.begin(), order.end(), 0);
    const auto depthOf = [&](std::size_t i) { return std::ranges::count(At(i).path, '/'); };
    std::ranges::stable_sort(order, {}, depthOf);
    int moved = 0;
    for (const std::size_t entry : order)
      if (IsMisplaced(entry)) moved += BringBack(entry);
    return moved;
  }

  bool HasOldContent(std::size_t i) {
    const FilePlace& place = At(i);
    return place.isThere && place.status.IsFile() &&
           win::ReadWholeFile(win::WindowsPathFromNative(place.path)) == journal_.entries[i].copy;
  }

  void WriteBack() {
    for (std::size_t i = 0; i < Count(); ++i) {
      if (!IsCopied(i) || HasOldContent(i)) continue;
      const FilePlace& place = At(i);
      const JournalEntry& entry = journal_.entries[i];
      if (place.isThere && (scope_ == RestoreScope::kAllButContents || !places_.IsOurs(place))) continue;
      win::FileSystem& files = Disk();
      if (!win::WriteWholeFile(win::WindowsPathFromNative(place.path), *entry.copy) ||
          !files.SetPermissions(place.path, entry.before.permissions))
        Remember(i);
      files.SetModified(place.path, entry.before.modified);
    }
  }

  // From the innermost to the outermost; one that is not empty stays.
  void RemoveFolders() {
    for (std::size_t i = Count(); i-- > 0;) {
      const FilePlace& place = At(i);
      const bool isNew = place.isThere && place.holds == kNowhere && place.status.IsFolder();
      if (isNew && !journal_.entries[i].existed) Disk().RemoveFolder(place.path);
    }
  }

  std::string NameOf(std::size_t entry) const {
    std::string name = journal_.entries[entry].path;
    if (!name.starts_with('/')) std::ranges::replace(name, '/', '\\');
    return name;
  }

  ReportLine ProblemOf(std::size_t entry, const std::string& what, const std::string& otherwise) const {
    const auto why = why_.find(entry);
    return {"", 0, what + " " + NameOf(entry), why == why_.end() ? otherwise : why->second};
  }

  void JudgeCopied(std::size_t i, RestoreResult& result) {
    if (!At(i).isThere || At(i).status.IsFolder())
      result.failed.push_back(ProblemOf(i, "put back", "it has gone"));
    else if (HasOldContent(i) || !places_.IsOurs(At(i)))
      return;
    else if (scope_ == RestoreScope::kEverything)
      result.failed.push_back(ProblemOf(i, "put back the content of", "it is as the mod left it"));
    else
      result.left.push_back({"", 0, NameOf(i), "it stays as the mod left it"});
  }

  void JudgeMoved(std::size_t i, RestoreResult& result) {
    if (IsMisplaced(i)) {
      result.failed.push_back(ProblemOf(i, "put back", "another file has its name"));
    } else if (places_.Of(i) == kNowhere) {
      const bool isReachable = win::CurrentFileSystem().IsFolder(win::FolderAbove(At(i).path));
      (isReachable ? result.lost : result.failed).push_back(ProblemOf(i, "put back", "it has gone"));
    }
  }

  RestoreResult Judge() {
    RestoreResult result;
    for (std::size_t i = 0; i < Count(); ++i) {
      if (IsCopied(i))
        JudgeCopied(i, result);
      else if (journal_.entries[i].existed)
        JudgeMoved(i, result);
      else if (MayGo(i))
        result.failed.push_back(ProblemOf(i, "remove", "it was refused"));
    }
    return result;
  }

  const Journal& journal_;
  const RestoreScope scope_;
  Places places_;
  bool isTouched_ = false;                                // since the last look
  std::map<std::size_t, std::string> why_;                // by entry: why the last try failed
  std::map<std::string_view, std::size_t> secondCopies_;  // entries by where they were moved to
};

}  // namespace

bool IsAsBefore(const Journal& journal) {
  const RestoreResult found = Restoration(journal, RestoreScope::kEverything).Compare();
  return found.failed.empty() && found.lost.empty();
}

RestoreResult Restore(const Journal& journal, RestoreScope scope) { return Restoration(journal, scope).Run(); }

}  // namespace varnik
