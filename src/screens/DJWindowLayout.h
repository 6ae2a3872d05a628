// Where the panels stand in the main window: deck A, console and deck B side by side, the crossfader along the foot.
// Units    device-independent pixels of the content area
// Threads  [any]
#pragma once
#include "toolkit/LRect.h"

struct DJWindowLayout {
  static constexpr int kConsoleWidthPx = 180, kFootHeightPx = 64, kGapPx = 5;

  LRect deckA, console, deckB, crossFader;

  static DJWindowLayout For(int width, int height) {
    DJWindowLayout layout;
    LRect box = LRect{0, 0, width, height}.Inset(kGapPx);
    layout.crossFader = box.TakeBottom(kFootHeightPx);
    box.TakeBottom(kGapPx);
    layout.deckA = box.TakeLeft((box.width - kConsoleWidthPx - 2 * kGapPx) / 2);
    box.TakeLeft(kGapPx);
    layout.console = box.TakeLeft(kConsoleWidthPx);
    box.TakeLeft(kGapPx);
    layout.deckB = box;
    return layout;
  }
};
