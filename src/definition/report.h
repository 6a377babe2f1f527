#pragma once

#include <string>
#include <vector>

// What did not work in an activation, a run, a deactivation, a recovery or a fix. The next line runs all the same; this
// is how it is said.
namespace varnik {

struct ReportLine {
  std::string file;  // full path of the definition, or of the included file, that holds the line; empty without one
  int line = 0;      // of that file, from 1; 0: behind the last line, or not of a line at all
  std::string what;  // such as `rename a.txt to b.txt`, with names inside the install
  std::string why;   // one clause
};

using Report = std::vector<ReportLine>;

// `mod.bzm:12: rename a.txt to b.txt: there is no such file or folder`
std::string TextOf(const ReportLine& problem);

}  // namespace varnik
