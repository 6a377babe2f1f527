#pragma once

#include "windowing/treeview.h"

#include <string>

// The nodes of SettingTree. A node's key alone decides which page a click shows.
namespace varnik {

enum class Page { kNone, kMod, kMap, kCmdLine, kCmdLineEdit, kConfig, kConfig13, kExtras };

// kNone for a key that is no node's.
Page PageOfKey(const std::string& key);

// The numbers by which the map list names the page of a map node; false for another key.
[[nodiscard]] bool MapNumbersOfKey(const std::string& key, int& mapType, int& subType);

// Adds every node that is there from the start.
void AddAllNodes(win::TreeView& tree);

// A mod that runs its own executable has no map and no command-line page. Both calls are harmless when repeated: a node
// that is there stays as it is, one that is missing is not missed.
void PutModNodesBack(win::TreeView& tree);
void RemoveModNodes(win::TreeView& tree);

// The page of game version 1.3.
void ShowConfig13Node(win::TreeView& tree, bool shown);

}  // namespace varnik
