#pragma once

#include <nlohmann/json.hpp>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace test {

// The rows of tests/platform/system/vectors/<name>: one JSON object a line.
inline std::vector<nlohmann::json> VectorRows(const char* name) {
  std::ifstream file(std::string(SOURCE_DIR "/tests/platform/system/vectors/") + name);
  std::vector<nlohmann::json> rows;
  for (std::string line; std::getline(file, line);)
    rows.push_back(nlohmann::json::parse(line));
  return rows;
}

// A row writes a byte as the character of the same number. Nothing for null.
inline std::optional<std::string> RowBytes(const nlohmann::json& text) {
  if (text.is_null()) return std::nullopt;
  const std::string utf8 = text.get<std::string>();
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80)
      bytes += utf8[i];
    else
      bytes += static_cast<char>((lead & 3) << 6 | (static_cast<unsigned char>(utf8[++i]) & 0x3F));
  }
  return bytes;
}

}  // namespace test
