#pragma once

#include "platform/system/text/text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace test {

using Case = nlohmann::json;

// The cases of a file, by its path below the folder of the tests: one JSON value a line.
inline std::vector<Case> Cases(const std::string& file) {
  std::ifstream lines(SOURCE_DIR "/tests/" + file);
  std::vector<Case> cases;
  for (std::string line; std::getline(lines, line);)
    cases.push_back(Case::parse(line));
  EXPECT_FALSE(cases.empty()) << file;
  return cases;
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
