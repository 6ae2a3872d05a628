#include "toolkit/qt/LQtDialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <memory>

#include "toolkit/qt/LQtConvert.h"

namespace {

QLabel* NewLabel(const QString& text, bool heading) {
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  QFont font = label->font();
  font.setBold(heading);
  label->setFont(font);
  return label;
}

QFrame* NewLine() {
  auto* line = new QFrame;
  line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
  return line;
}

// The items of a combo box or a list, only if they are others than before: the selection would flicker.
template <class View>
void ShowItems(View& view, const LControlState& control) {
  bool same = view.count() == int(control.items.size());
  if constexpr (std::is_same_v<View, QComboBox>) {
    for (int i = 0; same && i < view.count(); ++i) same = view.itemText(i) == LToQt(control.items[std::size_t(i)]);
  } else {
    for (int i = 0; same && i < view.count(); ++i) same = view.item(i)->text() == LToQt(control.items[std::size_t(i)]);
  }
  if (same) return;
  view.clear();
  for (const std::string& item : control.items) view.addItem(LToQt(item));
}

bool TakesLabel(LControlKind kind) {
  return kind == LControlKind::Edit || kind == LControlKind::Number || kind == LControlKind::Combo ||
         kind == LControlKind::List || kind == LControlKind::Slider;
}

}  // namespace

LQtDialog::LQtDialog(LDialog& dialog) : dialog_(dialog), form_(new QWidget) {
  auto layout = std::make_unique<QGridLayout>();
  QGridLayout& grid = *layout;
  form_->setLayout(layout.release());
  for (const LControlState& control : dialog_.Controls()) {
    QWidget* widget = Make(control);
    Place(grid, control, widget);
    Show(control, *widget);
    if (control.row.id != 0) widgets_[control.row.id] = widget;
  }
  radioGroups_.clear();
}

LQtDialog::~LQtDialog() { delete form_.data(); }

// The text with its first letter that is still free marked for Alt.
QString LQtDialog::Label(const std::string& text) {
  const QString label = LToQt(text);
  for (int i = 0; i < label.size(); ++i) {
    const QChar letter = label[i].toLower();
    if (!letter.isLetterOrNumber() || mnemonics_.contains(letter)) continue;
    mnemonics_ += letter;
    return label.left(i).replace(u'&', QStringLiteral("&&")) + u'&' + label.mid(i).replace(u'&', QStringLiteral("&&"));
  }
  return LToQtLabel(text);
}

QWidget* LQtDialog::Make(const LControlState& control) {
  const int id = control.row.id, low = control.row.low, high = control.row.high;
  switch (control.row.kind) {
    case LControlKind::Text:
      return NewLabel(LToQt(control.text), false);
    case LControlKind::Heading:
      return NewLabel(LToQt(control.text), true);
    case LControlKind::Line:
      return NewLine();
    case LControlKind::Edit: {
      auto* edit = new QLineEdit;
      QObject::connect(edit, &QLineEdit::textEdited, edit,
                       [this, id](const QString& text) { dialog_.PeerText(id, LFromQt(text)); });
      return edit;
    }
    case LControlKind::Number: {
      auto* number = new QSpinBox;
      number->setRange(low, high);
      QObject::connect(number, &QSpinBox::valueChanged, number, [this, id](int v) { dialog_.PeerValue(id, v); });
      return number;
    }
    case LControlKind::CheckBox: {
      auto* box = new QCheckBox(Label(control.text));
      QObject::connect(box, &QCheckBox::toggled, box, [this, id](bool on) { dialog_.PeerChecked(id, on); });
      return box;
    }
    case LControlKind::Radio: {
      auto* radio = new QRadioButton(Label(control.text));
      QObject::connect(radio, &QRadioButton::toggled, radio, [this, id](bool on) {
        if (on) dialog_.PeerChecked(id, true);  // the others of its group are the dialog's business
      });
      return radio;
    }
    case LControlKind::Button: {
      auto* button = new QPushButton(Label(control.text));
      button->setAutoDefault(false);
      QObject::connect(button, &QPushButton::clicked, button, [this, id] { dialog_.Press(id); });
      return button;
    }
    case LControlKind::Combo: {
      auto* combo = new QComboBox;
      QObject::connect(combo, &QComboBox::activated, combo, [this, id](int i) { dialog_.PeerSelected(id, i); });
      return combo;
    }
    case LControlKind::List: {
      auto* list = new QListWidget;
      QObject::connect(list, &QListWidget::currentRowChanged, list, [this, id](int i) { dialog_.PeerSelected(id, i); });
      return list;
    }
    case LControlKind::Slider: {
      auto* slider = new QSlider(Qt::Horizontal);
      slider->setRange(low, high);
      QObject::connect(slider, &QSlider::valueChanged, slider, [this, id](int v) { dialog_.PeerValue(id, v); });
      return slider;
    }
  }
  return new QWidget;
}

