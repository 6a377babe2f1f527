#pragma once

#include <string>
#include <string_view>

// The order of sorted list boxes: a word sort without regard to case, not ASCII. Marks and signs come first, then
// digits, then letters; `-` and `'` count only between otherwise equal texts; accents come second.
namespace win {

// Below 0: `a` stands first; above 0: `b` does; 0: equal. Texts are bytes (UTF-8 if valid, else Windows-1252).
int CompareForList(std::string_view a, std::string_view b);

// A text whose plain byte order is the order above; for sorting many rows.
std::string ListSortKey(std::string_view text);

}  // namespace win
