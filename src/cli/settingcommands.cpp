#include "cli/commands.h"
#include "cli/output.h"
#include "platform/system/store/registry.h"
#include "platform/system/store/settings.h"
#include "platform/system/text/text.h"
#include "support/registry.h"
#include "support/settings.h"

namespace varnik::cli {

namespace {

struct Setting {
  std::string section;
  std::string key;
  std::optional<std::string> value;     // empty: absent
  std::optional<std::string> fallback;  // empty: its readers each have their own
};

// Key and value.
constexpr std::pair<const char*, const char*> kRegistryEntries[] = {
    {kRunKey, kAutoloadValue},
    {kRunOnceKey, kCrashRecoveryValue},
    {kAboutUrlsKey, kAboutUrlsValue},
};

using Stored = std::vector<win::StoredSetting>;

const SettingKey* FindKey(const std::string& key) {
  for (const SettingKey& known : kSettingKeys)
    if (win::EqualNoCase(known.name, key)) return &known;
  return nullptr;
}

bool IsSettings(const win::StoredSetting& stored) { return win::EqualNoCase(stored.section, kSettingsSection); }

std::vector<Setting> SettingsRows(const Stored& stored) {
  std::vector<Setting> rows;
  for (const SettingKey& known : kSettingKeys) {
    Setting row{kSettingsSection, known.name, std::nullopt, known.fallback};
    for (const win::StoredSetting& setting : stored)
      if (IsSettings(setting) && win::EqualNoCase(setting.key, known.name)) row.value = setting.value;
    rows.push_back(row);
  }
  return rows;
}

std::vector<Setting> AllRows() {
  const Stored stored = win::AllSettings(kApplication);
  std::vector<Setting> rows = SettingsRows(stored);
  for (const win::StoredSetting& setting : stored)
    if (!IsSettings(setting) || !FindKey(setting.key))
      rows.push_back({setting.section, setting.key, setting.value, std::nullopt});
  for (const auto& [key, name] : kRegistryEntries)
    if (const auto value = RegFindValue(win::kHkeyLocalMachine, key, name))
      rows.push_back({"HKEY_LOCAL_MACHINE\\" + std::string(key), name, value, std::nullopt});
  return rows;
}

Json TextOrNull(const std::optional<std::string>& text) { return text ? Text(*text) : Json(); }

Json AsJson(const Setting& row, bool withSection) {
  Json object = Json::object();
  if (withSection) object["Section"] = Text(row.section);
  object["Key"] = Text(row.key);
  object["Value"] = TextOrNull(row.value);
  object["Default"] = TextOrNull(row.fallback);
  return object;
}

Row AsRow(const Setting& row) {
  return {row.section, row.key, FirstLine(row.value.value_or("-")), row.fallback.value_or("")};
}

}  // namespace

int ListSettings(const Arguments& arguments) {
  const std::vector<Setting> rows = arguments.all ? AllRows() : SettingsRows(win::AllSettings(kApplication));
  const auto asJson = [&](const Setting& row) { return AsJson(row, arguments.all); };
  return PrintList(arguments.json, rows, asJson, {"Section", "Key", "Stored", "Default"}, AsRow);
}

int SetSetting(const Arguments& arguments) {
  const SettingKey* const key = FindKey(arguments.key);
  if (!key) return Fail(arguments.key, "there is no such setting; `varnik-cli settings` lists them");
  if (!Store(kSettingsSection, key->name, arguments.value)) return Fail(key->name, "could not be stored");
  return ListSettings(arguments);
}

}  // namespace varnik::cli
