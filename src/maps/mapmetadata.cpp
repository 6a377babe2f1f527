#include "maps/mapmetadata.h"

#include "maps/mapconversion.h"
#include "platform/system/files/profile.h"
#include "platform/system/text/text.h"
#include "support/ini_sm.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace varnik {
namespace {

constexpr char kDescription[] = "DESCRIPTION";
constexpr char kNetVars[] = "NetVars";

std::string WithoutLast(const std::string& text, std::size_t count) {
  return text.substr(0, text.size() - std::min(count, text.size()));
}

std::string WithExtension(const std::string& name, const char* extension) { return WithoutLast(name, 3) + extension; }

void SplitPath(const std::string& path, MapEntry& entry, std::string& folder) {
  const std::size_t separator = path.rfind('\\');
  if (separator == std::string::npos) return;
  folder = entry.Folder = path.substr(0, separator + 1);
  entry.FileName = path.substr(separator + 1);
}

// Full path of the map's .inf; empty when there is none. A map found by its .inf is named after it.
std::string ChooseInf(MapEntry& entry, const std::string& path, MapFiles& files) {
  const std::string beside = WithExtension(path, "inf");
  const bool isInf = path.size() >= 3 && win::EqualNoCase(std::string_view(path).substr(path.size() - 3), "inf");
  if (!isInf && !files.HasInf(beside)) return files.FindFirstInf(WithExtension(entry.FileName, "inf"));
  entry.FileName = WithExtension(entry.FileName, "bzn");
  return files.Root() + (isInf ? path : beside);
}

bool IsOfBlanks(std::string_view text) { return !text.empty() && win::Trimmed(text).empty(); }

// A title of blanks, in quotes or not, counts as given: such a map is shown by its file name, one without a title by
// its base name.
std::string ReadTitle(const win::ProfileFile& inf, const std::string& fileName) {
  constexpr char kKey[] = "missionName";
  const bool isBlank = IsOfBlanks(inf.Find(kDescription, kKey).value_or("")) ||
                       IsOfBlanks(inf.FindAsWritten(kDescription, kKey).value_or(""));
  const std::string title = ReadIniValue(kDescription, kKey, inf, isBlank ? "" : WithoutLast(fileName, 4));
  return title.empty() ? fileName : title;
}

std::optional<std::int16_t> ReadNumber(const win::ProfileFile& inf, const char* key) {
  return win::RoundToInt16(win::LeadingNumber(ReadIniValue(kNetVars, key, inf, "0")));
}

bool IsNotZero(const win::ProfileFile& inf, const char* key) {
  return win::LeadingNumber(ReadIniValue(kNetVars, key, inf, "0")) != 0;
}

// The two high bits are flags and not part of the type of deathmatch.
std::int16_t WithoutFlags(std::int16_t ivar7) {
  if (ivar7 >= 512) ivar7 -= 512;
  if (ivar7 >= 256) ivar7 -= 256;
  return ivar7;
}

bool ReadInf(const win::ProfileFile& inf, MapEntry& entry) {
  entry.Title = ReadTitle(inf, entry.FileName);
  entry.DescFile = ReadIniValue(kDescription, "mapDesc", inf, WithExtension(entry.FileName, "odf"));
  entry.PictureFile = ReadIniValue(kDescription, "mapTga", inf, WithExtension(entry.FileName, "bmp"));
  entry.Ivar3Set = IsNotZero(inf, "ivar3");
  const std::optional<std::int16_t> ivar5 = ReadNumber(inf, "ivar5");
  if (!ivar5) return false;
  entry.Ivar5 = *ivar5;
  if (entry.Ivar5 == 1) {
    const std::optional<std::int16_t> ivar7 = ReadNumber(inf, "ivar7");
    if (!ivar7) return false;
    entry.Ivar7 = WithoutFlags(*ivar7);
  }
  entry.Ivar12Set = IsNotZero(inf, "ivar12");
  return true;
}

}  // namespace

bool ParseMapEntry(MapEntry& entry, std::string& path, std::string& folder, MapFiles& files) {
  SplitPath(path, entry, folder);
  const std::string infPath = ChooseInf(entry, path, files);
  if (infPath.empty()) {
    entry.Title = entry.FileName;
    return true;
  }
  const win::ProfileFile inf(infPath);
  if (!ReadInf(inf, entry)) return false;
  OfferConversion(entry, inf, infPath);
  // With regard to case: a path that ends in INF is taken from the full path again.
  if (!path.ends_with("inf")) path = infPath.substr(files.Root().size());
  return true;
}

}  // namespace varnik
