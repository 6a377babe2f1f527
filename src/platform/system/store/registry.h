#pragma once

#include "platform/system/process/instance.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// The machine-wide registry, kept per user in `registry.json` of the program's configuration folder. The keys below
// exist from the start; no other key does, and none is ever created. Text values under `Run` and `RunOnce` also stand
// as entries in the user's XDG autostart folder, so that the next log-in starts this program with the switch that the
// value names; the entry of a RunOnce value removes itself, and the value, when it runs (HandleAutostartEntry).
//
//   HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run
//   HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\RunOnce
//   HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Internet Explorer\AboutURLs
//
// Keys and value names match without regard to case; the first spelling of a value name stays. One more key can be read
// and not written: HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools\MSINFO exists while a system information tool of
// the desktop stands in PATH, and its value PATH is the tool's native path.
namespace win {

using RegistryHandle = std::uintptr_t;  // 0 is no key; every call on it fails

constexpr std::uint32_t kHkeyLocalMachine = 0x80000002;
constexpr std::uint32_t kRegSz = 1;
constexpr std::uint32_t kRegBinary = 3;
constexpr std::uint32_t kRegDword = 4;

constexpr long kErrorSuccess = 0;
constexpr long kErrorFileNotFound = 2;
constexpr long kErrorAccessDenied = 5;
constexpr long kErrorInvalidHandle = 6;

// On failure `handle` is 0 and the status is not kErrorSuccess.
long RegOpenKeyEx(std::uint32_t root, const std::string& keyPath, std::uint32_t options, std::uint32_t access,
                  RegistryHandle& handle);

// `data` is the raw data, for text with its closing NUL.
long RegSetValueEx(RegistryHandle key, const std::string& valueName, std::uint32_t type, std::string_view data);

// Gives type and raw data of the value.
long RegQueryValueEx(RegistryHandle key, const std::string& valueName, std::uint32_t& type, std::string& data);

long RegDeleteValue(RegistryHandle key, const std::string& valueName);
long RegCloseKey(RegistryHandle key);

// Called once at program start, with a result to keep until the program ends. Entries start the program with the
// value's name in an environment variable, <NAME>_RUN or <NAME>_RUNONCE (the program's name in upper case), which goes.
// For RunOnce the value and its entry go, too. The desktop starts all entries at the same time, and Windows has RunOnce
// done before it comes to Run: a Run entry waits for that here, ten seconds at most.
[[nodiscard]] std::unique_ptr<ExclusiveLock> HandleAutostartEntry();

}  // namespace win
