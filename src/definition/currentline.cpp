#include "definition/currentline.h"

namespace varnik {

namespace {

std::vector<const win::LineReader*> lines;

}  // namespace

const std::vector<const win::LineReader*>& CurrentLines() { return lines; }

AtLine::AtLine(const win::LineReader& file) { lines.push_back(&file); }

AtLine::~AtLine() { lines.pop_back(); }

}  // namespace varnik
