// The tags of a wave file: the INFO list and DISP, the broadcast extension (EBU Tech 3285), and the cart chunk (AES46).
// Units    bytes; time reference in samples, as two halves of 32 bits
// Threads  [any], one at a time
// Failure  false: there is no such chunk. A chunk that the file cuts off is left out.
#pragma once
#include "audiofile/tags/LAudioTagData.h"

bool ReadTagsWAV(LAudioTagData& tags, const LTagBlock& file);
bool ReadTagsBWF(LAudioTagData& tags, const LTagBlock& file);
bool ReadTagsCART(LAudioTagData& tags, const LTagBlock& file);

namespace BWF {
void ToHashTable(LAudioTagData& tags, const LTagBlock& chunk);
}
namespace CART {
void ToHashTable(LAudioTagData& tags, const LTagBlock& chunk);
}
