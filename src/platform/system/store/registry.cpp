#include "platform/system/store/registry.h"

#include "platform/system/filesystem/operations.h"
#include "platform/system/process/launch.h"
#include "platform/system/store/autostart.h"
#include "platform/system/store/jsonstore.h"
#include "platform/system/text/text.h"

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <thread>

namespace win {
namespace {

constexpr char kRoot[] = "HKEY_LOCAL_MACHINE";
constexpr char kRunOncePath[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

constexpr char kRunOnceLock[] = "runonce";
constexpr std::chrono::milliseconds kPause(50);
constexpr int kMaxPauses = 200;

enum class KeyKind { kPlain, kRun, kRunOnce, kSystemInformation };

struct Key {
  const char* path;
  KeyKind kind;
};

// A handle is the row's number, from 1.
constexpr std::array kKeys = {
    Key{"Software\\Microsoft\\Windows\\CurrentVersion\\Run", KeyKind::kRun},
    Key{kRunOncePath, KeyKind::kRunOnce},
    Key{"SOFTWARE\\Microsoft\\Internet Explorer\\AboutURLs", KeyKind::kPlain},
    Key{"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", KeyKind::kSystemInformation},
};

constexpr const char* kSystemInformationTools[] = {
    "hardinfo2", "hardinfo", "kinfocenter", "lshw-gtk", "gnome-system-monitor", "mate-system-monitor", "xfce4-about",
};

JsonStore store("registry.json");

const Key* KeyOf(RegistryHandle handle) { return handle >= 1 && handle <= kKeys.size() ? &kKeys[handle - 1] : nullptr; }

// The first of the tools in the order of the list that stands in PATH; empty when there is none.
std::string SystemInformationTool() {
  for (const char* tool : kSystemInformationTools)
    if (const std::string path = FindExecutable(tool); path.starts_with('/')) return path;
  return "";
}

const Json* FindValue(const Key& key, const std::string& valueName) {
  return FindMember(FindMember(FindMember(&store.Tree(), kRoot), key.path), valueName);
}

bool StartsAtLogIn(const Key& key) { return key.kind == KeyKind::kRun || key.kind == KeyKind::kRunOnce; }

std::string TextOf(std::string_view data) { return std::string(data.substr(0, data.find('\0'))); }

// The entry of a value that is no text, or an empty one, goes.
bool MirrorEntry(const Key& key, const std::string& valueName, std::uint32_t type, std::string_view data) {
  const std::string command = type == kRegSz ? TextOf(data) : "";
  if (!command.empty()) return WriteAutostartEntry(valueName, command, key.kind == KeyKind::kRunOnce);
  RemoveAutostartEntry(valueName);
  return true;
}

bool HasRunOnceValues() {
  const Json* values = FindMember(FindMember(&store.Tree(), kRoot), kRunOncePath);
  return values && values->is_object() && !values->empty();
}

}  // namespace

long RegOpenKeyEx(std::uint32_t root, const std::string& keyPath, std::uint32_t, std::uint32_t,
                  RegistryHandle& handle) {
  handle = 0;
  if (root != kHkeyLocalMachine) return kErrorFileNotFound;
  for (std::size_t row = 0; row < kKeys.size(); ++row)
    if (EqualNoCase(kKeys[row].path, keyPath)) handle = row + 1;
  if (handle && KeyOf(handle)->kind == KeyKind::kSystemInformation && SystemInformationTool().empty()) handle = 0;
  return handle ? kErrorSuccess : kErrorFileNotFound;
}

namespace {

long SetValue(RegistryHandle handle, const std::string& valueName, std::uint32_t type, std::string_view data) {
  const Key& key = *KeyOf(handle);
  if (StartsAtLogIn(key) && !MirrorEntry(key, valueName, type, data)) return kErrorAccessDenied;
  const bool stored = store.Change([&](Json& tree) {
    Json& value = MakeMember(MakeObject(MakeObject(tree, kRoot), key.path), valueName);
    Json wanted = {{"Type", type}, {"Data", JsonFromBytes(data)}};
    if (value == wanted) return false;
    value = std::move(wanted);
    return true;
  });
  if (stored) return kErrorSuccess;
  if (StartsAtLogIn(key)) {
    std::uint32_t oldType = 0;
    std::string oldData;
    RegQueryValueEx(handle, valueName, oldType, oldData);
    MirrorEntry(key, valueName, oldType, oldData);
  }
  return kErrorAccessDenied;
}

long DeleteValue(const Key& key, const std::string& valueName) {
  // Also without a value: an entry whose record was lost would start the program at every log-in.
  if (StartsAtLogIn(key)) RemoveAutostartEntry(valueName);
  bool erased = false;
  const bool stored = store.Change(
      [&](Json& tree) { return erased = EraseMember(FindMember(FindMember(&tree, kRoot), key.path), valueName); });
  if (!stored) return kErrorAccessDenied;
  return erased ? kErrorSuccess : kErrorFileNotFound;
}

// `work` is done for a key that can be written. To delete a value that is not there is reported as done.
long Reported(Operation operation, RegistryHandle handle, const std::string& valueName, std::string_view data,
              const std::function<long(const Key& key)>& work) {
  long status = kErrorInvalidHandle;
  ReportOperation(operation, valueName, TextOf(data), [&] {
    const Key* const key = KeyOf(handle);
    if (key) status = key->kind == KeyKind::kSystemInformation ? kErrorAccessDenied : work(*key);
    return status == kErrorSuccess || (operation == Operation::kForget && status == kErrorFileNotFound);
  });
  return status;
}

}  // namespace

long RegSetValueEx(RegistryHandle handle, const std::string& valueName, std::uint32_t type, std::string_view data) {
  return Reported(Operation::kStore, handle, valueName, data,
                  [&](const Key&) { return SetValue(handle, valueName, type, data); });
}

long RegQueryValueEx(RegistryHandle handle, const std::string& valueName, std::uint32_t& type, std::string& data) {
  const Key* key = KeyOf(handle);
  if (!key) return kErrorInvalidHandle;
  if (key->kind == KeyKind::kSystemInformation) {
    if (!EqualNoCase(valueName, "PATH")) return kErrorFileNotFound;
    type = kRegSz;
    data = SystemInformationTool() + '\0';
    return kErrorSuccess;
  }
  const Json* value = FindValue(*key, valueName);
  const Json* storedType = FindMember(value, "Type");
  const Json* storedData = FindMember(value, "Data");
  if (!storedType || !storedType->is_number_unsigned() || !storedData) return kErrorFileNotFound;
  const std::optional<std::string> bytes = BytesFromJson(*storedData);
  if (!bytes) return kErrorFileNotFound;
  type = storedType->get<std::uint32_t>();
  data = *bytes;
  return kErrorSuccess;
}

long RegDeleteValue(RegistryHandle handle, const std::string& valueName) {
  return Reported(Operation::kForget, handle, valueName, "",
                  [&](const Key& key) { return DeleteValue(key, valueName); });
}

long RegCloseKey(RegistryHandle handle) { return KeyOf(handle) ? kErrorSuccess : kErrorInvalidHandle; }

std::unique_ptr<ExclusiveLock> HandleAutostartEntry() {
  auto once = std::make_unique<ExclusiveLock>(kRunOnceLock);
  const StartingEntry entry = TakeStartingEntry();
  if (entry.once) {
    static_cast<void>(once->TryAcquire());
    RegistryHandle key = 0;
    RegOpenKeyEx(kHkeyLocalMachine, kRunOncePath, 0, 0, key);
    RegDeleteValue(key, entry.name);
    return once;
  }
  for (int i = 0; !entry.name.empty() && (HasRunOnceValues() || !once->TryAcquire()) && i < kMaxPauses; ++i)
    std::this_thread::sleep_for(kPause);
  return nullptr;
}

}  // namespace win
