// The rows of a list, asked for as they come into view: a list of 100,000 costs what is seen of it.
// Units    rows and columns from 0; widths in device-independent pixels.
// Threads  [main]
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "toolkit/LGuiColor.h"

struct LListColumn {
  std::string title;
  int width = 100;
  bool alignRight = false;
};

class LListModel {
 public:
  virtual ~LListModel() = default;
  virtual std::vector<LListColumn> Columns() const = 0;
  virtual int RowCount() const = 0;
  virtual std::string CellText(int row, int column) const = 0;
  virtual std::optional<LGuiColor> CellColour(int /*row*/, int /*column*/) const { return std::nullopt; }
  virtual bool IsEditable(int /*row*/, int /*column*/) const { return false; }
  virtual std::vector<std::string> CellChoices(int /*row*/, int /*column*/) const { return {}; }  // a drop-down cell
  virtual bool SetCellText(int /*row*/, int /*column*/, const std::string&) { return false; }     // false: refused
};
