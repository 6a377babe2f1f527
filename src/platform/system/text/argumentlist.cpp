#include "platform/system/text/argumentlist.h"

#include <algorithm>

namespace win {
namespace {

constexpr std::string_view kBlanks = " \t";

// Takes the run of backslashes that `rest` begins with, and a double quote that an odd run makes part of the argument.
void TakeBackslashes(std::string_view& rest, std::string& argument) {
  const std::size_t count = std::min(rest.find_first_not_of('\\'), rest.size());
  rest.remove_prefix(count);
  if (!rest.starts_with('"')) {
    argument.append(count, '\\');
    return;
  }
  argument.append(count / 2, '\\');
  if (count % 2 == 0) return;
  argument += '"';
  rest.remove_prefix(1);
}

// Takes a double quote: one that begins or ends quotes, or a doubled one within them.
void TakeQuote(std::string_view& rest, std::string& argument, bool& quoted) {
  const bool doubled = quoted && rest.starts_with("\"\"");
  if (doubled) argument += '"';
  if (!doubled) quoted = !quoted;
  rest.remove_prefix(doubled ? 2 : 1);
}

std::string TakeArgument(std::string_view& rest) {
  std::string argument;
  bool quoted = false;
  while (!rest.empty() && (quoted || kBlanks.find(rest.front()) == kBlanks.npos)) {
    if (rest.front() == '\\') {
      TakeBackslashes(rest, argument);
    } else if (rest.front() == '"') {
      TakeQuote(rest, argument, quoted);
    } else {
      argument += rest.front();
      rest.remove_prefix(1);
    }
  }
  return argument;
}

}  // namespace

ProgramAndTail SplitProgram(std::string_view commandLine) {
  commandLine.remove_prefix(std::min(commandLine.find_first_not_of(kBlanks), commandLine.size()));
  const bool quoted = commandLine.starts_with('"');
  if (quoted) commandLine.remove_prefix(1);
  const std::size_t end = std::min(commandLine.find_first_of(quoted ? "\"" : kBlanks), commandLine.size());
  const std::size_t tail = std::min(end + (quoted ? 1 : 0), commandLine.size());
  return {std::string(commandLine.substr(0, end)), std::string(commandLine.substr(tail))};
}

std::vector<std::string> SplitArguments(std::string_view tail) {
  std::vector<std::string> arguments;
  for (;;) {
    tail.remove_prefix(std::min(tail.find_first_not_of(kBlanks), tail.size()));
    if (tail.empty()) return arguments;
    arguments.push_back(TakeArgument(tail));
  }
}

}  // namespace win
