#include "support/ini_sm.h"

#include "platform/system/process/services.h"
#include "platform/system/text/text.h"

namespace varnik {
namespace {

constexpr std::size_t kMaxValueLength = 254;

// In this order, so that a `//` inside quotes cuts too, and a blank ahead of the closing quote stays.
std::string_view CleanValue(std::string_view text) {
  if (const std::size_t comment = text.find("//"); comment != std::string_view::npos)
    text = win::Trimmed(text.substr(0, comment));
  if (text.starts_with('"')) text.remove_prefix(1);
  text = win::Trimmed(text);
  if (text.ends_with('"')) text.remove_suffix(1);
  return text;
}

}  // namespace

std::string ReadIniValue(const std::string& section, const std::string& key, const std::string& file,
                         const std::string& fallback) {
  return ReadIniValue(section, key, win::ProfileFile(file), fallback);
}

std::string ReadIniValue(const std::string& section, const std::string& key, const win::ProfileFile& file,
                         const std::string& fallback) {
  const std::string_view value = CleanValue(file.Find(section, key).value_or("").substr(0, kMaxValueLength));
  win::DoEvents();
  return win::Trimmed(value).empty() ? fallback : std::string(value);
}

bool WriteIniValue(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& file) {
  return win::WritePrivateProfileString(section, key, value, file);
}

}  // namespace varnik
