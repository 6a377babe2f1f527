#pragma once

#include "windowing/listbox.h"
#include "windowing/textbox.h"

#include <functional>
#include <string>
#include <vector>

namespace varnik {

// A box above a list that narrows it to the rows with the typed text, whatever their case and accents. It is hidden
// until it is opened, and the list then has the whole place.
class ListFinder {
 public:
  // `textOf` gives what is searched of a row, empty for one that always shows.
  ListFinder(win::Container& parent, const char* name, win::ListBox& list, std::function<std::string(int row)> textOf);

  // The place that the list and the open box share.
  void Place(double left, double top, double width, double height, const win::Anchors& anchors);

  void Open();
  void Close();   // shows all rows again
  void Filled();  // the list has other rows than before

  win::TextBox box;

 private:
  void Arrange();
  void Narrow();
  void GoToList();

  win::ListBox& list_;
  std::function<std::string(int row)> textOf_;
  std::vector<std::string> keys_;  // of the rows, made when they are first searched
  double left_ = 0, top_ = 0, width_ = 0, height_ = 0;
};

}  // namespace varnik
