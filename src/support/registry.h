#pragma once

#include <cstdint>
#include <optional>
#include <string>

// The program's entries in the machine-wide registry. Nothing is reported: a write to a key that does not exist is
// a no-op.
namespace varnik {

constexpr char kRunKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr char kRunOnceKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr char kAboutUrlsKey[] = "SOFTWARE\\Microsoft\\Internet Explorer\\AboutURLs";
constexpr char kAutoloadValue[] = "Varnik Autoload";
constexpr char kCrashRecoveryValue[] = "Varnik Crash Recovery";
constexpr char kAboutUrlsValue[] = "Varnik";

void RegWriteValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName,
                   const std::string& value, std::uint32_t valueType);

// Nothing when there is no such value, or it is neither text nor a 32-bit number.
std::optional<std::string> RegFindValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName);

// The same in upper case, or empty.
std::string RegReadValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName);

void RegRemoveValue(std::uint32_t root, const std::string& keyPath, const std::string& valueName);

// 0 on success; the failing status, or -1 for a value of another type. `value` is empty then.
long RegFetchTyped(std::uintptr_t keyHandle, const std::string& valueName, std::string& value);

// The result of the call that stores it, 0 for a type that is neither text nor a 32-bit number.
long RegStoreTyped(std::uintptr_t keyHandle, const std::string& valueName, std::uint32_t valueType,
                   const std::string& value);

// The commands that the system runs at the next log-in: the program in double quotes, a blank and the switch.
std::string RunOnceCommand();   // /crash
std::string AutoloadCommand();  // /boot

}  // namespace varnik
