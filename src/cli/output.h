#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

// What the program says: data on standard output, everything else on standard error. Texts come from files of
// strangers: outside JSON and PrintBytes, control characters other than line ends are written as `\x1b`.
namespace varnik::cli {

using Json = nlohmann::ordered_json;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

// Bytes of a file as a text of JSON; UTF-8 if valid, else Windows-1252.
Json Text(std::string_view bytes);

// kDone, or kFailed when standard output cannot be written.
int Print(const Json& document);
int PrintLine(std::string_view bytes);

// The bytes as they are.
int PrintBytes(std::string_view bytes);

using Row = std::vector<std::string>;

// Columns below headings, as wide as their widest text.
int PrintTable(const Row& headings, const std::vector<Row>& rows);

// A list as one JSON array, or as a table below `headings`.
template <class Items, class AsJson, class AsRow>
int PrintList(bool json, const Items& items, const AsJson& asJson, const Row& headings, const AsRow& asRow) {
  Json list = Json::array();
  std::vector<Row> rows;
  for (const auto& item : items)
    if (json)
      list.push_back(asJson(item));
    else
      rows.push_back(asRow(item));
  return json ? Print(list) : PrintTable(headings, rows);
}

// One line on standard error.
void Note(std::string_view text);

// The same, naming the file or value that the failure is about; gives kFailed.
[[nodiscard]] int Fail(std::string_view subject, std::string_view why);

// The text up to its first line end.
std::string FirstLine(std::string_view text);

// Line ends turned into blanks.
std::string OneLine(std::string_view text);

}  // namespace varnik::cli
