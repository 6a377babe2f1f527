#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "maps/mapdetails.h"
#include "maps/maplist.h"
#include "platform/system/text/compare.h"

#include <algorithm>

namespace varnik::cli {

namespace {

std::vector<std::size_t> AllRows() {
  std::vector<std::size_t> rows;
  for (std::size_t row = 1; row < MapList.size(); ++row)
    rows.push_back(row);
  return rows;
}

// As the sorted list of the page shows them.
std::vector<std::size_t> RowsOfPage(const std::string& key) {
  for (const MapPage& page : kMapPages) {
    if (key != page.key) continue;
    std::vector<std::size_t> rows = MapRowsOfPage(page.mapType, page.subType);
    std::stable_sort(rows.begin(), rows.end(), [](std::size_t a, std::size_t b) {
      return win::CompareForList(MapList[a].Title, MapList[b].Title) < 0;
    });
    return rows;
  }
  return {};
}

Json FileOrNull(const std::string& name, const std::string& found) {
  // A map that names no file has its folder for one.
  return name.empty() || found.empty() ? Json() : Text(found);
}

Json AsJson(std::size_t row, bool withDetails) {
  const MapEntry& map = MapList[row];
  Json object = {{"FileName", Text(map.FileName)},
                 {"Folder", Text(map.Folder)},
                 {"Title", Text(map.Title)},
                 {"DescFile", Text(map.DescFile)},
                 {"PictureFile", Text(map.PictureFile)},
                 {"Ivar3Set", map.Ivar3Set},
                 {"Ivar5", map.Ivar5},
                 {"Ivar7", map.Ivar7},
                 {"Ivar12Set", map.Ivar12Set},
                 {"Pages", PagesOfMapRow(row)}};
  if (!withDetails) return object;
  object["Details"] = Text(MapDetails(map));
  object["Description"] = FileOrNull(map.DescFile, FindMapDescription(map));
  object["Picture"] = FileOrNull(map.PictureFile, FindMapPicture(map));
  return object;
}

std::vector<std::string> AsTableRow(std::size_t row, bool withDetails) {
  const MapEntry& map = MapList[row];
  std::string pages;
  for (const std::string& key : PagesOfMapRow(row))
    pages += (pages.empty() ? "" : " ") + key;
  std::vector<std::string> texts = {map.Title, map.FileName, map.Folder, pages};
  if (withDetails) texts.push_back(OneLine(MapDetails(map)));
  return texts;
}

}  // namespace

int ListMaps(const Arguments& arguments) {
  if (!SelectMod(arguments.mod)) return kFailed;
  if (arguments.convert) AnswerYes();
  LoadMapList(arguments.rescan);
  Json list = Json::array();
  std::vector<std::vector<std::string>> table;
  for (const std::size_t row : arguments.page.empty() ? AllRows() : RowsOfPage(arguments.page)) {
    if (arguments.json)
      list.push_back(AsJson(row, arguments.details));
    else
      table.push_back(AsTableRow(row, arguments.details));
  }
  if (arguments.json) return Print(list);
  std::vector<std::string> headings = {"Title", "File", "Folder", "Pages"};
  if (arguments.details) headings.emplace_back("Details");
  return PrintTable(headings, table);
}

}  // namespace varnik::cli
