// A dialog's controls as data: one row of a table each, from which a peer builds what the system has.
// Units    row and column count cells of a grid from 0; low and high are a slider's or number's range.
// Threads  [any]
#pragma once
#include <string>
#include <vector>

enum class LControlKind {
  Text,      // a label; names the control that follows it in the table
  Heading,   // a bold label over a group
  Edit,      // one line of text
  Number,    // a whole number from low to high
  CheckBox,  //
  Radio,     // those of one grid column with no other kind between them are one group
  Button,    // tells its press
  Combo,     // one of a list
  List,      // one of a list, all seen
  Slider,    // from low to high
  Line       // a rule across
};

struct LDialogRow {
  LControlKind kind = LControlKind::Text;
  int id = 0;  // unique in its dialog; 0 for what is never asked for
  const char* text = "";
  int row = 0, column = 0;
  int rowSpan = 1, columnSpan = 1;
  int low = 0, high = 100;
};

// What a control shows at present. Held by LDialog, so that its logic runs without any screen.
struct LControlState {
  LDialogRow row;
  std::string text;
  bool enabled = true, visible = true, checked = false;
  std::vector<std::string> items;
  int selected = -1;  // index into items; -1 none
  int value = 0;      // Number, Slider
};
