#include "support/ini_sm.h"

#include "platform/system/services.h"
#include "platform/system/text.h"

namespace varnik {
namespace {

constexpr std::size_t kLongestValue = 254;

// In this order, so that a `//` inside quotes cuts too, and a blank ahead of the closing quote stays.
std::string CleanValue(std::string text) {
  if (const std::size_t comment = text.find("//"); comment != std::string::npos)
    text = win::Trim(std::string_view(text).substr(0, comment));
  if (text.starts_with('"')) text.erase(0, 1);
  text = win::Trim(text);
  if (text.ends_with('"')) text.pop_back();
  return text;
}

}  // namespace

std::string ReadIniValue(const std::string& section, const std::string& key, const std::string& file,
                         const std::string& fallback) {
  return ReadIniValue(section, key, win::ProfileFile(file), fallback);
}

std::string ReadIniValue(const std::string& section, const std::string& key, const win::ProfileFile& file,
                         const std::string& fallback) {
  const std::string_view raw = file.Find(section, key).value_or("").substr(0, kLongestValue);
  win::DoEvents();
  const std::string value = CleanValue(std::string(raw));
  return win::Trim(value).empty() ? fallback : value;
}

bool WriteIniValue(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& file) {
  return win::WritePrivateProfileString(section, key, value, file);
}

}  // namespace varnik
