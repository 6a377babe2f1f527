#include "definition/currentline.h"

namespace varnik {

namespace {

std::vector<const win::LineReader*> lines;

}  // namespace

const std::vector<const win::LineReader*>& CurrentLines() { return lines; }

ScopedLine::ScopedLine(const win::LineReader& file) { lines.push_back(&file); }

ScopedLine::~ScopedLine() { lines.pop_back(); }

}  // namespace varnik
