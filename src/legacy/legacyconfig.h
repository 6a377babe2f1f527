#pragma once

#include "platform/system/files/lines.h"

#include <optional>
#include <string>

namespace varnik {

// The game configuration that a legacy mod with `dynamic` gets. The text goes to `newbzone.tmp` in the install root,
// and takes the place of bzone.cfg when it is whole. Names stand in it as the definition gives them: the game resolves
// `@rootdir`.
class LegacyConfigWriter {
 public:
  void Begin(const std::string& root);
  void AddPack(const std::string& name);
  void AddFolder(const std::string& path);

  // Keeps the game's own bzone.cfg as `bzone.tmp.old`.
  void Finish(const std::string& root);

 private:
  std::optional<win::LineWriter> file_;
};

}  // namespace varnik
