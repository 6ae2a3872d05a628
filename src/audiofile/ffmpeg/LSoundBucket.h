// The ring between the decoder of a file and its reader.
// Signal   samples go in and out in order. What Read asks for beyond the content is silence and owed back: as many later
//          samples are dropped, so that time stays right.
// Units    single values (frames * channels)
// Threads  Put and the counts: the decoder's thread; Read: may be another one. Allocates at construction only.
#pragma once
#include <vector>

#include "foundation/LMutex.h"

class LSoundBucket {
 public:
  static constexpr int kCapacity = 4297729 / 4 - 1;  // 12 s of stereo at 44100 Hz; one place stays free

  LSoundBucket() : ring_(kCapacity + 1) {}
  int Put(const int* samples, int count);  // null: zeros; gives what was taken
  void Read(int* out, int count);
  int Held() const;
  int Room() const { return kCapacity - Held(); }

 private:
  int HeldLocked() const;

  mutable LMutex mutex_;
  std::vector<int> ring_;
  int read_ = 0, write_ = 0;
  int owed_ = 0;  // samples read before they were there
};
