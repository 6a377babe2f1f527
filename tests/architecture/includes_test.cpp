#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

// Which file may include which. The build itself keeps Qt and the windowing layer from the engine.
namespace {

namespace fs = std::filesystem;

struct Rule {
  const char* what;
  std::regex from;  // path below src
  std::regex to;    // as written
};

const Rule kRules[] = {
    {"platform knows nothing above it", std::regex("platform/.*"), std::regex("\"(?!platform/|windowing/).*/.*")},
    {"system knows no windowing", std::regex("platform/system/.*"), std::regex("\"(platform/)?windowing/.*")},
    {"Qt stays inside the windowing layer", std::regex("(?!platform/windowing/(?!include/)).*"),
     std::regex("[\"<](Q[A-Z]|Qt[A-Z][A-Za-z]*/|platform/windowing/).*")},
    {"only pages, dialogs and the window know a window", std::regex("(?!platform/|mainwindow/|[a-z]+/ui/).*"),
     std::regex("\"(windowing/|mainwindow/|[a-z]+/ui/).*")},
    {"only the window and the start know pages", std::regex("(?!mainwindow/(?!frm)|mainwindow/frmmain|startup/ui/).*"),
     std::regex("\"[a-z]+/(ui/)?frm.*")},
    {"only the start knows the window", std::regex("(?!mainwindow/|startup/ui/).*"), std::regex("\"mainwindow/.*")},
    {"nothing stands above the command-line program", std::regex("(?!cli/).*"), std::regex("\"cli/.*")},
};

// A page may lie in several files, whose names begin with that of its header.
bool IsOwnHeader(const std::string& from, const std::string& to) {
  return from.starts_with(to.substr(0, to.rfind('.')));
}

std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

using ArrowMap = std::map<std::string, std::set<std::string>>;

// Every file below src, with the headers it includes as written but for the closing mark.
ArrowMap Includes() {
  const fs::path src = fs::path(SOURCE_DIR) / "src";
  const std::regex include("#include ([\"<][^\">]+).*");
  ArrowMap files;
  for (const auto& entry : fs::recursive_directory_iterator(src)) {
    if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
    auto& includes = files[entry.path().lexically_relative(src).string()];
    std::ifstream file(entry.path());
    std::smatch found;
    for (std::string line; std::getline(file, line);)
      if (std::regex_match(line, found, include)) includes.insert(found[1]);
  }
  return files;
}

// The arrows between files, or with `part` FolderOf between folders.
template <typename Part>
ArrowMap Arrows(Part part) {
  ArrowMap arrows;
  for (const auto& [from, includes] : Includes())
    for (const std::string& include : includes) {
      std::string to = include.substr(1);
      if (to.starts_with("windowing/")) to = "platform/windowing/include/" + to;
      if (include[0] == '"' && part(from) != part(to)) arrows[part(from)].insert(part(to));
    }
  return arrows;
}

ArrowMap Reversed(const ArrowMap& arrows) {
  ArrowMap reversed;
  for (const auto& [from, targets] : arrows)
    for (const std::string& to : targets)
      reversed[to].insert(from);
  return reversed;
}

// Removes what has no arrow to anything that is left, until nothing more goes.
ArrowMap WithoutLeaves(ArrowMap arrows) {
  const auto leaf = [&](const auto& node) {
    return std::none_of(node.second.begin(), node.second.end(), [&](const auto& to) { return arrows.contains(to); });
  };
  for (auto it = arrows.begin(); (it = std::find_if(arrows.begin(), arrows.end(), leaf)) != arrows.end();)
    arrows.erase(it);
  return arrows;
}

// The circles, and what lies on a way from one to another.
std::set<std::string> InCircles(const ArrowMap& arrows) {
  std::set<std::string> left;
  for (const auto& [node, targets] : WithoutLeaves(Reversed(WithoutLeaves(arrows))))
    left.insert(node);
  return left;
}

TEST(Architecture, IncludesPointDown) {
  const auto files = Includes();
  EXPECT_GT(files.size(), 200u);
  for (const auto& [from, includes] : files)
    for (const std::string& to : includes)
      for (const Rule& rule : kRules)
        EXPECT_FALSE(std::regex_match(from, rule.from) && std::regex_match(to, rule.to) &&
                     !IsOwnHeader(from, to.substr(1)))
            << from << " includes " << to << ": " << rule.what;
}

// A component is a header with its source, wherever the two lie.
std::string Component(const std::string& path) {
  std::string component = path.substr(0, path.rfind('.'));
  const std::string root = "/include/windowing/";
  const std::size_t at = component.find(root);
  return at == std::string::npos ? component : component.replace(at, root.size(), "/");
}

TEST(Architecture, HasNoCircles) {
  EXPECT_EQ(InCircles(Arrows(Component)), std::set<std::string>());
  EXPECT_EQ(InCircles(Arrows([](const std::string& path) { return FolderOf(Component(path)); })),
            std::set<std::string>());
}

// A source file without a header of its name must not define what another header declares. A header that declares a
// function has a source of its name beside it; parts of a form may lie in files of the form's folder.
TEST(Architecture, HeadersHaveTheirSource) {
  const auto files = Includes();
  const std::regex declaration("^[A-Za-z][\\w:<>,&* ]* [\\w]+\\([^;{}=]*\\)( const)?;$");
  for (const auto& [header, includes] : files) {
    // artwork.h is implemented by a generated file.
    const bool isOfMany = header == "mainwindow/frmmain.h" || header == "cli/commands.h";
    if (!header.ends_with(".h") || isOfMany || header == "support/ui/artwork.h") continue;
    const std::string source = Component(header) + ".cpp";
    if (files.contains(source)) continue;
    std::ifstream file(fs::path(SOURCE_DIR) / "src" / header);
    for (std::string line; std::getline(file, line);)
      EXPECT_FALSE(std::regex_match(line, declaration)) << header << " declares without a source: " << line;
  }
}

}  // namespace
