#pragma once

#include "windowing/liststyle.h"

#include <QIcon>

namespace win {

// A disc for kOn, a ring for kOff, a triangle for kPlain: told apart by their shape, in the text's own colours, so that
// they can be seen on every palette and on a selected row.
QIcon RowMarkIcon(RowMark mark);

}  // namespace win