void LQtDialog::Place(QGridLayout& grid, const LControlState& control, QWidget* widget) {
  const LDialogRow& row = control.row;
  grid.addWidget(widget, row.row, row.column, row.rowSpan, row.columnSpan);
  if (row.kind == LControlKind::Radio) {
    QButtonGroup*& group = radioGroups_[row.column];
    if (!group) group = new QButtonGroup(form_);
    group->addButton(static_cast<QRadioButton*>(widget));
  } else {
    radioGroups_.erase(row.column);
  }
  if (TakesLabel(row.kind) && lastLabel_) {
    widget->setAccessibleName(lastLabel_->text());
    lastLabel_->setText(Label(LFromQt(widget->accessibleName())));
    lastLabel_->setBuddy(widget);
  }
  lastLabel_ = row.kind == LControlKind::Text ? qobject_cast<QLabel*>(widget) : nullptr;
  // A sentence across the grid may break into lines; a name beside its control may not.
  if (lastLabel_ && row.columnSpan > 1) lastLabel_->setWordWrap(true);
}

void LQtDialog::Show(const LControlState& control, QWidget& widget) {
  const QSignalBlocker blocker(widget);
  widget.setEnabled(control.enabled);
  if (widget.isHidden() == control.visible || !control.visible) widget.setVisible(control.visible);
  if (auto* label = qobject_cast<QLabel*>(&widget)) {
    if (!label->buddy()) label->setText(LToQt(control.text));
  } else if (auto* edit = qobject_cast<QLineEdit*>(&widget)) {
    if (edit->text() != LToQt(control.text)) edit->setText(LToQt(control.text));
  } else if (auto* number = qobject_cast<QSpinBox*>(&widget)) {
    number->setValue(control.value);
  } else if (auto* slider = qobject_cast<QSlider*>(&widget)) {
    slider->setValue(control.value);
  } else if (auto* combo = qobject_cast<QComboBox*>(&widget)) {
    ShowItems(*combo, control);
    combo->setCurrentIndex(control.selected);
  } else if (auto* list = qobject_cast<QListWidget*>(&widget)) {
    ShowItems(*list, control);
    list->setCurrentRow(control.selected);
  } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
    if (button->isCheckable()) button->setChecked(control.checked);
    const QString plain = button->text().replace(QStringLiteral("&&"), QStringLiteral("\x01")).remove(u'&');
    if (plain != LToQt(control.text).replace(u'&', u'\x01')) button->setText(LToQtLabel(control.text));
  }
}

void LQtDialog::Update(int id) {
  const LControlState* control = dialog_.Find(id);
  const auto found = widgets_.find(id);
  if (control && found != widgets_.end() && found->second) Show(*control, *found->second);
}

void LQtDialog::SetFocus(int id) {
  const auto found = widgets_.find(id);
  if (found != widgets_.end() && found->second) found->second->setFocus(Qt::OtherFocusReason);
}

void LQtDialog::Ended() {
  if (ended_) ended_();
}
