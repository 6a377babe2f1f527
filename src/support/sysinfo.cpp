#include "support/sysinfo.h"

#include "platform/system/process/process.h"
#include "platform/system/process/services.h"
#include "platform/system/store/registry.h"
#include "support/modfileexists.h"

namespace varnik {

namespace {

constexpr std::uint32_t kQueryAccess = 0x2003F;
constexpr std::size_t kMaxBytes = 1024;

// The data of a number, its last byte first, as two hexadecimal digits each, read as one number.
std::string DecimalFromBytes(const std::string& bytes) {
  std::uint64_t number = 0;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    const auto code = static_cast<unsigned char>(*byte);
    number = number * (code < 16 ? 16 : 256) + code;  // a small code gives a single digit
  }
  return std::to_string(number);
}

std::string SystemInfoTool() {
  std::string value;
  if (ReadSharedToolsValue(win::kHkeyLocalMachine, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", value))
    return value;
  if (!ReadSharedToolsValue(win::kHkeyLocalMachine, "SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO", value))
    return "";
  const std::string tool = value + "\\MSINFO32.EXE";
  return FileExists(tool) ? tool : "";
}

}  // namespace

bool ReadSharedToolsValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName,
                          std::string& value) {
  value.clear();
  win::RegistryHandle key = 0;
  if (win::RegOpenKeyEx(root, keyPath, 0, kQueryAccess, key) != win::kErrorSuccess) return false;
  std::uint32_t type = 0;
  std::string data;
  const bool read = win::RegQueryValueEx(key, valueName, type, data) == win::kErrorSuccess && data.size() <= kMaxBytes;
  win::RegCloseKey(key);
  if (!read) return false;
  data = data.substr(0, data.find('\0'));
  if (type == win::kRegSz) value = data;
  if (type == win::kRegDword) value = DecimalFromBytes(data);
  return true;
}

void LaunchSystemInfo() {
  const std::string tool = SystemInfoTool();
  if (tool.empty() || !win::ShellExecute(tool)) win::MsgBox("System Information Is Unavailable At This Time");
}

}  // namespace varnik
