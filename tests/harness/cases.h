#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <string>
#include <vector>

namespace test {

using Case = nlohmann::json;

// The cases of a file beside the tests: one JSON object a line.
inline std::vector<Case> Cases(const std::string& file) {
  std::ifstream lines(SOURCE_DIR "/tests/" + file);
  std::vector<Case> cases;
  for (std::string line; std::getline(lines, line);)
    cases.push_back(Case::parse(line));
  EXPECT_FALSE(cases.empty()) << file;
  return cases;
}

}  // namespace test
