#include "platform/system/filesystem/foldernames.h"

#include "platform/system/text/text.h"

#include <algorithm>

namespace win {

namespace {

std::string Folded(std::string_view name) { return IsAscii(name) ? LowerCase(name) : LowerCase(Utf8FromBytes(name)); }

}  // namespace

std::size_t FolderNames::Hash::operator()(std::string_view name) const {
  return std::hash<std::string>()(Folded(name));
}

bool FolderNames::Equal::operator()(std::string_view a, std::string_view b) const {
  return EqualNoCase(a, b) || (!IsAscii(a) && !IsAscii(b) && Folded(a) == Folded(b));
}

void FolderNames::Add(std::string_view name) {
  const std::string* const known = Find(name);
  if (known == nullptr || *known != name) names_.emplace(name);
}

void FolderNames::Remove(std::string_view name) {
  const auto [first, last] = names_.equal_range(name);
  const auto found = std::find(first, last, name);
  if (found != last) names_.erase(found);
}

const std::string* FolderNames::Find(std::string_view wanted) const {
  const auto [first, last] = names_.equal_range(wanted);
  if (first == last) return nullptr;
  const auto exact = std::find(first, last, wanted);
  return exact != last ? &*exact : &*std::min_element(first, last);
}

}  // namespace win
