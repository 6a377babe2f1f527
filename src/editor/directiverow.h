#pragma once

#include "definition/directivecatalogue.h"

#include <string>
#include <string_view>
#include <vector>

namespace varnik {

// Stands in the list of rows for an empty line of the file.
constexpr char kEmptyRow[] = "-";

// One row of a definition taken apart into a directive of the catalogue, its parameters and its comment. What the
// catalogue does not know is lost: a foreign directive becomes a comment or an empty row, and surplus parameters go.
//
// A part is what can be edited at a time: the parameters, from 0, then the comment.
class DirectiveRow {
 public:
  explicit DirectiveRow(const std::string& rowText);

  int Directive() const { return directive_; }  // row of Directives

  // Parameters keep their places, the comment stays the last part. An index outside the catalogue changes nothing.
  void ChangeDirective(int index);

  // With the comment: at least 1.
  int PartCount() const { return static_cast<int>(paramValues_.size()) - 1; }

  // Both empty for a part that is not there.
  std::string_view PartName(int part) const;
  std::string_view PartNote(int part) const;
  const std::string& PartText(int part) const;

  // A part that is not there is left alone.
  void ChangePart(int part, const std::string& text);

  // The row in the spelling of the catalogue. Empty parameters are left out, so that a later one moves forward;
  // quotes in a parameter are not escaped.
  std::string BuildRowText() const;

 private:
  bool HasPart(int part) const { return part >= 0 && part < PartCount(); }
  const DirectiveInfo& Info() const { return Directives[directive_]; }

  int directive_ = 0;
  std::vector<std::string> paramValues_;  // the keyword, the parameters by their numbers, and last the comment
};

}  // namespace varnik
