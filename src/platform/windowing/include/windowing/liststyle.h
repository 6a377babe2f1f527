#pragma once

namespace win {

enum class ListStyle { kPlain, kSorted, kCheckBoxes };  // kCheckBoxes: a tick for each row, unsorted

}  // namespace win
