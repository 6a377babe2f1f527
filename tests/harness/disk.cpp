#include "tests/harness/disk.h"

#include <algorithm>
#include <random>

namespace test {
namespace {

using Row = std::vector<bool>;
using Kind = DiskCall::Kind;

bool IsOn(const DiskCall& call, const std::string& disk) { return call.path.starts_with(disk); }

bool Covers(const DiskCall& sync, const DiskCall& call, bool isOrdered, const std::string& other) {
  if (!sync.IsSync() || IsOn(sync, other) != IsOn(call, other)) return false;
  if (sync.kind == Kind::kSyncAll || sync.path == call.path) return true;
  if (call.kind == Kind::kAppend) return false;
  return isOrdered || sync.path == win::FolderAbove(call.path) || sync.path == win::FolderAbove(call.target);
}

// The first `count` of the pending calls last, contents of files or not.
Row Beginning(const std::vector<DiskCall>& log, Row row, const std::vector<std::size_t>& pending, std::size_t count,
              bool withContent) {
  for (std::size_t i = 0; i < count; ++i)
    row[pending[i]] = withContent || log[pending[i]].kind != Kind::kAppend;
  return row;
}

}  // namespace

std::vector<Row> CutsOf(const std::vector<DiskCall>& log, bool isOrdered, const std::string& other, int limit) {
  Row synced(log.size(), true);
  std::vector<std::size_t> pending[2];  // by disk
  for (std::size_t i = 0; i < log.size(); ++i) {
    synced[i] = log[i].IsSync() || std::any_of(log.begin() + static_cast<long>(i), log.end(), [&](const auto& later) {
                  return Covers(later, log[i], isOrdered, other);
                });
    if (!synced[i]) pending[IsOn(log[i], other)].push_back(i);
  }
  std::vector<Row> rows;
  if (isOrdered) {
    for (std::size_t here = 0; here <= pending[0].size(); ++here)
      for (std::size_t there = 0; there <= pending[1].size(); ++there)
        for (const bool withContent : {false, true})
          rows.push_back(
              Beginning(log, Beginning(log, synced, pending[0], here, withContent), pending[1], there, withContent));
  } else {
    std::vector<std::size_t> all = pending[0];
    all.insert(all.end(), pending[1].begin(), pending[1].end());
    std::mt19937_64 random(all.size());
    const bool isSmall = all.size() < 20 && (1 << all.size()) <= limit;
    for (int n = 0; n < (isSmall ? 1 << all.size() : limit); ++n) {
      const std::uint64_t kept = isSmall ? static_cast<std::uint64_t>(n) : random();
      rows.push_back(synced);
      for (std::size_t i = 0; i < all.size(); ++i)
        rows.back()[all[i]] = (kept >> (i % 64)) & 1;
    }
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void DoWhatLasts(const std::vector<DiskCall>& log, const std::vector<bool>& lasts, Disk& disk) {
  for (std::size_t i = 0; i < log.size(); ++i) {
    DiskCall call = log[i];
    bool isLast = true;
    for (std::size_t later = i + 1; later < log.size(); ++later)
      isLast = isLast && !(lasts[later] && log[later].kind == Kind::kAppend && log[later].path == call.path);
    if (call.kind == Kind::kAppend && !lasts[i] && !isLast) call.content.assign(call.content.size(), '\0');
    if (lasts[i] || (call.kind == Kind::kAppend && !isLast)) disk.Do(call);
  }
}

}  // namespace test
