// A modal question: title, text, up to three buttons, perhaps a check box.
// Law      the first button answers Return; escapeButton answers Escape and the close button.
// Threads  [main]
#pragma once
#include <string>
#include <vector>

class LWindow;

class LAlert {
 public:
  static constexpr int kMaxButtons = 3;
  LAlert(std::string alertTitle, std::string alertText, std::vector<std::string> alertButtons = {"OK"})
      : title(std::move(alertTitle)), text(std::move(alertText)), buttons(std::move(alertButtons)) {}

  int Run(LWindow* parent = nullptr);  // index of the button pressed
  int EscapeIndex() const;             // escapeButton, or the last one

  std::string title, text;
  std::vector<std::string> buttons;  // more than kMaxButtons are not shown
  std::string checkBoxText;          // empty: no check box
  bool checked = false;              // before: how it starts; after: how it ended
  int escapeButton = -1;             // -1: the last
};
