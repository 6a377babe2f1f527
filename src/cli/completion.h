#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace varnik::cli {

// What shells call behind the program's name to complete a command line; not one of kCommands.
constexpr char kComplete[] = "complete";

// Prints what may stand for the last of `words`, which is empty where a new one begins; those before it are the words
// that were typed behind the program's name. One candidate a line, with a tab and what it is behind it where that
// helps, then a line `:file`, `:folder` or `:none` for the names of files that the shell is to add. Each candidate
// begins as the last word does, whatever the case. Reads nothing that takes long: of maps the cache alone.
int PrintCompletions(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace varnik::cli
