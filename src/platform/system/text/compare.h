#pragma once

#include <string>
#include <string_view>

// How texts compare in lists, and how they are searched.
//
// The order of sorted list boxes: a word sort without regard to case, not ASCII. Marks and signs come first, then
// digits, then letters; `-` and `'` count only between otherwise equal texts; accents come second.
namespace win {

// Below 0: `a` stands first; above 0: `b` does; 0: equal. Texts are bytes (UTF-8 if valid, else Windows-1252).
int CompareForList(std::string_view a, std::string_view b);

// A text whose plain byte order is the order above; for sorting many rows.
std::string ListSortKey(std::string_view text);

// The text without its case and accents, in UTF-8: one text is found in another when its key is part of the other's.
std::string SearchKey(std::string_view text);

}  // namespace win
