#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

// Which file may include which: the layers stand in one order, and arrows point down.
namespace {

namespace fs = std::filesystem;

#define PAGE "[a-z]+/frm[^/]*"
#define HELPS_PAGES "support/(modfreeimage|win95_functions|artwork)\\."
#define WIRING "(mainwindow/(?!frm)|mainwindow/frmmain|startup/(main|program)\\.)"

struct Rule {
  const char* what;
  std::regex from;  // path below src
  std::regex to;    // as written, behind its opening mark
};

const Rule kRules[] = {
    {"platform knows nothing above it", std::regex("platform/.*"), std::regex("\"(?!platform/).*/.*")},
    {"system knows no windowing", std::regex("platform/system/.*"), std::regex("\"platform/windowing/.*")},
    {"Qt is a private matter of windowing", std::regex("(?!platform/windowing/(qt/.*|[^/]*\\.cpp)).*"),
     std::regex("[\"<](Q[A-Z]|Qt[A-Z][A-Za-z]*/|platform/windowing/qt/).*")},
    {"the engine has no window", std::regex("(?!platform/|mainwindow/|" WIRING "|" PAGE "|" HELPS_PAGES ").*"),
     std::regex("\"(platform/windowing/|mainwindow/|" HELPS_PAGES ").*")},
    {"only the window and the start know pages", std::regex("(?!" WIRING ").*"), std::regex("\"" PAGE)},
    {"only the start knows the window", std::regex("(?!mainwindow/|startup/).*"), std::regex("\"mainwindow/.*")},
    {"nothing stands above the command-line program", std::regex("(?!cli/).*"), std::regex("\"cli/.*")},
};

// A page may lie in several files, whose names begin with that of its header.
bool IsOwnHeader(const std::string& from, const std::string& to) {
  return from.starts_with(to.substr(1, to.rfind('.') - 1));
}

std::string BrokenRule(const std::string& from, const std::string& to) {
  for (const Rule& rule : kRules)
    if (std::regex_match(from, rule.from) && std::regex_match(to, rule.to) && !IsOwnHeader(from, to)) return rule.what;
  return "";
}

TEST(Includes, PointDown) {
  const fs::path src = fs::path(SOURCE_DIR) / "src";
  const std::regex include("\\s*#\\s*include\\s*([\"<][^\">]+).*");
  int seen = 0;
  for (const auto& entry : fs::recursive_directory_iterator(src)) {
    if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
    const std::string from = entry.path().lexically_relative(src).string();
    std::ifstream file(entry.path());
    std::smatch found;
    for (std::string line; std::getline(file, line);) {
      if (!std::regex_match(line, found, include)) continue;
      ++seen;
      EXPECT_EQ(BrokenRule(from, found[1]), "") << from << " includes " << found[1];
    }
  }
  EXPECT_GT(seen, 100);
}

}  // namespace
