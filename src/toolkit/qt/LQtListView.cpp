#include "toolkit/qt/LQtListView.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include "toolkit/qt/LQtKeys.h"

void LQtListModel::Reset() {
  beginResetModel();
  columns_ = list_.Model().Columns();
  rows_ = list_.Model().RowCount();
  endResetModel();
}

void LQtListModel::RowsChanged(int first, int last) {
  if (columns_.empty() || last >= rows_) return;
  emit dataChanged(index(first, 0), index(last, int(columns_.size()) - 1));
}

QVariant LQtListModel::data(const QModelIndex& index, int role) const {
  const int row = index.row(), column = index.column();
  if (!index.isValid() || row >= list_.Model().RowCount()) return {};
  if (role == Qt::DisplayRole || role == Qt::EditRole) return LToQt(list_.Model().CellText(row, column));
  if (role == Qt::TextAlignmentRole && columns_[std::size_t(column)].alignRight)
    return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
  if (role == Qt::ForegroundRole)
    if (const auto colour = list_.Model().CellColour(row, column)) return LToQt(*colour);
  return {};
}

QVariant LQtListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= int(columns_.size())) return {};
  return LToQt(columns_[std::size_t(section)].title);
}

Qt::ItemFlags LQtListModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  if (index.isValid() && index.row() < list_.Model().RowCount() &&
      list_.Model().IsEditable(index.row(), index.column()))
    flags |= Qt::ItemIsEditable;
  return flags;
}

bool LQtListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !list_.PeerEdit(index.row(), index.column(), LFromQt(value.toString()))) return false;
  RowsChanged(index.row(), index.row());
  return true;
}

QWidget* LQtListDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                       const QModelIndex& index) const {
  const std::vector<std::string> choices = list_.Model().CellChoices(index.row(), index.column());
  if (choices.empty()) return QStyledItemDelegate::createEditor(parent, option, index);
  auto* combo = new QComboBox(parent);
  for (const std::string& choice : choices) combo->addItem(LToQt(choice));
  return combo;
}

void LQtListDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  if (auto* combo = qobject_cast<QComboBox*>(editor))
    combo->setCurrentText(index.data(Qt::EditRole).toString());
  else
    QStyledItemDelegate::setEditorData(editor, index);
}

void LQtListDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
  if (auto* combo = qobject_cast<QComboBox*>(editor))
    model->setData(index, combo->currentText(), Qt::EditRole);
  else
    QStyledItemDelegate::setModelData(editor, model, index);
}

LQtListWidget::LQtListWidget(LListView& list)
    : QTreeView(LQtParent(list.Parent())), list_(list), rows_(list), delegate_(list) {
  setModel(&rows_);
  setItemDelegate(&delegate_);
  setRootIsDecorated(false);
  setUniformRowHeights(true);  // without it Qt measures every row
  setAlternatingRowColors(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(SelectedClicked);
  setAcceptDrops(true);
  header()->setSectionsClickable(true);
  header()->setStretchLastSection(true);
  connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& at) { list_.EvActivate(at.row()); });
  connect(header(), &QHeaderView::sectionClicked, this, [this](int column) { list_.EvColumnClick(column); });
}

void LQtListWidget::ShowSelection() {
  QItemSelection selection;
  const int lastColumn = rows_.columnCount() - 1;
  for (int row : list_.Selection())
    if (row < rows_.rowCount()) selection.select(rows_.index(row, 0), rows_.index(row, lastColumn));
  telling_ = false;
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  const int first = list_.FirstSelected();
  if (first >= 0 && first < rows_.rowCount())
    selectionModel()->setCurrentIndex(rows_.index(first, 0), QItemSelectionModel::NoUpdate);
  telling_ = true;
}

void LQtListWidget::keyPressEvent(QKeyEvent* event) {
  // The list keeps what moves the selection; every other key is a command of the window.
  static constexpr int kOwn[] = {Qt::Key_Up,   Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown,
                                 Qt::Key_Home, Qt::Key_End,  Qt::Key_Left,   Qt::Key_Right};
  const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
  const bool own = plain && std::find(std::begin(kOwn), std::end(kOwn), event->key()) != std::end(kOwn);
  const bool activates = plain && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter);
  if (own)
    QTreeView::keyPressEvent(event);
  else if (activates && currentIndex().isValid())
    list_.EvActivate(currentIndex().row());
  else
    LQtSendKey(list_, *event);
}

void LQtListWidget::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  if (!telling_) return;
  std::vector<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) rows.push_back(index.row());
  list_.PeerSelection(std::move(rows));
}

void LQtListWidget::contextMenuEvent(QContextMenuEvent* event) {
  list_.EvContextMenu(indexAt(viewport()->mapFrom(this, event->pos())).row(), LFromQt(event->pos()));
}

LQtListView::LQtListView(LListView& list) : LQtPeer(new LQtListWidget(list)) { Widget()->setVisible(true); }

void LQtListView::Rebuild() {
  if (!View()) return;
  const bool first = View()->Rows().Columns().empty();
  View()->Rows().Reset();
  if (!first) return;  // later the widths are the user's
  int column = 0;
  for (const LListColumn& row : View()->Rows().Columns()) View()->setColumnWidth(column++, row.width);
}

void LQtListView::RefreshRows(int first, int last) {
  if (View()) View()->Rows().RowsChanged(first, last);
}

void LQtListView::ShowSelection() {
  if (View()) View()->ShowSelection();
}

void LQtListView::ScrollTo(int row) {
  if (View()) View()->scrollTo(View()->Rows().index(row, 0));
}

void LQtListView::EditCell(int row, int column) {
  if (!View()) return;
  View()->setCurrentIndex(View()->Rows().index(row, column));
  View()->edit(View()->Rows().index(row, column));
}
