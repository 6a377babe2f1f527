#pragma once

#include "platform/system/text/text.h"

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
  std::string bytes;
  for (const char32_t c : win::CharactersFromBytes(text.get<std::string>()))
    bytes += static_cast<char>(c);
  return bytes;
}

}  // namespace test
