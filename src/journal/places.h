#pragma once

#include "journal/journal.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

// Where the files of a journal are now.
namespace varnik {

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

// A path that a journal names, as it is now. The places of a journal stand in the order of its entries; behind them are
// those where a restoration has set a file down for a moment.
struct FilePlace {
  std::string path;  // native
  bool isThere = false;
  win::FileStatus status;
  std::size_t holds = kNowhere;  // the entry whose file or folder is here now
};

class Places {
 public:
  explicit Places(const Journal& journal);

  // Looks at the disk, and finds what the journal's entries had.
  void Look();

  std::vector<FilePlace>& All() { return places_; }

  // The place of what the entry had before; kNowhere when it had nothing, when it has gone, and for a file of which
  // there is a copy.
  std::size_t Of(std::size_t entry) const { return now_[entry]; }

  // Takes note of a move.
  void Move(std::size_t from, std::size_t to);

  // Whether the file there holds nothing but what the mod wrote, also if only a part of it has reached the disk.
  bool IsOurs(const FilePlace& place) const;
  bool IsOurs(std::string_view content) const;

  // Where a file waits while another one leaves its place.
  std::size_t WaitingPlace(std::size_t place);

 private:
  bool IsMissing(std::size_t entry) const;
  bool IsFree(const FilePlace& place) const { return place.isThere && place.holds == kNowhere; }
  void LookAt(FilePlace& place);
  void Match(std::size_t entry, std::size_t place);
  void MatchIdentities();
  void MatchTimes();
  void MatchSuccessors();
  void LookForWaiting();

  const Journal& journal_;
  std::vector<FilePlace> places_;
  std::vector<std::size_t> now_;
  std::set<win::ContentId> written_;
  std::size_t longest_ = 0;  // bytes of the longest content that is ours
};

}  // namespace varnik
