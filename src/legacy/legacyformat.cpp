#include "legacy/legacyformat.h"

#include "platform/system/paths/paths.h"

#include <limits>
#include <utility>

namespace varnik {

LegacyLine ReadLegacyLine(win::LineReader& file) {
  const std::string line = file.ReadLine();
  return {win::Trim(std::string_view(line).substr(0, line.find("//")))};
}

void LegacyArguments::Split(const LegacyLine& line) {
  const std::size_t comma = line.text.find(',');
  if (comma != std::string::npos) first = win::Trim(line.text.substr(line.keywordLength, comma - line.keywordLength));
  second = win::Trim(line.text.substr(comma == std::string::npos ? 0 : comma + 1));
}

std::string LegacyPlaces::NextTempName() {
  std::string name = root + kParkingFolder + "\\" + std::to_string(LegacyTempCounter);
  if (LegacyTempCounter < std::numeric_limits<std::int16_t>::max()) ++LegacyTempCounter;
  return name;
}

std::string LegacyPlaces::ExpandRootDir(std::string path) const {
  if (HasRootDir(path)) path.replace(0, kRootDirLength, root);
  return path;
}

void LegacyPlaces::SplitExpanded(const LegacyLine& line, LegacyArguments& arguments) const {
  arguments.Split(line);
  arguments.first = ExpandRootDir(std::move(arguments.first));
  arguments.second = ExpandRootDir(std::move(arguments.second));
}

bool HasRootDir(const std::string& path) {
  return path.size() >= kRootDirLength && win::StartsWithNoCase(path, "@rootdir") && win::IsSeparator(path[8]);
}

}  // namespace varnik
