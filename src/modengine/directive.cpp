#include "modengine/directive.h"

#include "platform/system/text.h"

namespace varnik {

namespace {

// True when the last argument has not been ended by a comma.
bool SplitArguments(std::string_view list, Args& args) {
  bool inArgument = false;
  bool inQuotes = false;
  for (const char c : list) {
    if (c == ',' && !inQuotes) {
      inArgument = false;
      continue;
    }
    if (!inArgument) args.emplace_back();
    inArgument = true;
    if (c == '"')
      inQuotes = !inQuotes;
    else
      args.back() += c;
  }
  return inArgument;
}

}  // namespace

void ParseDirective(std::string_view line, Args& args, std::string& comment) {
  args.assign(1, std::string());
  std::string text(line);
  if (const std::size_t mark = text.find("//"); mark != std::string::npos) {
    comment = text.substr(mark + 2);
    text = win::Trim(std::string_view(text).substr(0, mark));
  }
  if (text.ends_with(");")) text = win::Trim(std::string_view(text).substr(0, text.size() - 2));
  const std::size_t open = text.find('(');
  if (open == std::string::npos) return;
  args[0] = text.substr(0, open);
  const bool inArgument = SplitArguments(std::string_view(text).substr(open + 1), args);
  // The list is as long as the line was before anything was cut off, and what was cut counts as text: it begins an
  // argument.
  const bool wasCut = text.size() < line.size();
  if (wasCut && !inArgument) args.emplace_back();
  for (std::string& arg : args)
    arg = win::Trim(arg);
}

Args ParseDirective(std::string_view line) {
  Args args;
  std::string comment;
  ParseDirective(line, args, comment);
  args[0] = win::LowerCase(args[0]);
  return args;
}

bool ReadMarker(std::string_view firstLine, double& version) {
  constexpr std::string_view kMarker = "bz2hald";
  const std::string line = win::Trim(firstLine);
  if (line.size() <= kMarker.size() || !win::StartsWithNoCase(line, kMarker)) return false;
  version = win::LeadingNumber(std::string_view(line).substr(kMarker.size()));
  return true;
}

}  // namespace varnik
