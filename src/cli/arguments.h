#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace varnik::cli {

// The arguments of all commands; each command reads its own.
struct Arguments {
  std::optional<std::string> root;     // empty: the install that the store names
  std::optional<std::string> appPath;  // empty: where the program finds its folder
  bool json = false;

  std::string folder;
  std::string description;
  std::size_t index = 0;
  std::string mod = "-";
  std::string file;
  std::optional<std::string> options;  // empty: the ticked ones
  std::vector<std::size_t> tick;
  std::vector<std::size_t> untick;
  std::string map;
  bool edit = false;
  std::string page;
  bool rescan = false;
  bool convert = false;
  bool details = false;
  bool all = false;
  bool configuration = false;
  bool after = false;
  bool fix = false;
  bool force = false;
  std::string key;
  std::string value;
};

}  // namespace varnik::cli
