#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QFontInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>
#include <QWheelEvent>

#include "QtFixture.h"
#include "toolkit/LListView.h"
#include "toolkit/LPropertySheet.h"
#include "toolkit/LTabBar.h"
#include "toolkit/qt/LQtPaintContext.h"

namespace {

using QtControls = QtTest;

TEST_F(QtControls, APressCapturesTheMouseUntilTheLastButtonIsUp) {
  RecordingWindow window;
  RecordingControl control(window, 1);
  QWidget* widget = WidgetOf(control);
  Mouse(widget, QEvent::MouseMove, {1, 2}, Qt::NoButton, Qt::NoButton);
  Mouse(widget, QEvent::MouseButtonPress, {3, 4}, Qt::LeftButton, Qt::LeftButton);
  Mouse(widget, QEvent::MouseMove, {-50, 900}, Qt::NoButton, Qt::LeftButton);
  Mouse(widget, QEvent::MouseButtonRelease, {5, 6}, Qt::RightButton, Qt::LeftButton);
  Mouse(widget, QEvent::MouseButtonRelease, {7, 8}, Qt::LeftButton, Qt::NoButton);
  Mouse(widget, QEvent::MouseButtonDblClick, {7, 8}, Qt::LeftButton, Qt::LeftButton);
  control.SetEnabled(false);
  EXPECT_FALSE(control.IsCaptured());
  EXPECT_EQ(control.mouse,
            (std::vector<std::string>{"move 1,2", "down 3,4", "drag -50,900", "up, held 5,6", "up 7,8", "double 7,8"}));
  control.SetEnabled(true);
  QWheelEvent wheel(QPointF(1, 1), QPointF(1, 1), {}, QPoint(0, -180), Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &wheel);
  EXPECT_DOUBLE_EQ(control.wheel, -1.5);
}

TEST_F(QtControls, PaintsWhatIsAskedWhereItIsAsked) {
  QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::black);
  {
    QPainter painter(&image);
    LQtPaintContext context(painter, {0, 0, 40, 20});
    const LGuiColor red = LGuiColor::FromRgb(0xFF0000), green = LGuiColor::FromRgb(0x00FF00);
    {
      LPaintClip clip(context, {0, 0, 10, 20});
      context.FillRect({5, 0, 20, 20}, red);
    }
    context.DrawLine(LPoint{15, 0}, LPoint{15, 19}, {.colour = green});
    LGuiImage columns(2, 1);
    columns.Row(0)[0] = LGuiImage::Pixel(green);
    columns.Row(0)[1] = LGuiImage::Pixel(red.WithAlpha(128));
    context.DrawImage({20, 5, 2, 1}, columns);
    context.FillGradient({30, 0, 10, 20}, LGuiColor::FromRgb(0x000000), LGuiColor::FromRgb(0x0000FF));
    context.PopClip();  // one too many does no harm
  }
  EXPECT_EQ(image.pixelColor(4, 10), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(9, 10), QColor(255, 0, 0));
  EXPECT_EQ(image.pixelColor(10, 10), QColor(Qt::black));  // beyond the clip
  EXPECT_EQ(image.pixelColor(15, 10), QColor(0, 255, 0));
  EXPECT_EQ(image.pixelColor(14, 10), QColor(Qt::black));  // a straight line is sharp
  EXPECT_EQ(image.pixelColor(20, 5), QColor(0, 255, 0));
  EXPECT_NEAR(image.pixelColor(21, 5).red(), 128, 1);
  EXPECT_LT(image.pixelColor(35, 1).blue(), 40);
  EXPECT_GT(image.pixelColor(35, 18).blue(), 215);
}

TEST_F(QtControls, FontsExistAndFollowTheirScale) {
  EXPECT_FALSE(QFontInfo(LQtFont({})).family().isEmpty());
  const LTextSize plain = Toolkit().MeasureText({}, "Wiedergabe");
  const LTextSize large = Toolkit().MeasureText({.scale = 2}, "Wiedergabe");
  EXPECT_GT(plain.width, 30);
  EXPECT_NEAR(large.width, 2 * plain.width, plain.width * 0.2);
  EXPECT_GT(large.height, plain.height);
  // Counters do not jitter.
  EXPECT_EQ(Toolkit().MeasureText({.fixedPitch = true}, "11:11").width,
            Toolkit().MeasureText({.fixedPitch = true}, "00:00").width);
}

