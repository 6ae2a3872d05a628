// A key press of Qt as the program's key.
// Law      keys without a character give their fixed code, the keypad counts as the main keys, modifiers alone give
//          only themselves. Other keys give what they give unshifted: asked of the X server where there is one, else
//          Qt's key.
// Threads  [main]
#pragma once
#include "foundation/LKey.h"

class LWindow;
class QKeyEvent;

LKey LKeyFromQt(const QKeyEvent& event);
unsigned LQtModifiers(int qtModifiers);                    // LKey masks
void LQtSendKey(LWindow& window, const QKeyEvent& event);  // EvKeyDown or EvKeyRepeat, and what follows
