#pragma once

#include <string_view>

// The wildcards of the file calls (opening a search, deleting by pattern) and those of the shell, which differ. All
// texts are bytes (UTF-8 if valid, else Windows-1252) and compare without regard to case, beyond ASCII too.
namespace win {

bool HasWildcards(std::string_view name);

// The file calls. `?` is one character, or none before a dot and at the end; a dot before a wildcard also matches the
// end, so that `*.*` is every name; a pattern that ends in a dot wants a name without one.
bool MatchesWildcards(std::string_view name, std::string_view pattern);

// PathMatchSpecW, the shell: `*` and `?`; `;` separates alternatives; exactly `*.*` matches every name. An empty
// pattern matches nothing.
bool PathMatchSpec(std::string_view name, std::string_view pattern);

}  // namespace win
