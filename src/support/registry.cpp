#include "support/registry.h"

#include "platform/system/paths/program.h"
#include "platform/system/store/registry.h"
#include "platform/system/text/text.h"
#include "support/runstate.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace varnik {
namespace {

constexpr std::uint32_t kAccessMask = 0x3F;
constexpr long kErrorOtherType = -1;
constexpr long kErrorInvalidParameter = 87;
constexpr long kErrorMoreData = 234;
constexpr char kWindowProgram[] = "varnik";
constexpr char kCommandLineProgram[] = "varnik-cli";

// A key of the registry, open while this lives. Whether the open worked shows in the calls on it.
class OpenKey {
 public:
  OpenKey(std::uint32_t root, const std::string& keyPath) { win::RegOpenKeyEx(root, keyPath, 0, kAccessMask, handle_); }
  ~OpenKey() { win::RegCloseKey(handle_); }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  win::RegistryHandle Handle() const { return handle_; }

 private:
  win::RegistryHandle handle_ = 0;
};

long StoreNumber(win::RegistryHandle key, const std::string& valueName, const std::string& value) {
  const double number = std::nearbyint(win::LeadingNumber(value));
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(number >= Limits::min() && number <= Limits::max())) return kErrorInvalidParameter;
  const auto whole = static_cast<std::int32_t>(number);
  char data[sizeof whole];
  std::memcpy(data, &whole, sizeof whole);
  return win::RegSetValueEx(key, valueName, win::kRegDword, {data, sizeof data});
}

// The command that a log-in runs. The command-line tool sits beside the window program and enters that one.
std::string StartCommand(const char* switchText) {
  const std::string running = win::ExecutableName();
  const std::string program = running == kCommandLineProgram ? kWindowProgram : running;
  return "\"" + AppPath + program + ".exe\" " + switchText;
}

}  // namespace

void RegWriteValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName,
                   const std::string& value, std::uint32_t valueType) {
  RegStoreTyped(OpenKey(root, keyPath).Handle(), valueName, valueType, value);
}

std::optional<std::string> RegFindValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName) {
  std::string value;
  const long status = RegFetchTyped(OpenKey(root, keyPath).Handle(), valueName, value);
  return status == win::kErrorSuccess ? std::optional(value) : std::nullopt;
}

std::string RegReadValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName) {
  return win::UpperCase(RegFindValue(root, keyPath, valueName).value_or(""));
}

void RegRemoveValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName) {
  win::RegDeleteValue(OpenKey(root, keyPath).Handle(), valueName);
}

long RegFetchTyped(std::uintptr_t keyHandle, const std::string& valueName, std::string& value) {
  value.clear();
  std::uint32_t type = 0;
  std::string data;
  const long status = win::RegQueryValueEx(keyHandle, valueName, type, data);
  if (status != win::kErrorSuccess) return status;
  if (type == win::kRegSz) {
    value = data.substr(0, data.empty() ? 0 : data.size() - 1);
    return win::kErrorSuccess;
  }
  if (type != win::kRegDword) return kErrorOtherType;
  std::int32_t number = 0;
  if (data.size() > sizeof number) return kErrorMoreData;
  std::memcpy(&number, data.data(), data.size());
  value = std::to_string(number);
  return win::kErrorSuccess;
}

long RegStoreTyped(std::uintptr_t keyHandle, const std::string& valueName, std::uint32_t valueType,
                   const std::string& value) {
  if (valueType == win::kRegSz) return win::RegSetValueEx(keyHandle, valueName, valueType, value + '\0');
  if (valueType == win::kRegDword) return StoreNumber(keyHandle, valueName, value);
  return win::kErrorSuccess;
}

std::string RunOnceCommand() { return StartCommand("/crash"); }
std::string AutoloadCommand() { return StartCommand("/boot"); }

}  // namespace varnik
