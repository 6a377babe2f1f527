#pragma once

#include "windowing/picture.h"

// The pictures that are part of the program itself.
namespace varnik {

win::Picture Logo();
win::Picture WindowIcon();
win::Picture NoMapPicture();

constexpr char kArtworkCredit[] = "the Varnik developers";

}  // namespace varnik
