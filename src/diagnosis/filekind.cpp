#include "diagnosis/filekind.h"

#include "platform/system/files/files.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <array>

namespace varnik {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kHeadLength = 16;

constexpr std::array kPictureHeads = {"BM"sv,
                                      "\x89PNG"sv,
                                      "\x8BJNG"sv,
                                      "\x8AMNG"sv,
                                      "\xFF\xD8\xFF"sv,
                                      "GIF8"sv,
                                      "DDS "sv,
                                      "II*\0"sv,
                                      "MM\0*"sv,
                                      "II\xBC"sv,
                                      "8BPS"sv,
                                      "FORM"sv,
                                      "\x76\x2F\x31\x01"sv,
                                      "RIFF"sv,
                                      "\0\0\1\0"sv,
                                      "\0\0\2\0"sv,
                                      "#?RADIANCE"sv,
                                      "#define "sv,
                                      "/* XPM"sv,
                                      "\x59\xA6\x6A\x95"sv,
                                      "\0\0\0\x0CjP"sv,
                                      "\xFF\x4F\xFF\x51"sv,
                                      "\1\xDA"sv,
                                      "P1"sv,
                                      "P2"sv,
                                      "P3"sv,
                                      "P4"sv,
                                      "P5"sv,
                                      "P6"sv,
                                      "PF"sv,
                                      "Pf"sv};
constexpr std::array kPicturesWithoutHead = {".tga"sv, ".targa"sv, ".pcx"sv,  ".cut"sv,  ".koa"sv,
                                             ".pcd"sv, ".pct"sv,   ".pict"sv, ".wbmp"sv, ".g3"sv};

constexpr std::array kProgramHeads = {"MZ"sv, "\x7F\x45LF"sv, "#!"sv};

constexpr std::array kDevices = {"con"sv, "prn"sv, "aux"sv, "nul"sv};
constexpr std::array kNumberedDevices = {"com"sv, "lpt"sv};

std::string HeadOf(const std::string& path) {
  win::FileStatus status;
  const auto file = win::OpenFile(win::CurrentFileSystem(), win::NativePath(path), status);
  return file ? win::ReadUpTo(*file, kHeadLength, kHeadLength).value_or("") : "";
}

template <class Texts>
bool BeginsWithOneOf(std::string_view text, const Texts& heads) {
  return std::any_of(heads.begin(), heads.end(), [&](std::string_view head) { return text.starts_with(head); });
}

// With any extension, and with blanks in front of it.
bool IsDevice(std::string_view name) {
  const std::string base = win::Trim(win::LowerCase(name.substr(0, name.find('.'))));
  const bool isNumbered = base.size() == 4 && base[3] >= '1' && base[3] <= '9';
  return std::find(kDevices.begin(), kDevices.end(), base) != kDevices.end() ||
         (isNumbered && BeginsWithOneOf(base, kNumberedDevices));
}

}  // namespace

bool IsFolder(const std::string& path) {
  return (win::GetAttributes(path).value_or(0) & win::kAttributeDirectory) != 0;
}

bool LooksLikePicture(const std::string& path) {
  if (IsFolder(path)) return false;
  const std::string name = win::LowerCase(path);
  const auto endsName = [&](std::string_view ending) { return name.ends_with(ending); };
  return BeginsWithOneOf(HeadOf(path), kPictureHeads) ||
         std::any_of(kPicturesWithoutHead.begin(), kPicturesWithoutHead.end(), endsName);
}

bool LooksLikeProgram(const std::string& path) { return BeginsWithOneOf(HeadOf(path), kProgramHeads); }

bool IsForbiddenOnWindows(std::string_view name) {
  const auto isForbidden = [](char c) {
    return "<>:|"sv.find(c) != std::string_view::npos || (c >= 0 && c < ' ' && c != '\t');
  };
  return std::any_of(name.begin(), name.end(), isForbidden) || IsDevice(name);
}

bool BeginsAsUtf16(std::string_view text) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return true;
  return text.size() > 1 && (text[0] == '\0') != (text[1] == '\0');
}

}  // namespace varnik
