#pragma once

#include "windowing/imagelist.h"

// The lists that a player chooses from: the program's own entry first, then the files of a folder of the program, in
// the order of the file system. A file that is no picture is left out.
namespace varnik {

void loadimglist(win::ImageList& imglstnomap);
void loadiconlist(win::ImageList& imglstIcon);

}  // namespace varnik
