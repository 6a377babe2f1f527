#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Profile (INI) files, one key at a time, as the Windows calls of these names treat them: sections and keys match
// without regard to case, the first section and the first key of a name count, and an edit touches the one line that it
// concerns.
namespace win {

// `size` is the caller's buffer in bytes: at most size - 1 bytes come back. `fallback` when the file, section or key is
// missing.
std::string GetPrivateProfileString(std::string_view section, std::string_view key, std::string_view fallback,
                                    std::size_t size, const std::string& file);

// A file read once, for callers that ask for several of its keys. Each answer is the one that GetPrivateProfileString
// gives for the content as it was then. A file that cannot be read has no keys.
class ProfileFile {
 public:
  explicit ProfileFile(const std::string& file);
  ~ProfileFile();
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  // Valid as long as this object. Nothing when the section or the key is missing.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
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
