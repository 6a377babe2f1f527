#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The game's command-line options as `varnik.cmd` lists them, one a line.
namespace varnik {

// A line of the file, as its editor shows it.
struct OptionRow {
  // Without outer blanks and without its star. Behind the first colon, if there is one, stands a value.
  std::string text;
  bool ticked = false;  // the line begins with a star
};

// Empty lines are skipped. A file that is not there has no rows; nothing when it is there and cannot be read to its
// end, since a part of it must neither be used nor be written back.
[[nodiscard]] std::optional<std::vector<OptionRow>> ReadOptionRows(const std::string& file);

// Replaces the file, with no rows by an empty one. False when it could not be written; it is then as it was.
bool WriteOptionRows(const std::string& file, const std::vector<OptionRow>& rows);

// The selected install's own file, whether it exists or not; empty with no install selected.
std::string CustomOptionFile();

struct OptionEntry {
  std::string text;  // what goes on the command line
  bool hasSubParam = false;
  std::string subParam = "None";  // given to the game behind the text; may be empty
  bool ticked = false;
};

// The file that counts: the selected install's own, else the program's; empty when neither exists.
std::string OptionListFile();

// The rows of a file, in its order, as ReadOptionRows reads them.
[[nodiscard]] std::optional<std::vector<OptionEntry>> ReadOptionList(const std::string& file);

// Message shown when it cannot be read.
std::string OptionListProblem(const std::string& file);

// The ticked rows as one line, in row order, one blank between them.
std::string JoinTickedOptions(const std::vector<OptionEntry>& options);

struct CommandLineParts {
  std::string options;  // the text of the options, as edited by hand perhaps
  std::string mapName;  // may be empty
  bool edit = false;    // the /edit box
};

// The line holds a switch that starts the game's editor.
bool HasEditSwitch(const std::string& line);

// The line for the game. Without `keepEditSwitches`, and without a map, no map goes on it and the edit switches are cut
// out.
std::string BuildCommandLine(const CommandLineParts& parts, bool keepEditSwitches);

}  // namespace varnik
