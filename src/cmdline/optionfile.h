#pragma once

#include <string>
#include <vector>

// The file of command-line options, one a line, as its editor shows it.
namespace varnik {

struct OptionRow {
  std::string
      text;  // the line without outer blanks and without its star; with a colon, what follows the first one is a value
  bool ticked = false;  // the line begins with a star
};

// Empty lines are skipped. A file that cannot be read has no rows.
std::vector<OptionRow> ReadOptionRows(const std::string& file);

// Replaces the file, with no rows by an empty one. False when it could not be written; it is then as it was.
bool WriteOptionRows(const std::string& file, const std::vector<OptionRow>& rows);

// The selected install's own file, there or not; empty with no install selected.
std::string CustomOptionFile();

}  // namespace varnik
