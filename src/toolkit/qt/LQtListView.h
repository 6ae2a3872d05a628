// A list on Qt's tree view; rows are asked for as they are seen.
// Threads  [main]
#pragma once
#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QTreeView>

#include "toolkit/LListView.h"
#include "toolkit/qt/LQtPeer.h"

class LQtListModel final : public QAbstractTableModel {
 public:
  explicit LQtListModel(LListView& list) : list_(list) {}
  void Reset();
  void RowsChanged(int first, int last);
  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : int(columns_.size()); }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  const std::vector<LListColumn>& Columns() const { return columns_; }

 private:
  LListView& list_;
  std::vector<LListColumn> columns_;  // as of the last Reset
  int rows_ = 0;
};

class LQtListDelegate final : public QStyledItemDelegate {  // a combo box for cells with choices
 public:
  explicit LQtListDelegate(LListView& list) : list_(list) {}
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

 private:
  LListView& list_;
};

class LQtListWidget final : public QTreeView {
 public:
  explicit LQtListWidget(LListView& list);
  LQtListModel& Rows() { return rows_; }
  void ShowSelection();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override { LQtDragEnter(list_, *event); }
  void dragMoveEvent(QDragMoveEvent* event) override { event->accept(); }
  void dragLeaveEvent(QDragLeaveEvent*) override { list_.EvDragHover(false); }
  void dropEvent(QDropEvent* event) override { LQtDrop(*this, list_, *event); }

 private:
  LListView& list_;
  LQtListModel rows_;
  LQtListDelegate delegate_;
  bool telling_ = true;  // false while the program changes the selection
};

class LQtListView final : public LQtPeer<LListViewPeer> {
 public:
  explicit LQtListView(LListView& list);
  void Rebuild() override;
  void RefreshRows(int first, int last) override;
  void ShowSelection() override;
  void ScrollTo(int row) override;
  void EditCell(int row, int column) override;

 private:
  LQtListWidget* View() const { return static_cast<LQtListWidget*>(Widget()); }
};
