#pragma once

#include "editor/directiverow.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A definition file while it is being edited: its rows and the one that is selected.
namespace varnik {

class DefinitionDraft {
 public:
  // Replaces the rows by the file's, without any line that begins with the marker word; a file that is not there has
  // none. No row is selected. False when the file is there and cannot be read to its end: the draft is then a new one.
  [[nodiscard]] bool Load(const std::string& path);

  // As they will be written, but that kEmptyRow stands for an empty line.
  const std::vector<std::string>& Rows() const { return rows_; }

  // Of the loaded file, without its folder; empty for a new one.
  const std::string& EditFileName() const { return editFileName_; }

  // -1 with none selected.
  int SelectedRow() const { return selectedRow_; }

  // The selected row taken apart; nothing with none selected.
  const std::optional<DirectiveRow>& Selected() const { return selected_; }

  // Selecting a row rewrites it as the editor builds rows, so what the catalogue does not know is lost. A row that is
  // not there selects none.
  void SelectRow(int row);

  // Both rewrite the selected row, and do nothing with none selected.
  void ChangeDirective(int index);
  void ChangePart(int part, const std::string& text);

  // Puts an empty row behind the selected one, on top with none selected, and selects it.
  void AddRow();

  // Selects what takes the place of the removed row, else the new last row. Does nothing with no row selected.
  void RemoveRow();

  // False when there is no row to swap with. The moved row stays selected.
  bool MoveUp();
  bool MoveDown();

  // Writes the file into the folder of the selected install, or below it, and replaces what is there. Only a definition
  // gets the marker line, which carries the lock. False when nothing could be written.
  bool Save(const std::string& fileName, bool locked) const;

 private:
  void Rebuild();
  bool MoveTo(int row);

  std::vector<std::string> rows_;
  std::string editFileName_;
  int selectedRow_ = -1;
  std::optional<DirectiveRow> selected_;
};

// A file of any other name, `.BZM` included, is for inclusion only.
bool IsDefinitionName(std::string_view fileName);

// Proposed for a new file, and not taken as the answer.
constexpr char kProposedFileName[] = "yourmod.bzm";
bool IsUsableFileName(std::string_view fileName);

}  // namespace varnik
