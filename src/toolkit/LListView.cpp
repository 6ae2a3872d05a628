#include "toolkit/LListView.h"

#include <algorithm>

#include "foundation/LPlatform.h"
#include "toolkit/LToolkit.h"

LListView::LListView(LWindow& parent, int id, LListModel& model) : LWindow(&parent, id), model_(model) {
  auto peer = LPlatform::Toolkit().NewListView(*this);
  list_ = peer.get();
  SetPeer(std::move(peer));
  list_->Rebuild();
}

// Sorted, each once, within the model; true if that took rows away.
bool LListView::Keep(std::vector<int>& rows) const {
  const std::size_t before = rows.size();
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::erase_if(rows, [this](int row) { return row < 0 || row >= model_.RowCount(); });
  return rows.size() != before;
}

void LListView::Refresh() {
  const bool fewer = Keep(selection_);
  list_->Rebuild();
  list_->ShowSelection();
  if (fewer) EvSelection();
}

void LListView::RefreshRows(int first, int last) {
  first = std::max(0, first);
  last = std::min(last, model_.RowCount() - 1);
  if (first <= last) list_->RefreshRows(first, last);
}

void LListView::SetSelection(std::vector<int> rows) {
  Keep(rows);
  if (rows == selection_) return;
  selection_ = std::move(rows);
  list_->ShowSelection();
}

void LListView::ScrollTo(int row) {
  if (row >= 0 && row < model_.RowCount()) list_->ScrollTo(row);
}

void LListView::EditCell(int row, int column) {
  if (row >= 0 && row < model_.RowCount() && model_.IsEditable(row, column)) list_->EditCell(row, column);
}

void LListView::PeerSelection(std::vector<int> rows) {
  Keep(rows);
  if (rows == selection_) return;
  selection_ = std::move(rows);
  EvSelection();
}

bool LListView::PeerEdit(int row, int column, const std::string& text) {
  if (row < 0 || row >= model_.RowCount() || !model_.IsEditable(row, column)) return false;
  return model_.SetCellText(row, column, text);
}
