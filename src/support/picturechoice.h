#pragma once

#include <cmath>

#include "platform/system/text.h"
#include "platform/windowing/imagelist.h"
#include "support/settings.h"

namespace varnik {

// The entry of the list that the option names; 1 when the list has no such entry. The store is not corrected.
inline int ChosenPicture(const win::ImageList& list, const char* option) {
  const double index = std::nearbyint(win::LeadingNumber(ReadOption(option)));
  return index >= 1 && index <= list.Count() ? static_cast<int>(index) : 1;
}

}  // namespace varnik
