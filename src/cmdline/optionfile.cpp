#include "cmdline/optionfile.h"

#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/text/text.h"
#include "support/install.h"

#include <utility>

namespace varnik {

namespace {

constexpr char kTick = '*';

}  // namespace

std::vector<OptionRow> ReadOptionRows(const std::string& file) {
  std::vector<OptionRow> rows;
  win::LineReader reader(file);
  while (!reader.AtEnd()) {
    std::string line = win::Trim(reader.ReadLine());
    if (line.empty()) continue;
    const bool ticked = line.front() == kTick;
    if (ticked) line.erase(0, 1);
    rows.push_back({std::move(line), ticked});
  }
  return rows;
}

bool WriteOptionRows(const std::string& file, const std::vector<OptionRow>& rows) {
  std::string text;
  for (const OptionRow& row : rows) {
    if (row.ticked) text += kTick;
    text += row.text + "\r\n";
  }
  return win::WriteWholeFile(file, text);
}

std::string CustomOptionFile() {
  const std::string root = InstallRoot();
  return root.empty() ? "" : root + "varnik.cmd";
}

}  // namespace varnik