class Tracks final : public LListModel {
 public:
  std::vector<LListColumn> Columns() const override { return {{"Titel", 200}, {"Art", 100}}; }
  int RowCount() const override { return rows; }
  std::string CellText(int row, int column) const override {
    ++asked;
    return column == 0 ? row == editedRow ? edited : "Lied " + std::to_string(row) : "Pop";
  }
  bool IsEditable(int row, int) const override { return row % 2 == 0; }
  std::vector<std::string> CellChoices(int, int column) const override {
    return column == 1 ? std::vector<std::string>{"Pop", "Techno"} : std::vector<std::string>{};
  }
  bool SetCellText(int row, int, const std::string& text) override {
    return editedRow = row, edited = text, !text.empty();
  }
  int rows = 100000, editedRow = -1;
  std::string edited;
  mutable int asked = 0;
};

class Tracklist final : public LListView {
 public:
  using LListView::LListView;
  void EvSelection() override { ++selections; }
  void EvActivate(int row) override { activated = row; }
  int selections = 0, activated = -1;
};

TEST_F(QtControls, AListOf100000RowsAsksOnlyForWhatIsSeen) {
  RecordingWindow window;
  Tracks tracks;
  Tracklist list(window, 1, tracks);
  window.SetSize(400, 300);
  list.SetBounds({0, 0, 380, 260});
  window.SetVisible(true);
  Settle();
  list.ScrollTo(99999);
  Settle();
  EXPECT_LT(tracks.asked, 2000);

  auto* view = static_cast<QTreeView*>(WidgetOf(list));
  list.SetSelection({5, 3, 3, 100000});
  EXPECT_EQ(list.Selection(), (std::vector<int>{3, 5}));
  EXPECT_EQ(list.selections, 0);  // the program's own
  Press(view, Qt::Key_Down);
  EXPECT_EQ(list.Selection(), std::vector<int>{4});
  EXPECT_EQ(list.selections, 1);
  Press(view, Qt::Key_Return);
  EXPECT_EQ(list.activated, 4);
  Press(view, Qt::Key_A);  // no type-ahead: a command
  EXPECT_EQ(window.keys, std::vector<std::string>{"A"});

  tracks.rows = 4;
  list.Refresh();
  EXPECT_TRUE(list.Selection().empty());
  EXPECT_EQ(list.selections, 2);
}

TEST_F(QtControls, CellsAreEditedInPlace) {
  RecordingWindow window;
  Tracks tracks;
  Tracklist list(window, 1, tracks);
  list.SetBounds({0, 0, 380, 260});
  window.SetVisible(true);
  auto* view = static_cast<QTreeView*>(WidgetOf(list));
  list.EditCell(1, 0);  // not editable
  EXPECT_EQ(view->findChild<QLineEdit*>(), nullptr);
  list.EditCell(2, 0);
  auto* edit = view->findChild<QLineEdit*>();
  ASSERT_NE(edit, nullptr);
  edit->setText("Neuer Titel");
  Press(edit, Qt::Key_Return);
  Settle();
  EXPECT_EQ(tracks.editedRow, 2);
  EXPECT_EQ(view->model()->index(2, 0).data().toString(), "Neuer Titel");
  list.EditCell(4, 1);
  auto* combo = view->findChild<QComboBox*>();
  ASSERT_NE(combo, nullptr);
  EXPECT_EQ(combo->currentText(), "Pop");
  EXPECT_EQ(combo->count(), 2);
}

TEST_F(QtControls, TabsTellChoiceAndClosing) {
  class Tabs final : public LTabBar {
   public:
    using LTabBar::LTabBar;
    void EvTabChanged(int tag) override { changed = tag; }
    void EvTabClose(int tag) override { RemoveTab(closed = tag); }
    int changed = -1, closed = -1;
  };
  RecordingWindow window;
  Tabs tabs(window, 1);
  tabs.SetCloseToolTip("Diese Registerkarte schließen");
  tabs.AddTab("Audiobibliothek", 0);
  tabs.AddTab("Loops & Samples", 1, true);
  tabs.AddTab("Deckeffekte", 2);
  auto* bar = static_cast<QTabBar*>(WidgetOf(tabs));
  EXPECT_EQ(bar->count(), 3);
  tabs.SelectTab(1);
  EXPECT_EQ(tabs.changed, -1);
  EXPECT_EQ(bar->currentIndex(), 1);
  bar->setCurrentIndex(2);
  EXPECT_EQ(tabs.changed, 2);
  EXPECT_EQ(bar->tabButton(0, QTabBar::RightSide), nullptr);
  auto* close = qobject_cast<QAbstractButton*>(bar->tabButton(1, QTabBar::RightSide));
  ASSERT_NE(close, nullptr);
  EXPECT_EQ(close->toolTip(), QStringLiteral("Diese Registerkarte schließen"));
  tabs.SelectTab(1);
  close->click();
  Settle();
  EXPECT_EQ(tabs.closed, 1);
  EXPECT_EQ(tabs.SelectedTag(), 2);
  EXPECT_EQ(bar->count(), 2);
}

