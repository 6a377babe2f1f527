#pragma once

#include "definition/directive.h"
#include "diagnosis/finding.h"

#include <string_view>

// How a line of the current format is written, whatever it is to do.
namespace varnik {

// A line whose name is empty.
void CheckPlainText(const Place& place, std::string_view line);

// Reports a file whose first line shows that no reader understands it, and returns false then.
bool CheckEncoding(const Place& place, std::string_view firstLine);

// One argument of `version`.
void CheckGameVersion(const Place& place, const std::string& version);

// Reports a path that Windows cannot have, and returns false then. Wildcards are looked at elsewhere.
bool CheckWindowsName(const Place& place, std::string_view path);

// Reports a name that no pass knows, with the one that was likely meant.
void CheckUnknownName(const Place& place, const std::string& name);

// The form of a line that is to be read as `args`. A line with fewer than `needed` arguments is skipped; readers
// look at no more than `useful`. False when a comment begins inside an argument, of which the rest is lost.
bool CheckForm(const Place& place, std::string_view line, const Args& args, std::size_t needed, std::size_t useful);

}  // namespace varnik
