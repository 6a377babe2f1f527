#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Profile (INI) files, one key at a time, as the Windows calls of these names treat them: sections and keys match
// without regard to case, the first section and the first key of a name count, and an edit touches the one line that it
// concerns.
namespace win {

// A file read once, for callers that ask for several of its keys. A file that cannot be read has no keys.
class ProfileFile {
 public:
  explicit ProfileFile(const std::string& file);
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  // False when the file is there and could not be read. Nothing may be written that follows from its keys then.
  bool IsReadable() const { return isReadable_; }

  // Valid as long as this object. Nothing when the section or the key is missing.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

  // The same as it stands behind the equals sign, blanks and quotes included.
  std::optional<std::string_view> FindAsWritten(std::string_view section, std::string_view key) const;

 private:
  std::string characters_;  // in the Windows code page, without an end-of-text mark
  bool isReadable_;
};

// No value deletes the key; no key deletes the section; no section does nothing and fails. The file is edited in place
// and replaced as a whole: on failure (a missing folder, a read-only file, a full disk) it is as it was. Creates a file
// that is missing in a folder that exists.
bool WritePrivateProfileString(std::optional<std::string_view> section, std::optional<std::string_view> key,
                               std::optional<std::string_view> value, const std::string& file);

struct ProfileValue {
  std::string key;
  std::string value;
};

// Sets several keys of one section in one write of the file: all of them or none.
bool WriteProfileValues(const std::string& section, const std::vector<ProfileValue>& values, const std::string& file);

}  // namespace win
