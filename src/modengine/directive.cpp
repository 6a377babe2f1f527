#include "modengine/directive.h"

#include "platform/system/text.h"

#include <algorithm>
#include <optional>

namespace varnik {

namespace {

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

void TrimInPlace(std::string& text) {
  text.resize(text.find_last_not_of(' ') + 1);
  text.erase(0, text.find_first_not_of(' '));
}

// Fills the elements that are there before it adds any: the next line of a file is often of the same form.
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
    for (std::size_t i = 0; i < count_; ++i)
      TrimInPlace(args_[i]);
  }

 private:
  Args& args_;
  std::size_t count_ = 0;
};

std::size_t PlainLength(std::string_view list, bool inQuotes) {
  std::size_t length = 0;
  while (length < list.size() && list[length] != '"' && (inQuotes || list[length] != ','))
    ++length;
  return length;
}

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
    const std::size_t plain = PlainLength(list, inQuotes);
    args.Append(list.substr(0, plain));
    list.remove_prefix(plain);
    if (list.empty() || list[0] != '"') continue;
    inQuotes = !inQuotes;
    list.remove_prefix(1);
  }
  return inArgument;
}

// `line` without its comment and the closing pair; `comment` is set when there is one.
std::string_view CutLine(std::string_view line, std::optional<std::string_view>& comment) {
  const std::size_t mark = line.find("//");
  if (mark != std::string_view::npos) {
    comment = line.substr(mark + 2);
    line = Trimmed(line.substr(0, mark));
  }
  return line.ends_with(");") ? Trimmed(line.substr(0, line.size() - 2)) : line;
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

void ParseDirective(std::string_view line, Args& args, std::string& comment) {
  std::optional<std::string_view> found;
  Split(line, CutLine(line, found), args);
  if (found) comment = *found;
}

void ParseDirective(std::string_view line, Args& args) {
  std::optional<std::string_view> unused;
  Split(line, CutLine(line, unused), args);
  args[0] = win::LowerCase(args[0]);
}

bool ReadMarker(std::string_view firstLine, double& version) {
  constexpr std::string_view kMarker = "bz2hald";
  const std::string line = win::Trim(firstLine);
  if (line.size() <= kMarker.size() || !win::StartsWithNoCase(line, kMarker)) return false;
  version = win::LeadingNumber(std::string_view(line).substr(kMarker.size()));
  return true;
}

}  // namespace varnik
