// A list with columns over an LListModel: selection of several rows, in-place edit, drop-down cells.
// Units    rows and columns from 0.
// Threads  [main]
// Failure  rows beyond the model's count are ignored and leave the selection.
#pragma once
#include "toolkit/LListModel.h"
#include "toolkit/LWindow.h"

class LListView : public LWindow {
 public:
  LListView(LWindow& parent, int id, LListModel& model);  // the model outlives the list

  LListModel& Model() { return model_; }
  void Refresh();                                                   // rows came, went or moved
  void RefreshRows(int first, int last);                            // their texts changed
  const std::vector<int>& Selection() const { return selection_; }  // ascending
  int FirstSelected() const { return selection_.empty() ? -1 : selection_.front(); }
  void SetSelection(std::vector<int> rows);
  void ScrollTo(int row);
  void EditCell(int row, int column);

  virtual void EvSelection() {}
  virtual void EvActivate(int /*row*/) {}                       // double click or Return
  virtual void EvContextMenu(int /*row*/, LPoint /*where*/) {}  // row -1: beside the rows
  virtual void EvColumnClick(int /*column*/) {}

  void PeerSelection(std::vector<int> rows);
  bool PeerEdit(int row, int column, const std::string& text);

 private:
  bool Keep(std::vector<int>& rows) const;
  LListModel& model_;
  LListViewPeer* list_;  // the base's peer
  std::vector<int> selection_;
};
