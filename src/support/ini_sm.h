#pragma once

#include "platform/system/files/profile.h"

#include <string>

// Single keys of the game's INI-style files. A read cleans the value, a write stores it unchanged.
namespace varnik {

// Without a trailing `//` comment, without one pair of outer double quotes, trimmed; `fallback` when nothing is left.
// Values longer than 254 bytes are cut before they are cleaned.
std::string ReadIniValue(const std::string& section, const std::string& key, const std::string& file,
                         const std::string& fallback);

// The same from a file that was read already, for callers that want several of its keys.
std::string ReadIniValue(const std::string& section, const std::string& key, const win::ProfileFile& file,
                         const std::string& fallback);

// `file` is the last parameter here. Replaces the whole line; does nothing about a read-only file.
bool WriteIniValue(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& file);

}  // namespace varnik
