#include "journal/places.h"

#include "journal/record.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/paths/paths.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace varnik {

namespace {

using win::FileStatus;

bool HasSameTime(const FileStatus& a, const FileStatus& b) {
  return a.size == b.size && a.modified.tv_sec == b.modified.tv_sec && a.modified.tv_nsec == b.modified.tv_nsec;
}

// The number of a device may change with each mount, those of its files stay on most file systems.
bool IsSame(const FileStatus& before, const FileStatus& now) {
  return before.kind == now.kind && before.identity.inode == now.identity.inode &&
         (before.identity.device == now.identity.device || HasSameTime(before, now));
}

// What a power cut leaves of a file: its beginning, with zeros where something was not written.
bool IsTorn(std::string_view content, std::string_view whole) {
  return content.size() <= whole.size() &&
         std::equal(content.begin(), content.end(), whole.begin(), [](char c, char w) { return c == w || c == '\0'; });
}

std::string WaitingName(const std::string& native) {
  return win::JoinPath(win::FolderAbove(native), "." + std::string(win::LastName(native)) + ".waiting~");
}

}  // namespace

Places::Places(const Journal& journal)
    : journal_(journal),
      now_(journal.entries.size(), kNowhere),
      written_(journal.written.begin(), journal.written.end()) {
  const std::string root = win::FollowLinks(win::NativePath(journal.root));
  for (const JournalEntry& entry : journal.entries)
    places_.push_back({PathInInstall(root, entry.path), false, {}, kNowhere});
  for (const win::ContentId& id : written_)
    longest_ = std::max<std::size_t>(longest_, id.size);
}

bool Places::IsMissing(std::size_t entry) const {
  return journal_.entries[entry].existed && !journal_.entries[entry].copy && now_[entry] == kNowhere;
}

void Places::LookAt(FilePlace& place) {
  place.isThere = win::CurrentFileSystem().LinkStatus(place.path, place.status);
  place.holds = kNowhere;
}

void Places::Match(std::size_t entry, std::size_t place) {
  now_[entry] = place;
  places_[place].holds = entry;
}

void Places::Move(std::size_t from, std::size_t to) {
  FilePlace& source = places_[from];
  FilePlace& target = places_[to];
  target.isThere = true;
  target.status = source.status;
  if (source.holds != kNowhere) Match(source.holds, to);
  source.isThere = false;
  source.holds = kNowhere;
}

void Places::Look() {
  places_.resize(journal_.entries.size());
  std::fill(now_.begin(), now_.end(), kNowhere);
  for (FilePlace& place : places_)
    LookAt(place);
  for (std::size_t i = 0; i < now_.size(); ++i)
    if (IsMissing(i) && places_[i].isThere && IsSame(journal_.entries[i].before, places_[i].status)) Match(i, i);
  MatchIdentities();
  LookForWaiting();
  MatchTimes();
  MatchSuccessors();
}

void Places::MatchIdentities() {
  std::multimap<ino_t, std::size_t> places;
  for (std::size_t i = 0; i < places_.size(); ++i)
    if (IsFree(places_[i])) places.emplace(places_[i].status.identity.inode, i);
  for (std::size_t i = 0; i < now_.size(); ++i) {
    if (!IsMissing(i)) continue;
    const FileStatus& before = journal_.entries[i].before;
    const auto [first, last] = places.equal_range(before.identity.inode);
    const auto found = std::find_if(first, last, [&](const auto& row) {
      return IsFree(places_[row.second]) && IsSame(before, places_[row.second].status);
    });
    if (found != last) Match(i, found->second);
  }
}

// Only a restoration that was cut off has left any.
void Places::LookForWaiting() {
  bool anyMissing = false;
  for (std::size_t i = 0; i < now_.size() && !anyMissing; ++i)
    anyMissing = IsMissing(i);
  for (std::size_t i = 0; anyMissing && i < now_.size(); ++i) {
    FilePlace waiting{WaitingName(places_[i].path), false, {}, kNowhere};
    LookAt(waiting);
    if (waiting.isThere) places_.push_back(std::move(waiting));
  }
  if (anyMissing && places_.size() > now_.size()) MatchIdentities();
}

// On file systems that number their files anew with each mount, and for files that were moved to another one.
void Places::MatchTimes() {
  using Key = std::tuple<std::uint64_t, time_t, long>;
  const auto keyOf = [](const FileStatus& s) { return Key{s.size, s.modified.tv_sec, s.modified.tv_nsec}; };
  std::map<Key, std::vector<std::size_t>> missing;
  std::map<Key, std::vector<std::size_t>> places;
  for (std::size_t i = 0; i < now_.size(); ++i)
    if (IsMissing(i) && journal_.entries[i].before.IsFile()) missing[keyOf(journal_.entries[i].before)].push_back(i);
  if (missing.empty()) return;
  for (std::size_t i = 0; i < places_.size(); ++i)
    if (IsFree(places_[i]) && places_[i].status.IsFile()) places[keyOf(places_[i].status)].push_back(i);
  for (const auto& [key, entries] : missing)
    if (entries.size() == 1 && places[key].size() == 1) Match(entries[0], places[key][0]);
}

// What was saved anew under the same name, as programs do, stands for the file that was there.
void Places::MatchSuccessors() {
  std::map<std::string_view, std::size_t> byPath;
  for (std::size_t i = 0; i < now_.size(); ++i)
    byPath.emplace(journal_.entries[i].path, i);
  const auto follows = [this](std::size_t entry, std::size_t place) {
    const FilePlace& there = places_[place];
    return IsFree(there) && there.status.kind == journal_.entries[entry].before.kind && !IsOurs(there);
  };
  for (std::size_t i = 0; i < now_.size(); ++i) {
    if (!IsMissing(i)) continue;
    const auto moved = byPath.find(journal_.entries[i].movedTo);
    if (moved != byPath.end() && follows(i, moved->second))
      Match(i, moved->second);
    else if (follows(i, i))
      Match(i, i);
  }
}

bool Places::IsOurs(const FilePlace& place) const {
  if (place.status.IsFile() && win::IsTemporaryName(place.path)) return true;
  if (!place.status.IsFile() || place.status.size > longest_) return false;
  const std::optional<std::string> content = win::ReadWholeFile(win::WindowsPathFromNative(place.path));
  return content && IsOurs(*content);
}

bool Places::IsOurs(std::string_view content) const {
  if (written_.contains(win::ContentIdOf(content))) return true;
  return std::any_of(journal_.texts.begin(), journal_.texts.end(),
                     [content](const std::string& text) { return IsTorn(content, text); });
}

std::size_t Places::WaitingPlace(std::size_t place) {
  places_.push_back({WaitingName(places_[place].path), false, {}, kNowhere});
  return places_.size() - 1;
}

}  // namespace varnik
