#include "editor/directiverow.h"

#include "definition/directive.h"
#include "platform/system/text/text.h"

#include <utility>

namespace varnik {

namespace {

bool IsBlank(const std::string& text) { return win::Trim(text).empty(); }

}  // namespace

DirectiveRow::DirectiveRow(const std::string& rowText) {
  std::string comment;
  ParseDirective(rowText, paramValues_, comment);
  const int directive = FindDirective(paramValues_[0]);
  paramValues_.push_back(std::move(comment));
  ChangeDirective(directive);
}

void DirectiveRow::ChangeDirective(int index) {
  if (index < 0 || index >= static_cast<int>(Directives.size())) return;
  directive_ = index;
  std::string comment = std::exchange(paramValues_.back(), "");
  paramValues_.resize(Info().ParamCount + 2);
  paramValues_.front() = Info().Keyword;
  paramValues_.back() = std::move(comment);
}

std::string_view DirectiveRow::PartName(int part) const {
  return part == Info().ParamCount ? "Comment" : Info().ParamName(part + 1);
}

// The notes of the three parameters come first, so only behind all three of them does the comment have a note of its
// own.
std::string_view DirectiveRow::PartNote(int part) const {
  return part == 3 && Info().ParamCount == 3 ? "Use for readability" : Info().ParamNote(part + 1);
}

const std::string& DirectiveRow::PartText(int part) const {
  static const std::string none;
  return HasPart(part) ? paramValues_[part + 1] : none;
}

void DirectiveRow::ChangePart(int part, const std::string& text) {
  if (HasPart(part)) paramValues_[part + 1] = text;
}

std::string DirectiveRow::BuildRowText() const {
  const std::string& comment = paramValues_.back();
  if (directive_ == 0) return IsBlank(comment) ? kEmptyRow : "//" + comment;
  std::string list;
  for (int part = 0; part < Info().ParamCount; ++part)
    if (!IsBlank(PartText(part))) list += (list.empty() ? "\"" : ",\"") + PartText(part) + "\"";
  return paramValues_.front() + "(" + list + ");" + (IsBlank(comment) ? "" : " //" + comment);
}

}  // namespace varnik
