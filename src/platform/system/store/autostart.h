#pragma once

#include <string>

// Entries of the XDG autostart folder, by which the desktop starts this program at the next log-in. Private to this
// layer.
namespace win {

// Writes the entry of that name; one that is there is replaced. `command` is a program in double quotes, or without
// blanks, and its arguments: only the arguments count, since what is started is Program().autostart or the running
// program. The entry hands on its name and whether it is for once. False when it could not be written.
bool WriteAutostartEntry(const std::string& name, const std::string& command, bool once);

void RemoveAutostartEntry(const std::string& name);

// The entry that started this process; no name without one.
struct StartingEntry {
  std::string name;
  bool once = false;
};

// Answers once: programs started from here must not take themselves for the entry's.
StartingEntry TakeStartingEntry();

}  // namespace win
