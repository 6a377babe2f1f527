#pragma once

#include "platform/system/text/text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

// Tables of cases in files beside the tests, with one JSON value a line.
namespace test {

// `file` is a path below the folder of the tests.
inline std::vector<nlohmann::json> Rows(const std::string& file) {
  std::ifstream stream(SOURCE_DIR "/tests/" + file);
  std::vector<nlohmann::json> rows;
  for (std::string line; std::getline(stream, line);)
    rows.push_back(nlohmann::json::parse(line));
  EXPECT_FALSE(rows.empty()) << file;
  return rows;
}

// A text in which each byte is written as the character of the same number. Nothing for null.
inline std::optional<std::string> Bytes(const nlohmann::json& text) {
  if (text.is_null()) return std::nullopt;
  std::string bytes;
  for (const char32_t c : win::CharactersFromBytes(text.get<std::string>()))
    bytes += static_cast<char>(c);
  return bytes;
}

}  // namespace test
