#pragma once

#include <string>
#include <string_view>

// The wildcards of the file calls (opening a search, deleting by pattern), which differ from those of the shell.
namespace win {

bool HasWildcards(std::string_view name);

// Without regard to case. `?` is one character, or none before a dot and at the end; a dot before a wildcard also
// matches the end, so that `*.*` is every name; a pattern that ends in a dot wants a name without one. Texts are bytes.
bool MatchesWildcards(std::string_view name, std::string_view pattern);

// The characters of text bytes, each as it compares without regard to case.
std::u32string FoldedCharacters(std::string_view bytes);

}  // namespace win
