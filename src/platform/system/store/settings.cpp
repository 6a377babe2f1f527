#include "platform/system/store/settings.h"

#include "platform/system/filesystem/operations.h"
#include "platform/system/store/jsonstore.h"

namespace win {
namespace {

JsonStore store("settings.json");

}  // namespace

std::string GetSetting(const std::string& application, const std::string& section, const std::string& key,
                       const std::string& fallback) {
  const Json* value = FindMember(FindMember(FindMember(&store.Tree(), application), section), key);
  return value ? BytesFromJson(*value).value_or(fallback) : fallback;
}

bool SaveSetting(const std::string& application, const std::string& section, const std::string& key,
                 const std::string& value) {
  const auto change = [&](Json& tree) {
    Json& stored = MakeMember(MakeMember(MakeMember(tree, application), section), key);
    Json wanted = JsonFromBytes(value);
    if (stored == wanted) return false;
    stored = std::move(wanted);
    return true;
  };
  return ReportOperation(Operation::kStore, section + "\\" + key, value, [&] { return store.Change(change); });
}

bool SaveSection(const std::string& application, const std::string& section, const std::vector<SettingRow>& rows,
                 OtherKeys others) {
  return store.Change([&](Json& tree) {
    const Json before = tree;
    if (others == OtherKeys::kRemove) EraseMember(FindMember(&tree, application), section);
    for (const SettingRow& row : rows)
      MakeMember(MakeMember(MakeMember(tree, application), section), row.key) = JsonFromBytes(row.value);
    return tree != before;
  });
}

bool DeleteSetting(const std::string& application, const std::string& section, const std::string& key) {
  const auto change = [&](Json& tree) {
    if (section.empty()) return EraseMember(&tree, application);
    Json* sections = FindMember(&tree, application);
    return key.empty() ? EraseMember(sections, section) : EraseMember(FindMember(sections, section), key);
  };
  return ReportOperation(Operation::kForget, section + (key.empty() ? "" : "\\" + key), "",
                         [&] { return store.Change(change); });
}

std::vector<StoredSetting> AllSettings(const std::string& application) {
  std::vector<StoredSetting> all;
  const Json* sections = FindMember(&store.Tree(), application);
  if (!sections) return all;
  for (const auto& [section, keys] : sections->items())
    for (const auto& [key, value] : keys.items())
      if (const std::optional<std::string> text = BytesFromJson(value)) all.push_back({section, key, *text});
  return all;
}

}  // namespace win
