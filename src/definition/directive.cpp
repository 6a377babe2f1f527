#include "definition/directive.h"

#include "platform/system/text/text.h"

#include <algorithm>

namespace varnik {

namespace {

// Reuses the strings of the line before, whose memory often fits the next line too.
class Filler {
 public:
  explicit Filler(Args& args) : args_(args) {}
  ~Filler() { args_.resize(count_); }
  Filler(const Filler&) = delete;
  Filler& operator=(const Filler&) = delete;

  void Begin() {
    if (count_ == args_.size()) args_.emplace_back();
    args_[count_++].clear();
  }
  void Append(std::string_view text) { args_[count_ - 1].append(text); }
  void Trim() {
    for (std::size_t i = 0; i < count_; ++i) {
      args_[i].resize(args_[i].find_last_not_of(' ') + 1);
      args_[i].erase(0, args_[i].find_first_not_of(' '));
    }
  }

 private:
  Args& args_;
  std::size_t count_ = 0;
};

// True when the last argument has not been ended by a comma.
bool SplitArguments(std::string_view list, Filler& args) {
  bool inArgument = false;
  bool inQuotes = false;
  while (!list.empty()) {
    if (list[0] == ',' && !inQuotes) {
      inArgument = false;
      list.remove_prefix(1);
      continue;
    }
    if (!inArgument) args.Begin();
    inArgument = true;
    const std::size_t plain = std::min(list.find_first_of(inQuotes ? "\"" : "\","), list.size());
    args.Append(list.substr(0, plain));
    list.remove_prefix(plain);
    if (list.empty() || list[0] != '"') continue;
    inQuotes = !inQuotes;
    list.remove_prefix(1);
  }
  return inArgument;
}

void Split(std::string_view line, std::string_view text, Args& result) {
  Filler args(result);
  args.Begin();
  const std::size_t open = text.find('(');
  if (open == std::string_view::npos) return;
  args.Append(text.substr(0, open));
  const bool inArgument = SplitArguments(text.substr(open + 1), args);
  // The list is as long as the line was before anything was cut off, and what was cut counts as text: it begins an
  // argument.
  const bool wasCut = text.size() < line.size();
  if (wasCut && !inArgument) args.Begin();
  args.Trim();
}

}  // namespace

LineParts CutLine(std::string_view line) {
  LineParts parts;
  const std::size_t mark = line.find("//");
  if (mark != std::string_view::npos) {
    parts.comment = line.substr(mark + 2);
    line = win::Trimmed(line.substr(0, mark));
  }
  parts.isClosed = line.ends_with(");");
  parts.text = parts.isClosed ? win::Trimmed(line.substr(0, line.size() - 2)) : line;
  return parts;
}

void ParseDirective(std::string_view line, Args& args, std::string& comment) {
  const LineParts parts = CutLine(line);
  Split(line, parts.text, args);
  if (parts.comment) comment = *parts.comment;
}

void ParseDirective(std::string_view line, Args& args) {
  Split(line, CutLine(line).text, args);
  args[0] = win::LowerCase(args[0]);
}

bool ReadMarker(std::string_view firstLine, double& version) {
  constexpr std::string_view kMarker = "bz2hald";
  const std::string line = win::Trim(firstLine);
  if (line.size() <= kMarker.size() || !win::StartsWithNoCase(line, kMarker)) return false;
  version = win::LeadingNumber(std::string_view(line).substr(kMarker.size()));
  return true;
}

RunFormat RunFormatOf(double version) {
  const int format = win::RoundToInt16(version).value_or(0);
  if (format >= 1 && format <= kLastLegacyFormat) return RunFormat::kLegacy;
  return format == kCurrentFormat ? RunFormat::kCurrent : RunFormat::kNone;
}

}  // namespace varnik
