#pragma once

#include "platform/system/files/lines.h"

#include <vector>

// The line of a definition that a pass acts on, for code that reports what the pass does.
namespace varnik {

// The file that the pass began with, then the included ones down to the one that is being read; the line that counts is
// the one read last. Empty outside a pass, and after the last line of the first file. Written by ScopedLine only.
inline std::vector<const win::LineReader*> CurrentLines;

// Held while a pass acts on the line that it has just read.
class ScopedLine {
 public:
  explicit ScopedLine(const win::LineReader& file) { CurrentLines.push_back(&file); }
  ~ScopedLine() { CurrentLines.pop_back(); }
  ScopedLine(const ScopedLine&) = delete;
  ScopedLine& operator=(const ScopedLine&) = delete;
};

}  // namespace varnik
