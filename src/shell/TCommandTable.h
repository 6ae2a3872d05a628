// From command id to the operation on MainDialog: the whole program in one table.
// Threads  [main]
#pragma once
#include "console/DJDeckPosition.h"

class MainDialog;

struct TCommandRow {
  int id;                                                           // the first, if the row stands for several
  DJDeckPosition deck;                                              // kNoDeck: of no deck
  void (*run)(MainDialog& dialog, DJDeckPosition deck, int index);  // index: id - the first
  bool needsLoadedDeck = false;
  int count = 1;
};

const TCommandRow* FindCommand(int id);  // null: not known here
