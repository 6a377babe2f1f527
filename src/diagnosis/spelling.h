#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnik {

// The one of `known` that a misspelt name most likely means: a letter or two wrong, missing, too many or in the wrong
// order. Empty when none comes near. All in lower case.
std::string_view LikelyName(std::string_view name, const std::vector<std::string_view>& known);

}  // namespace varnik
