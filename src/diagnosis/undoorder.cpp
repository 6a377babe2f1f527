#include "diagnosis/undoorder.h"

#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <functional>

namespace varnik {

namespace {

using enum Problem;

// One text for all spellings of a path.
std::string KeyOf(std::string_view path) {
  std::string key;
  for (const char c : win::LowerCase(path)) {
    const bool isRepeated = win::IsSeparator(c) && (key.empty() || key.back() == '\\');
    if (!isRepeated) key += win::IsSeparator(c) ? '\\' : c;
  }
  if (key.ends_with('\\')) key.pop_back();
  return key;
}

std::uint64_t HashOf(std::string_view key) { return std::hash<std::string_view>()(key); }

std::size_t LineOf(const std::unordered_map<std::uint64_t, std::size_t>& lines, std::uint64_t hash) {
  const auto found = lines.find(hash);
  return found == lines.end() ? 0 : found->second;
}

template <class Visit>
void ForEachFolder(std::string_view key, const Visit& visit) {
  for (std::size_t end = key.rfind('\\'); end != std::string_view::npos; end = key.rfind('\\', end - 1))
    visit(HashOf(key.substr(0, end)));
}

}  // namespace

// The line of an action that named the key, a folder above it or something below it.
std::size_t UndoOrder::FindShared(std::string_view key) const {
  std::size_t line = LineOf(names_, HashOf(key));
  ForEachFolder(key, [&](std::uint64_t folder) {
    if (line == 0) line = LineOf(names_, folder);
  });
  return line != 0 ? line : LineOf(folders_, HashOf(key));
}

bool UndoOrder::Touches(const std::string& name) const { return FindShared(KeyOf(name)) != 0; }

const NameFate* UndoOrder::FateOf(const std::string& name) const {
  const std::string key = KeyOf(name);
  const auto find = [&](std::uint64_t hash) {
    const auto found = fates_.find(hash);
    return found == fates_.end() ? nullptr : &found->second;
  };
  const NameFate* fate = find(HashOf(key));
  ForEachFolder(key, [&](std::uint64_t folder) {
    if (!fate) fate = find(folder);
  });
  return fate;
}

bool UndoOrder::CheckFound(const Place& place, const std::string& name) const {
  const NameFate* const fate = FateOf(name);
  if (!fate || fate->use != NameUse::kMoves) return true;
  place.Report(kMovedAway,
               NameOfLine(fate->line) + " moves " + Quoted(fate->oldName) + " away, so the game finds no " +
                   Quoted(name) +
                   (fate->newName.empty() ? "" : ": while the mod is active it is " + Quoted(fate->newName)));
  return false;
}

void UndoOrder::SetFates(const Place& place, const std::vector<MovedName>& names) {
  const auto nameOf = [&](NameUse use) {
    const auto found = std::find_if(names.begin(), names.end(), [&](const MovedName& one) { return one.use == use; });
    return found == names.end() ? std::string() : found->name;
  };
  const std::string replaced = nameOf(NameUse::kReplaces), given = nameOf(NameUse::kGives);
  if (firstGiven_.empty()) firstGiven_ = given;
  for (const MovedName& moved : names)
    fates_[HashOf(KeyOf(moved.name))] = {
        place.line, moved.use, moved.name, replaced.empty() ? given : replaced, given, nameOf(NameUse::kMoves)};
}

void UndoOrder::Add(const Place& place, const std::vector<MovedName>& names) {
  const auto isShared = [&](const MovedName& moved) { return Touches(moved.name); };
  if (const auto shared = std::find_if(names.begin(), names.end(), isShared); shared != names.end())
    place.Report(kUndoOrder,
                 NameOfLine(FindShared(KeyOf(shared->name))) + " names " + Quoted(shared->name) +
                     " too, and is undone first, as it was done first: the lines alone do not bring all back");
  SetFates(place, names);
  for (const MovedName& moved : names) {
    const std::string key = KeyOf(moved.name);
    names_.emplace(HashOf(key), place.line);
    ForEachFolder(key, [&](std::uint64_t folder) { folders_.emplace(folder, place.line); });
  }
}

}  // namespace varnik
