#pragma once

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The per-user settings store: application, section, key; every value a text of bytes. It lives in `settings.json` of
// the program's configuration folder. A value that a call stored has reached the disk when the call returns, and a kill
// or a full disk leaves the old or the new store, never less. What stands there and has no meaning here stays in the
// file and counts as absent. A file that is no JSON object at all is kept aside under another name, which is said on
// standard error, and never overwritten. Only its owner may read the file, which may be a link to another one. Names of
// sections and keys match without regard to case. Another process may write between two calls: every call sees what is
// on disk.
namespace win {

std::string GetSetting(const std::string& application, const std::string& section, const std::string& key,
                       const std::string& fallback = "");

// False when the value could not be stored; the store is then as it was.
bool SaveSetting(const std::string& application, const std::string& section, const std::string& key,
                 const std::string& value);

struct SettingRow {
  std::string key;
  std::optional<std::string> value;  // without one the key goes
};
enum class OtherKeys { kRemove, kKeep };

// What a section is to hold, from what is stored for the application now. Nothing when it is to stay as it is.
class SettingsSnapshot;
struct SectionChange {
  std::vector<SettingRow> rows;
  OtherKeys others = OtherKeys::kKeep;
};
using SectionUpdate = std::function<std::optional<SectionChange>(const SettingsSnapshot& stored)>;

// Everything stored for one application at one moment: one reading of the store for all that is asked together. Not to
// be kept for longer than that.
class SettingsSnapshot {
 public:
  SettingsSnapshot() = default;  // of nothing
  explicit SettingsSnapshot(const std::string& application);

  std::string Get(const std::string& section, const std::string& key, const std::string& fallback = "") const;

  // False when the store is there and could not be read. Everything then reads as absent, and nothing may be concluded
  // from that.
  bool IsReadable() const { return isReadable_; }

 private:
  friend bool SaveSection(const std::string&, const std::string&, const std::vector<SettingRow>&, OtherKeys,
                          SettingsSnapshot*);
  friend bool UpdateSection(const std::string&, const std::string&, const SectionUpdate&);
  SettingsSnapshot(const std::string& application, const nlohmann::json& tree);
  struct Tree;
  std::shared_ptr<const Tree> tree_;
  bool isReadable_ = true;
};

// Stores all rows in one write: whatever happens, the section then holds all of them or is as it was. With kRemove it
// holds nothing else, and without rows it goes too. `after` receives what the application then has, stored or not.
bool SaveSection(const std::string& application, const std::string& section, const std::vector<SettingRow>& rows,
                 OtherKeys others, SettingsSnapshot* after = nullptr);

// The same for rows that depend on what is stored: no other process stores anything between the reading and the write.
// `update` is called once at most, must not call the store, and is not called when the store cannot be read or locked;
// the result is false then.
bool UpdateSection(const std::string& application, const std::string& section, const SectionUpdate& update);

// Without `key` the section goes, without `section` the application. Deleting what is not there does nothing.
bool DeleteSetting(const std::string& application, const std::string& section = "", const std::string& key = "");

struct StoredSetting {
  std::string section;
  std::string key;
  std::string value;
};

// Everything stored for the application, sections and keys in name order.
std::vector<StoredSetting> AllSettings(const std::string& application);

}  // namespace win
