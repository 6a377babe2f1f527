#pragma once

namespace win {

enum class ListStyle { kPlain, kSorted, kCheckBoxes };  // kCheckBoxes: a tick for each row, unsorted

// A small picture beside a row's text.
enum class RowMark { kNone, kPlain, kOn, kOff };

}  // namespace win
