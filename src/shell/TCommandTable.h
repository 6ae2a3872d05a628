// From command id to the operation on MainDialog: the whole program in one table.
// Threads  [main]
#pragma once
#include "console/DJDeckPosition.h"

class MainDialog;

struct TCommandRow {
  int id;
  DJDeckPosition deck;  // kNoDeck: of no deck
  void (*run)(MainDialog& dialog, DJDeckPosition deck);
  bool needsLoadedDeck = false;
};

const TCommandRow* FindCommand(int id);  // null: not known here
