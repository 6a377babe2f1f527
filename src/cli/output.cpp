#include "cli/output.h"

#include "platform/system/text/text.h"

#include <algorithm>
#include <cstdio>

namespace varnik::cli {

namespace {

constexpr std::string_view kLineEnds = "\r\n";
constexpr std::size_t kGap = 2;  // blanks between two columns

int Write(const std::string& text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  return written ? kDone : Fail("standard output", "cannot be written");
}

std::size_t WidthOf(std::string_view utf8) {
  return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string Joined(const Row& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::string cell = win::Printable(row[i]);
    line += cell + std::string(widths[i] - WidthOf(cell) + kGap, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

}  // namespace

Json Text(std::string_view bytes) { return win::Utf8FromBytes(bytes); }

int Print(const Json& document) { return Write(document.dump(2) + "\n"); }

int PrintLine(std::string_view bytes) { return Write(win::Printable(bytes) + "\n"); }

int PrintBytes(std::string_view bytes) { return Write(std::string(bytes)); }

int PrintTable(const Row& headings, const std::vector<Row>& rows) {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < headings.size(); ++i) {
    widths.push_back(WidthOf(headings[i]));
    for (const Row& row : rows)
      widths[i] = std::max(widths[i], WidthOf(win::Printable(row[i])));
  }
  std::string table = Joined(headings, widths);
  for (const Row& row : rows)
    table += Joined(row, widths);
  return Write(table);
}

void Note(std::string_view text) { std::fprintf(stderr, "varnik-cli: %s\n", win::Printable(text).c_str()); }

int Fail(std::string_view subject, std::string_view why) {
  Note(std::string(subject) + ": " + std::string(why));
  return kFailed;
}

std::string FirstLine(std::string_view text) { return std::string(text.substr(0, text.find_first_of(kLineEnds))); }

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (kLineEnds.find(c) == std::string_view::npos)
      line += c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  return win::Trim(line);
}

}  // namespace varnik::cli
