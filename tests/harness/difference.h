#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>

// What changed between two snapshots of a folder.
namespace test {

using Contents = std::map<std::string, std::string>;

// The names that came, went or have another content. A folder's name ends in a slash.
inline std::set<std::string> NamesThatDiffer(const Contents& before, const Contents& after) {
  std::set<std::string> names;
  for (const auto& [one, other] : {std::pair(&before, &after), std::pair(&after, &before)})
    for (const auto& [name, content] : *one)
      if (!other->contains(name) || other->at(name) != content) names.insert(name);
  return names;
}

// True when every name is one of `told` or lies below one, and every one told is among the names or above one. Those
// told have backslashes and no slash at their end.
inline bool AreTold(const std::set<std::string>& names, const std::set<std::string>& told) {
  std::set<std::string> borneOut;
  for (std::string name : names) {
    std::replace(name.begin(), name.end(), '/', '\\');
    bool isTold = false;
    for (const std::string& one : told) {
      if (!(name + '\\').starts_with(one + '\\')) continue;
      borneOut.insert(one);
      isTold = true;
    }
    if (!isTold) return false;
  }
  return borneOut == told;
}

}  // namespace test
