#include "platform/system/store/settings.h"

#include "platform/system/filesystem/filesystem.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/store/jsonstore.h"

#include <cerrno>

namespace win {
namespace {

JsonStore store("settings.json");

const Json& ObjectOrNone(const Json* node) {
  static const Json none = Json::object();
  return node && node->is_object() ? *node : none;
}

// False when the tree holds all that already.
bool Apply(const SectionChange& change, const std::string& application, const std::string& section, Json& tree) {
  const Json before = tree;
  if (change.others == OtherKeys::kRemove) EraseMember(FindMember(&tree, application), section);
  for (const SettingRow& row : change.rows) {
    if (row.value)
      MakeMember(MakeObject(MakeObject(tree, application), section), row.key) = JsonFromBytes(*row.value);
    else
      EraseMember(FindMember(FindMember(&tree, application), section), row.key);
  }
  return tree != before;
}

}  // namespace

struct SettingsSnapshot::Tree {
  Json sections;
};

SettingsSnapshot::SettingsSnapshot(const std::string& application) : SettingsSnapshot(application, store.Tree()) {
  isReadable_ = store.IsKnown();
}

SettingsSnapshot::SettingsSnapshot(const std::string& application, const Json& tree) {
  if (const Json* sections = FindMember(&tree, application)) tree_ = std::make_shared<Tree>(Tree{*sections});
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

namespace {

bool Reported(bool stored, const std::string& section, const std::vector<SettingRow>& rows) {
  const int error = errno;
  for (const SettingRow& row : rows)
    ReportOperation(row.value ? Operation::kStore : Operation::kForget, section + "\\" + row.key,
                    row.value.value_or(""), [&] { return stored || FailWith(error); });
  return stored;
}

}  // namespace

bool SaveSection(const std::string& application, const std::string& section, const std::vector<SettingRow>& rows,
                 OtherKeys others, SettingsSnapshot* after) {
  const SectionChange change{rows, others};
  const bool stored =
      Reported(store.Change([&](Json& tree) { return Apply(change, application, section, tree); }), section, rows);
  if (!after) return stored;
  *after = stored ? SettingsSnapshot(application, store.LastTree()) : SettingsSnapshot(application);
  return stored;
}

bool UpdateSection(const std::string& application, const std::string& section, const SectionUpdate& update) {
  std::optional<SectionChange> change;
  const bool stored = store.Change([&](Json& tree) {
    change = update(SettingsSnapshot(application, tree));
    return change && Apply(*change, application, section, tree);
  });
  return Reported(stored, section, change ? change->rows : std::vector<SettingRow>());
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
  for (const auto& [section, keys] : ObjectOrNone(sections).items())
    for (const auto& [key, value] : ObjectOrNone(&keys).items())
      if (const std::optional<std::string> text = BytesFromJson(value)) all.push_back({section, key, *text});
  return all;
}

}  // namespace win
