#include "editor/definitiondraft.h"

#include "platform/system/files/lines.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/paths/paths.h"
#include "platform/system/text/text.h"
#include "support/install.h"

#include <algorithm>
#include <utility>

namespace varnik {

bool DefinitionDraft::Load(const std::string& path) {
  rows_.clear();
  SelectRow(-1);
  editFileName_ = win::FileNameOf(path);
  win::LineReader file(path);
  while (!file.AtEnd()) {
    std::string line = win::Trim(file.ReadLine());
    if (win::StartsWithNoCase(line, "bz2hald")) continue;
    rows_.push_back(line.empty() ? kEmptyRow : std::move(line));
  }
  if (!file.Failed()) return true;
  rows_.clear();
  editFileName_.clear();
  return false;
}

void DefinitionDraft::SelectRow(int row) {
  const bool exists = row >= 0 && row < static_cast<int>(rows_.size());
  selectedRow_ = exists ? row : -1;
  selected_.reset();
  if (!exists) return;
  selected_.emplace(rows_[row]);
  Rebuild();
}

void DefinitionDraft::ChangeDirective(int index) {
  if (!selected_) return;
  selected_->ChangeDirective(index);
  Rebuild();
}

void DefinitionDraft::ChangePart(int part, const std::string& text) {
  if (!selected_) return;
  selected_->ChangePart(part, text);
  Rebuild();
}

void DefinitionDraft::AddRow() {
  rows_.insert(rows_.begin() + (selectedRow_ + 1), kEmptyRow);  // no step back from an empty list
  SelectRow(selectedRow_ + 1);
}

void DefinitionDraft::RemoveRow() {
  if (selectedRow_ < 0) return;
  rows_.erase(rows_.begin() + selectedRow_);
  SelectRow(std::min(selectedRow_, static_cast<int>(rows_.size()) - 1));
}

bool DefinitionDraft::MoveUp() { return MoveTo(selectedRow_ - 1); }

bool DefinitionDraft::MoveDown() { return MoveTo(selectedRow_ + 1); }

bool DefinitionDraft::MoveTo(int row) {
  if (selectedRow_ < 0 || row < 0 || row >= static_cast<int>(rows_.size())) return false;
  std::swap(rows_[selectedRow_], rows_[row]);
  SelectRow(row);
  return true;
}

bool DefinitionDraft::Save(const std::string& fileName, bool locked) const {
  if (InstallRoot().empty()) return false;
  std::string text;
  if (IsDefinitionName(fileName)) text = locked ? "BZ2HALD5 /x\r\n" : "BZ2HALD5\r\n";
  for (const std::string& row : rows_)
    text += (row == kEmptyRow ? "" : row) + "\r\n";
  return win::WriteWholeFile(InstallRoot() + fileName, text);
}

void DefinitionDraft::Rebuild() { rows_[selectedRow_] = selected_->BuildRowText(); }

bool IsDefinitionName(std::string_view fileName) { return fileName.ends_with(".bzm"); }

bool IsUsableFileName(std::string_view fileName) { return !fileName.empty() && fileName != kProposedFileName; }

}  // namespace varnik
