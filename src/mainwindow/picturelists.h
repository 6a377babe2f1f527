#pragma once

#include "windowing/imagelist.h"

// The lists that a player chooses from: the program's own entry first, then the files of a folder of the program, in
// the order of the file system. A file that is no picture is left out. The files are read when one of them is asked
// for, so that a start with the own entries reads none.
namespace varnik {

void loadimglist(win::ImageList& imglstnomap);
void loadiconlist(win::ImageList& imglstIcon);

}  // namespace varnik
