#pragma once

#include <functional>
#include <string>
#include <vector>

// What an interrupted or failed run left behind.
namespace varnik {

struct Leftover {
  std::string item;     // a name inside the install, or a section of the settings store
  std::string meaning;  // one sentence each
  std::string remedy;
  std::function<void()> mend;  // does what `remedy` says; empty where a person has to decide
  bool isExact = false;        // it puts back what was there, and loses nothing of a person's
};

// Adds the files and folders below `root` that a run keeps under names of its own.
void AddLeftoverFiles(const std::string& root, std::vector<Leftover>& leftovers);

// The first of the names `path`.kept-1, `path`.kept-2 and so on that nothing has.
std::string FreeKeptName(const std::string& path);

}  // namespace varnik
