#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "maps/mapdetails.h"
#include "maps/maplist.h"
#include "platform/system/text/compare.h"

#include <algorithm>

namespace varnik::cli {

namespace {

// All rows, or those of one page as its sorted list shows them.
std::vector<std::size_t> Rows(const std::string& pageKey) {
  std::vector<std::size_t> rows;
  for (std::size_t row = 1; row < MapList.size() && pageKey.empty(); ++row)
    rows.push_back(row);
  for (const MapPage& page : kMapPages)
    if (pageKey == page.key) rows = MapRowsOfPage(page.mapType, page.subType);
  if (!pageKey.empty())
    std::stable_sort(rows.begin(), rows.end(), [](std::size_t a, std::size_t b) {
      return win::CompareForList(MapList[a].Title, MapList[b].Title) < 0;
    });
  return rows;
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

Row AsTableRow(std::size_t row, bool withDetails) {
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
  Row headings = {"Title", "File", "Folder", "Pages"};
  if (arguments.details) headings.emplace_back("Details");
  const auto asJson = [&](std::size_t row) { return AsJson(row, arguments.details); };
  const auto asRow = [&](std::size_t row) { return AsTableRow(row, arguments.details); };
  return PrintList(arguments.json, Rows(arguments.page), asJson, headings, asRow);
}

}  // namespace varnik::cli
