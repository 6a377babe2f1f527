#include "legacy/legacyactivation.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"
#include "tests/cli/cliworld.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

// Carries out the examples of the guide: each block between ``` marks is what its first line says. Then the manual
// page.
namespace {

using test::CliResult;
using test::CliWorld;

using Files = std::map<std::string, std::string>;

struct Block {
  int line;
  std::string kind;  // "text before", say
  std::string text;
};

std::vector<Block> BlocksOf(const std::string& path) {
  std::ifstream file(path);
  std::vector<Block> blocks;
  bool inside = false;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.starts_with("```")) {
      if (!inside) blocks.push_back({number, line.substr(3), ""});
      inside = !inside;
    } else if (inside) {
      blocks.back().text += line + "\n";
    }
  }
  return blocks;
}

std::string Replaced(const std::string& text, const std::string& from, const std::string& to) {
  std::string result;
  std::size_t at = 0;
  for (std::size_t next = 0; (next = text.find(from, at)) != std::string::npos; at = next + from.size())
    result += text.substr(at, next - at) + to;
  return result + text.substr(at);
}

// One file on a line, as `name: its only line`.
Files ListingOf(const std::string& text) {
  Files files;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    files[line.substr(0, line.find(": "))] = line.substr(line.find(": ") + 2);
  return files;
}

class Guide : public testing::Test, public CliWorld {
 protected:
  void Carry(const Block& block) {
    std::smatch words;
    if (block.kind.starts_with("text before"))
      Before(block.kind == "text before" ? "1.2" : block.kind.substr(12), ListingOf(block.text));
    else if (block.kind == "text after")
      EXPECT_EQ(FilesNow(ListingOf(block.text)), ListingOf(block.text));
    else if (block.kind == "console")
      Ask(block.text);
    else if (block.kind.starts_with("text in "))
      EXPECT_NE(ReadHere(block.kind.substr(8)).find(block.text), std::string::npos) << ReadHere(block.kind.substr(8));
    else if (std::regex_match(block.kind, words, std::regex("(?:bzm|ini) (.*)")))
      WriteHere(words[1], block.text);
    else
      ADD_FAILURE() << "no such block: " << block.kind;
  }

 private:
  void Before(const std::string& version, const Files& files) {
    world_ = std::make_unique<test::Sandbox>();
    world_->MakeInstall(version);
    bare_ = test::Snapshot(world_->Install());
    for (const auto& [name, line] : files)
      WriteHere(name, line + "\n");
    RunCli("installs add " + world_->Install().string());
    RunCli("installs select 0");
  }

  void WriteHere(const std::string& name, const std::string& text) const {
    test::WriteFile(world_->Install() / name, Replaced(text, "\n", "\r\n"));
  }
  std::string ReadHere(const std::string& name) const {
    return Replaced(test::ReadFile(world_->Install() / name), "\r\n", "\n");
  }

  // What the install holds beside the game and the definitions; `...` where the listing does not care for the content.
  Files FilesNow(const Files& listing) const {
    Files files;
    for (const auto& [name, content] : test::Snapshot(world_->Install())) {
      const auto bare = bare_.find(name);
      if (name.ends_with('/') || name.ends_with(".bzm") || (bare != bare_.end() && bare->second == content)) continue;
      const auto listed = listing.find(name);
      const std::string text = ReadHere(name);
      files[name] = listed != listing.end() && listed->second == "..." ? "..." : text.substr(0, text.find('\n'));
    }
    return files;
  }

  void Ask(const std::string& session) const {
    std::string said;
    std::istringstream lines(session);
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("$ ")) continue;
      const std::string command = Replaced(line, "~/games/bz2", world_->Install().string());
      const CliResult result = RunCli(command.substr(sizeof "$ varnik-cli"));
      said += line + "\n" + result.out + (result.status == 0 ? "" : result.err);
    }
    EXPECT_EQ(Replaced(said, world_->Install().string(), "~/games/bz2"), session);
  }

  std::unique_ptr<test::Sandbox> world_;
  Files bare_;
};

TEST_F(Guide, TellsWhatHappens) {
  const std::vector<Block> blocks = BlocksOf(SOURCE_DIR "/docs/modders-guide.md");
  EXPECT_GT(blocks.size(), 30u);
  for (const Block& block : blocks) {
    SCOPED_TRACE("line " + std::to_string(block.line));
    Carry(block);
  }
}

std::set<std::string> MatchesOf(const std::string& text, const char* pattern) {
  const std::regex regex(pattern, std::regex::multiline);
  std::set<std::string> found;
  for (std::sregex_iterator it(text.begin(), text.end(), regex); it != std::sregex_iterator(); ++it)
    found.insert((*it)[1]);
  return found;
}

TEST(Documents, LinkToWhatIsThere) {
  const std::filesystem::path root = SOURCE_DIR;
  std::vector<std::filesystem::path> documents = {root / "README.md"};
  for (const auto& entry : std::filesystem::directory_iterator(root / "docs"))
    if (entry.path().extension() == ".md") documents.push_back(entry.path());
  for (const auto& document : documents)
    for (const std::string& link : MatchesOf(test::ReadFile(document), "\\]\\(([^):#]+)[^):]*\\)"))
      EXPECT_TRUE(exists(document.parent_path() / link)) << document << " links to " << link;
}

TEST(ReferencePage, HasEveryDirectiveAndNoOther) {
  std::set<std::string> directives;
  for (const auto& pass :
       {varnik::CatalogueDirectives(), varnik::ActivationDirectives(), varnik::DeactivationDirectives()})
    for (const varnik::DirectiveForm& form : pass)
      directives.emplace(form.name);
  std::set<std::string> keywords;
  for (const std::string_view keyword : varnik::LegacyKeywords())
    keywords.emplace(keyword.substr(0, keyword.find(' ')));
  const std::string page = test::ReadFile(SOURCE_DIR "/man/bzm.5");
  EXPECT_EQ(MatchesOf(page, "^\\.It Ic (\\w+) Ns \\("), directives);
  EXPECT_EQ(MatchesOf(page, "^\\.It Ic (\\w+)(?: Ar .*)?$"), keywords);
}

}  // namespace
