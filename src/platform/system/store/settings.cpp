#include "platform/system/store/settings.h"

#include "platform/system/filesystem/filesystem.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/store/jsonstore.h"

#include <cerrno>

namespace win {
namespace {

JsonStore store("settings.json");

}  // namespace

struct SettingsSnapshot::Tree {
  Json sections;
};

SettingsSnapshot::SettingsSnapshot(const std::string& application) {
  if (const Json* sections = FindMember(&store.Tree(), application)) tree_ = std::make_shared<Tree>(Tree{*sections});
  isReadable_ = store.IsKnown();
}

std::string SettingsSnapshot::Get(const std::string& section, const std::string& key,
                                  const std::string& fallback) const {
  const Json* value = FindMember(FindMember(tree_ ? &tree_->sections : nullptr, section), key);
  return value ? BytesFromJson(*value).value_or(fallback) : fallback;
}

std::string GetSetting(const std::string& application, const std::string& section, const std::string& key,
                       const std::string& fallback) {
  return SettingsSnapshot(application).Get(section, key, fallback);
}

bool SaveSetting(const std::string& application, const std::string& section, const std::string& key,
                 const std::string& value) {
  return SaveSection(application, section, {{key, value}}, OtherKeys::kKeep);
}

bool SaveSection(const std::string& application, const std::string& section, const std::vector<SettingRow>& rows,
                 OtherKeys others, SettingsSnapshot* after) {
  const bool stored = store.Change([&](Json& tree) {
    const Json before = tree;
    if (others == OtherKeys::kRemove) EraseMember(FindMember(&tree, application), section);
    for (const SettingRow& row : rows) {
      if (row.value)
        MakeMember(MakeMember(MakeMember(tree, application), section), row.key) = JsonFromBytes(*row.value);
      else
        EraseMember(FindMember(FindMember(&tree, application), section), row.key);
    }
    return tree != before;
  });
  const int error = errno;
  for (const SettingRow& row : rows)
    ReportOperation(row.value ? Operation::kStore : Operation::kForget, section + "\\" + row.key,
                    row.value.value_or(""), [&] { return stored || FailWith(error); });
  if (after && stored) {
    const Json* sections = FindMember(&store.LastTree(), application);
    after->isReadable_ = true;
    after->tree_ = sections ? std::make_shared<SettingsSnapshot::Tree>(SettingsSnapshot::Tree{*sections}) : nullptr;
  } else if (after) {
    *after = SettingsSnapshot(application);
  }
  return stored;
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
