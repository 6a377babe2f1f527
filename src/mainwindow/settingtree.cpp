#include "mainwindow/settingtree.h"

#include "maps/maplist.h"

namespace varnik {

namespace {

struct Node {
  const char* key;
  const char* caption;
  const char* relative;  // nullptr: a root, placed after the root in `next` when it is added again
  const char* next;
};

constexpr Node kFirstNode = {"RMod", "Mods", nullptr, nullptr};
constexpr Node kMapRoot = {"RMap", "Maps", nullptr, "RMod"};
constexpr Node kCmdRoot = {"RCMD", "Command Line Options", nullptr, "RMap"};
constexpr Node kCmdEdit = {"CCMD1", "Edit List", "RCMD", nullptr};
constexpr Node kLastNodes[] = {{"RCFG", "BZ2 Configuration", nullptr, nullptr}, {"RExtra", "Extras", nullptr, nullptr}};
constexpr Node kConfig13 = {"CCFG1", "1.3 Configuration", "RCFG", nullptr};

void Add(win::TreeView& tree, const Node& node) {
  if (node.relative)
    tree.Add(node.relative, win::TreeRelation::kChild, node.key, node.caption);
  else if (node.next)
    tree.Add(node.next, win::TreeRelation::kNext, node.key, node.caption);
  else
    tree.AddRoot(node.key, node.caption);
}

// S nodes stand below the DeathMatch page, C nodes below the list of all maps.
void AddMapNodes(win::TreeView& tree) {
  Add(tree, kMapRoot);
  for (const MapPage& page : kMapPages) {
    if (page.key[0] == 'R') continue;
    Add(tree, {page.key, page.caption, page.key[0] == 'S' ? "CMap1" : "RMap", nullptr});
  }
}

struct PageKey {
  const char* key;
  Page page;
};

constexpr PageKey kPageKeys[] = {{"RMod", Page::kMod},    {"RCMD", Page::kCmdLine},   {"CCMD1", Page::kCmdLineEdit},
                                 {"RCFG", Page::kConfig}, {"CCFG1", Page::kConfig13}, {"RExtra", Page::kExtras}};

}  // namespace

Page PageOfKey(const std::string& key) {
  for (const PageKey& row : kPageKeys)
    if (key == row.key) return row.page;
  int mapType = 0;
  int subType = 0;
  return MapNumbersOfKey(key, mapType, subType) ? Page::kMap : Page::kNone;
}

bool MapNumbersOfKey(const std::string& key, int& mapType, int& subType) {
  for (const MapPage& page : kMapPages) {
    if (key != page.key) continue;
    mapType = page.mapType;
    subType = page.subType;
    return true;
  }
  return false;
}

void AddAllNodes(win::TreeView& tree) {
  Add(tree, kFirstNode);
  PutModNodesBack(tree);
  for (const Node& node : kLastNodes)
    Add(tree, node);
}

void PutModNodesBack(win::TreeView& tree) {
  AddMapNodes(tree);
  Add(tree, kCmdRoot);
  Add(tree, kCmdEdit);
}

void RemoveModNodes(win::TreeView& tree) {
  tree.Remove(kMapRoot.key);
  tree.Remove(kCmdRoot.key);
}

void ShowConfig13Node(win::TreeView& tree, bool shown) {
  if (shown)
    Add(tree, kConfig13);
  else
    tree.Remove(kConfig13.key);
}

}  // namespace varnik
