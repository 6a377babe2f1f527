#pragma once

#include <string>

// Entries of the XDG autostart folder, by which the desktop starts this program at the next log-in. Private to this
// layer.
namespace win {

// Writes the entry of that name; one that is there is replaced. `command` is a program in double quotes, or without
// blanks, and its arguments: only the arguments count, since what is started is Program().autostart or the running
// program. With `once` the entry hands its name on, so that ConsumeRunOnce can take it away. False when it could not be
// written.
bool WriteAutostartEntry(const std::string& name, const std::string& command, bool once);

void RemoveAutostartEntry(const std::string& name);

// The name of the once-only entry that started this process, empty otherwise. Answers once: programs started from here
// must not take themselves for the entry's.
std::string TakeStartingEntry();

}  // namespace win
