#include "platform/system/files/profile.h"

#include "platform/system/files/files.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/filesystem.h"
#include "platform/system/filesystem/operations.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <vector>

namespace win {
namespace {

constexpr char kEndOfText = '\x1a';
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kNewLine = "\r\n";

// A file as it is searched: one character for each code unit, of which each takes `width` bytes behind the `mark`.
struct ProfileText {
  std::string characters;
  std::size_t mark = 0;
  std::size_t width = 1;
};

enum class LineKind { kBlank, kComment, kSection, kKey };

// Offsets count characters. The line's text is [begin, end), `next` stands behind its line end. `value` is unset for a
// section, and for a key without an equals sign.
struct Line {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t next = 0;
  LineKind kind = LineKind::kBlank;
  std::string_view name;
  std::optional<std::string_view> value;
};

// Replaces the characters [begin, end).
struct Edit {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string text;
};

// Names that a caller gives go through Trimmed instead: they lose spaces only, so one with a tab matches nothing.
std::string_view TrimLine(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\v\f";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

char ByteFromUnit(char16_t unit) {
  const CodePage& page = Windows1252();
  const auto* const found = std::find(page.begin(), page.end(), unit);
  return found != page.end() ? static_cast<char>(found - page.begin()) : '?';
}

ProfileText Decode(std::string bytes) {
  if (!bytes.starts_with(kUtf16Mark)) return {std::move(bytes)};
  ProfileText text{"", kUtf16Mark.size(), 2};
  for (std::size_t i = text.mark; i + 1 < bytes.size(); i += 2)
    text.characters += ByteFromUnit(
        static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8));
  return text;
}

std::string Encode(std::string_view characters, std::size_t width) {
  if (width == 1) return std::string(characters);
  std::string bytes;
  for (const char c : characters) {
    const char16_t unit = Windows1252()[static_cast<unsigned char>(c)];
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

// Where the text ends: ahead of a closing end-of-text mark.
std::size_t TextEnd(std::string_view characters) { return characters.size() - characters.ends_with(kEndOfText); }

bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }

bool ReadSectionName(std::string_view text, Line& line) {
  if (!text.starts_with('[')) return false;
  const std::size_t close = text.find(']');
  // Without a bracket the whole line is the name, unless it can be a key.
  if (close == std::string_view::npos && text.find('=') != std::string_view::npos) return false;
  const std::string_view raw = text.substr(1, close == std::string_view::npos ? close : close - 1);
  const std::string_view name = TrimLine(raw);
  // A name of nothing but blanks is not the empty name.
  line.name = name.empty() ? raw : name;
  return true;
}

void Classify(std::string_view text, Line& line) {
  line.value.reset();
  if (text.empty()) {
    line.kind = LineKind::kBlank;
  } else if (text[0] == ';') {
    line.kind = LineKind::kComment;
  } else if (ReadSectionName(text, line)) {
    line.kind = LineKind::kSection;
  } else {
    const std::size_t equals = text.find('=');
    line.kind = LineKind::kKey;
    line.name = TrimLine(text.substr(0, equals));
    if (equals != std::string_view::npos) line.value = TrimLine(text.substr(equals + 1));
  }
}

// Moves on to the line that begins at `line.next`. False behind the last one. `characters` ends where the text does.
bool NextLine(std::string_view characters, Line& line) {
  if (line.next >= characters.size()) return false;
  line.begin = line.end = line.next;
  while (line.end < characters.size() && !IsLineEnd(characters[line.end]))
    ++line.end;
  const bool both = characters.substr(line.end).starts_with(kNewLine);
  line.next = std::min(line.end + (both ? 2 : 1), characters.size());
  Classify(TrimLine(characters.substr(line.begin, line.end - line.begin)), line);
  return true;
}

// Most names differ in length already, and those that do not are mostly spelled alike.
bool IsName(const Line& line, std::string_view name) {
  return line.name.size() == name.size() && (line.name == name || EqualNoCase(line.name, name));
}

bool OpensSection(const Line& line, std::string_view section) {
  return line.kind == LineKind::kSection && IsName(line, section);
}

// A value ends at a NUL and loses one matching pair of outer quotes.
std::string_view Unquoted(std::string_view value) {
  value = value.substr(0, value.find('\0'));
  const bool quoted = value.size() >= 2 && value.front() == value.back() && (value[0] == '"' || value[0] == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// The lines of one section that an edit needs.
struct SectionLines {
  Line header;
  std::vector<Line> keys;
};

std::optional<SectionLines> FindSection(std::string_view characters, std::string_view section) {
  Line line;
  // A section behind a byte-order mark is hidden from readers, but it is the one to edit.
  if (characters.starts_with(kUtf8Mark)) line.next = kUtf8Mark.size();
  while (NextLine(characters, line) && !OpensSection(line, section)) {
  }
  if (!OpensSection(line, section)) return std::nullopt;
  SectionLines found{line, {}};
  while (NextLine(characters, line) && line.kind != LineKind::kSection)
    if (line.kind == LineKind::kKey) found.keys.push_back(line);
  return found;
}

// What a new line that follows `line` has to begin with.
std::string_view MissingLineEnd(const Line& line) { return line.next == line.end ? kNewLine : ""; }

std::string KeyLine(std::string_view key, std::string_view value) { return std::string(key).append("=").append(value); }

std::vector<Edit> DeleteSection(const std::optional<SectionLines>& section) {
  std::vector<Edit> edits;
  if (!section) return edits;
  edits.push_back({section->header.begin, section->header.next, ""});
  for (const Line& key : section->keys)
    edits.push_back({key.begin, key.next, ""});
  return edits;
}

const Line* FindKey(const SectionLines& section, std::string_view key) {
  for (const Line& line : section.keys)
    if (IsName(line, key)) return &line;
  return nullptr;
}

Edit AddSection(std::string_view characters, std::string_view section, const std::string& keyLine) {
  const std::string_view text = characters.substr(0, TextEnd(characters));
  const bool openEnd = !text.empty() && !IsLineEnd(text.back());
  std::string added(openEnd ? kNewLine : "");
  added.append("[").append(section).append("]\r\n").append(keyLine).append(kNewLine);
  return {text.size(), characters.size(), added};
}

Edit SetKey(std::string_view characters, const std::optional<SectionLines>& section, std::string_view sectionName,
            std::string_view key, std::string_view value) {
  if (!section) return AddSection(characters, sectionName, KeyLine(key, value));
  if (const Line* line = FindKey(*section, key))
    return {line->begin, line->end, KeyLine(line->name, value).append(MissingLineEnd(*line))};
  const Line& last = section->keys.empty() ? section->header : section->keys.back();
  return {last.next, last.next, std::string(MissingLineEnd(last)).append(KeyLine(key, value)).append(kNewLine)};
}

std::string Apply(const std::string& bytes, const ProfileText& text, const std::vector<Edit>& edits) {
  std::string result;
  std::size_t copied = 0;
  for (const Edit& edit : edits) {
    result.append(bytes, copied, text.mark + edit.begin * text.width - copied);
    result += Encode(edit.text, text.width);
    copied = text.mark + edit.end * text.width;
  }
  return result.append(bytes, copied);
}

// The line of the key in its section that has a value.
std::optional<Line> FindValue(std::string_view characters, std::string_view section, std::string_view key) {
  const std::string_view wantedSection = Trimmed(section);
  const std::string_view wantedKey = Trimmed(key);
  Line line;
  while (NextLine(characters, line) && !OpensSection(line, wantedSection)) {
  }
  while (NextLine(characters, line) && line.kind != LineKind::kSection)
    if (line.value && IsName(line, wantedKey)) return line;
  return std::nullopt;
}

}  // namespace

ProfileFile::ProfileFile(const std::string& file) {
  const std::optional<std::string> content = ReadFileOnce(file);
  isReadable_ = content || !GetAttributes(file);
  characters_ = Decode(content.value_or("")).characters;
  characters_.resize(TextEnd(characters_));
}

std::optional<std::string_view> ProfileFile::Find(std::string_view section, std::string_view key) const {
  const std::optional<Line> line = FindValue(characters_, section, key);
  return line ? std::optional(Unquoted(*line->value)) : std::nullopt;
}

std::optional<std::string_view> ProfileFile::FindAsWritten(std::string_view section, std::string_view key) const {
  const std::optional<Line> line = FindValue(characters_, section, key);
  if (!line) return std::nullopt;
  const std::string_view text = std::string_view(characters_).substr(line->begin, line->end - line->begin);
  return text.substr(text.find('=') + 1);
}

namespace {

bool ChangeProfile(const std::string& file, const std::function<std::string(const std::string& bytes)>& change) {
  const std::optional<std::string> content = ReadWholeFile(file);
  // A file that is there and cannot be read must not be taken for an empty one.
  if (const auto attributes = GetAttributes(file); !content && attributes)
    return FailWith(*attributes & kAttributeDirectory ? EISDIR : EACCES);
  return WriteWholeFile(file, change(content.value_or("")));
}

std::string Changed(const std::string& bytes, std::string_view section, std::optional<std::string_view> key,
                    std::optional<std::string_view> value) {
  const ProfileText text = Decode(bytes);
  const std::string_view sectionName = Trimmed(section);
  const auto found = FindSection(std::string_view(text.characters).substr(0, TextEnd(text.characters)), sectionName);
  std::vector<Edit> edits;
  if (!key)
    edits = DeleteSection(found);
  else if (value)
    edits = {SetKey(text.characters, found, sectionName, Trimmed(*key), *value)};
  else if (const Line* line = found ? FindKey(*found, Trimmed(*key)) : nullptr)
    edits = {{line->begin, line->next, ""}};
  return Apply(bytes, text, edits);
}

}  // namespace

bool WritePrivateProfileString(std::optional<std::string_view> section, std::optional<std::string_view> key,
                               std::optional<std::string_view> value, const std::string& file) {
  const std::string assignment = std::string(key.value_or("")) + "=" + std::string(value.value_or(""));
  return ReportOperation(Operation::kSet, file, assignment, [&] {
    return section && ChangeProfile(file, [&](const auto& bytes) { return Changed(bytes, *section, key, value); });
  });
}

bool WriteProfileValues(const std::string& section, const std::vector<ProfileValue>& values, const std::string& file) {
  const bool written = ChangeProfile(file, [&](std::string bytes) {
    for (const auto& [key, value] : values)
      bytes = Changed(bytes, section, key, value);
    return bytes;
  });
  const int error = errno;
  for (const auto& [key, value] : values)
    ReportOperation(Operation::kSet, file, key + "=" + value, [&] { return written || FailWith(error); });
  return written;
}

}  // namespace win
