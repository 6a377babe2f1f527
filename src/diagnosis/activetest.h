#pragma once

#include "diagnosis/installcheck.h"
#include "diagnosis/undoorder.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace varnik {

// The lines by which the catalogue judges whether a persistent mod is active. They can only tell when what they look
// for comes with the mod and goes with it.
class ActiveTests {
 public:
  void AddPath(const Place& place, const std::string& name) { paths_.emplace_back(place, name); }
  void AddList() { hasList_ = true; }

  // A file that a line makes in another way than by moving files.
  void AddMade(const std::string& name);

  // To be called behind the last line. Without `install` only what the lines alone show is reported.
  void Check(const UndoOrder& undo, const InstallCheck* install) const;

 private:
  enum class Answer { kTells, kAlwaysThere, kNeverThere };
  Answer AnswerOf(const std::string& name, const UndoOrder& undo, const InstallCheck* install) const;

  std::vector<std::pair<Place, std::string>> paths_;
  std::unordered_set<std::string> made_;  // in lower case
  bool hasList_ = false;
};

}  // namespace varnik
