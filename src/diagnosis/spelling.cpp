#include "diagnosis/spelling.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace varnik {

namespace {

constexpr std::size_t kMaxNameLength = 40;

// Letters to change, add, drop or swap with their neighbour.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> costs(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  std::iota(costs[0].begin(), costs[0].end(), 0);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    costs[i][0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = costs[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      costs[i][j] = std::min({change, costs[i - 1][j] + 1, costs[i][j - 1] + 1});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) costs[i][j] = std::min(costs[i][j], costs[i - 2][j - 2] + 1);
    }
  }
  return costs[a.size()][b.size()];
}

}  // namespace

std::string_view LikelyName(std::string_view name, const std::vector<std::string_view>& known) {
  if (name.empty() || name.size() > kMaxNameLength) return {};
  std::string_view likely;
  // A short word is close to many others.
  std::size_t least = name.size() > 4 ? 3 : 2;
  for (const std::string_view candidate : known) {
    const std::size_t distance = EditDistance(name, candidate);
    if (distance >= least) continue;
    least = distance;
    likely = candidate;
  }
  return likely;
}

}  // namespace varnik
