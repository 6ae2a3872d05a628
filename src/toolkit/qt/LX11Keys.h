// What a key of an X keyboard gives without Shift and its like.
// Threads  [main]
// Failure  0: no X server, or a key whose symbol is no plain character.
#pragma once

unsigned LX11UnshiftedCharacter(unsigned keyCode, int group);  // Unicode; group of the keyboard layout, 0 to 3