constexpr LDialogRow kRows[] = {
    {LControlKind::Text, 0, "Name & Titel:", 0, 0},
    {LControlKind::Edit, 10, "", 0, 1},
    {LControlKind::CheckBox, 11, "Nicht mehr warnen", 1, 0, 1, 2},
    {LControlKind::Radio, 12, "Ein Gerät", 2, 0},
    {LControlKind::Radio, 13, "Zwei Geräte", 3, 0},
    {LControlKind::Combo, 14, "", 4, 0},
    {LControlKind::Slider, 15, "", 5, 0, 1, 1, 2, 300},
    {LControlKind::Button, 16, "Zurücksetzen", 6, 0},
};

class Options final : public LDialog {
 public:
  Options() : LDialog("Einstellungen", kRows, int(std::size(kRows))) {}
  void InitDialog() override {
    SetItems(14, {".wav", ".mp3"});
    Select(14, 0);
    SetChecked(12, true);
    SetValue(15, 8);
  }
  bool CmOk() override { return ++oks, !GetText(10).empty(); }
  void EvControl(int id) override { events.push_back(id); }
  std::vector<int> events;
  int oks = 0;
};

TEST_F(QtControls, ADialogBuiltFromRowsTakesTheUsersInput) {
  Options options;
  Later user(20, [&] {
    auto* dialog = Visible<QDialog>();
    ASSERT_NE(dialog, nullptr);
    auto* edit = dialog->findChild<QLineEdit*>();
    EXPECT_EQ(edit->accessibleName(), "Name & Titel:");
    Press(edit, Qt::Key_Return);  // OK, refused as long as the name is empty
    EXPECT_EQ(options.oks, 1);
    EXPECT_TRUE(dialog->isVisible());
    edit->insert("Grün");
    const QList<QRadioButton*> radios = dialog->findChildren<QRadioButton*>();
    ASSERT_EQ(radios.size(), 2);
    EXPECT_TRUE(radios[0]->isChecked());
    radios[1]->click();
    dialog->findChild<QComboBox*>()->setCurrentIndex(1);
    emit dialog->findChild<QComboBox*>()->activated(1);
    for (QPushButton* button : dialog->findChildren<QPushButton*>())
      if (button->text().remove('&') == QStringLiteral("Zurücksetzen")) button->click();
    options.SetValue(15, 9999);
    EXPECT_EQ(dialog->findChild<QSlider*>()->value(), 300);
    Press(edit, Qt::Key_Return);
  });
  EXPECT_EQ(options.Run(), LDialog::kOk);
  EXPECT_EQ(options.GetText(10), "Grün");
  EXPECT_EQ(options.GetText(14), ".mp3");
  EXPECT_FALSE(options.IsChecked(12));
  EXPECT_TRUE(options.IsChecked(13));
  EXPECT_EQ(options.events, (std::vector<int>{10, 13, 14, 16}));
}

TEST_F(QtControls, APropertySheetShowsThePageThatRefuses) {
  Options first, second;
  LPropertySheet sheet("Einstellungen");
  sheet.AddPage(first);
  sheet.AddPage(second);
  first.SetText(10, "Name");
  Later user(20, [&] {
    auto* tabs = Visible<QDialog>()->findChild<QTabWidget*>();
    EXPECT_EQ(tabs->count(), 2);
    sheet.Press(LDialog::kOk);
    EXPECT_FALSE(sheet.IsEnded());
    EXPECT_EQ(sheet.SelectedPage(), 1);
    Press(Visible<QDialog>(), Qt::Key_Escape);
  });
  EXPECT_EQ(sheet.Run(), LDialog::kCancel);
}

}  // namespace
