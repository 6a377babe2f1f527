#pragma once

#include "platform/system/filesystem/descriptor.h"

#include <sys/types.h>

#include <string>
#include <string_view>

namespace win {

// What a program and all that it starts write, on its way to our standard error. It goes through a file in memory: with
// a pipe, a game that outlives us would end at its next line.
class CapturedOutput {
 public:
  CapturedOutput();

  // For the program to write to; -1 when there is none, and the program then writes to our standard error itself.
  int ForWriting() const { return file_.Get(); }

  // Hands on what has been written since the last call, and frees its memory.
  void HandOn();

  // The last 4 KB at most of what has been handed on, from the beginning of a line.
  std::string Tail() const;

 private:
  void Keep(std::string_view piece);

  Descriptor file_;
  off_t done_ = 0;
  std::string tail_;
};

}  // namespace win
