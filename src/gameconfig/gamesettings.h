#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

// The settings in the game's own files that the pages edit, for the selected install. A failed write is silent; it
// leaves the file as it was.
namespace varnik {

// `render.cfg` in the install root: whether ground under trees is darkened, as the state of a check box. 0 is no, 1 and
// any number that is no such state yes, and so is a missing key.
int ReadDarkPlants();

// Removes a read-only attribute; creates the file when it is missing.
void ApplyDarkPlants(bool dark);

// A row of a list of views as the pages offer it; the file holds `value`.
struct CraftView {
  const char* text;
  std::int16_t value;
};
extern const std::array<CraftView, 4> kCraftViews;

// The file holds a number that the list does not have. Applying it leaves the key as it is.
constexpr int kNoCraftView = -1;

// Section UserPrefs of `gameprefs.ini`, which the game has from version 1.3 on.
struct UserPrefs {
  bool showFps = false;
  bool vsyncOn = false;
  // Rows of kCraftViews.
  int hovercraftView = 0;
  int personView = 0;
  int trackedView = 0;
  int walkerView = 0;
  std::string ircAlternateNick;
  std::string ircUserId;
  std::string ircFullName;
};

// From the first gameprefs.ini below the folders of SearchDirs; nothing when there is none, or it cannot be read.
[[nodiscard]] std::optional<UserPrefs> ReadUserPrefs();

// To the first one found when the whole install is looked through ahead of the folders of SearchDirs, so perhaps not to
// the file that was read. Removes its read-only attribute.
void ApplyUserPrefs(const UserPrefs& prefs);

}  // namespace varnik
