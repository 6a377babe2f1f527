#pragma once

#include <string>

namespace varnik {

constexpr int kQuipCount = 19;

// Two lines joined by CRLF; `index` from 0 to kQuipCount - 1.
std::string Quip(int index);

// The row for a random number from 0 up to but not including 1. The first row comes up half as often as one in the
// middle, the one before the last one and a half times as often, and the last one never: it is the joke about this
// rule.
int QuipIndex(double random);

}  // namespace varnik
