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
  Remove(name);
  names_.emplace(name);
}

void FolderNames::Remove(std::string_view name) {
  if (const auto hidden = hidden_.find(name); hidden != hidden_.end()) hidden_.erase(hidden);
  const auto [first, last] = names_.equal_range(name);
  const auto found = std::find(first, last, name);
  if (found != last) names_.erase(found);
}

void FolderNames::Hide(std::string_view name) {
  Remove(name);
  hidden_.emplace(name);
}

void FolderNames::VisitAlike(std::string_view wanted, const Visitor& visit) const {
  const auto [first, last] = names_.equal_range(wanted);
  std::for_each(first, last, visit);
  if (below_ == nullptr) return;
  below_->VisitAlike(wanted, [&](const std::string& name) {
    if (!hidden_.contains(name)) visit(name);
  });
}

const std::string* FolderNames::Find(std::string_view wanted) const {
  const std::string* found = nullptr;
  VisitAlike(wanted, [&](const std::string& name) {
    const bool isBetter = found == nullptr || name == wanted || (*found != wanted && name < *found);
    if (isBetter) found = &name;
  });
  return found;
}

}  // namespace win
