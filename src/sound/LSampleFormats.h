// Stored samples to samples of the sound path and back. A storage class says how one sample lies in memory.
// Law      16 bits: s * 16 in, (x + 8) >> 4 out. 32 bits: (s + 2048) >> 12 in, x << 12 out; 24 bits are the high three
//          bytes of 32. Native floats have 524288 as full scale, swapped floats and doubles 524272. G.711 codes expand
//          to 16 bits. "Swapped" is the byte order this machine has not.
// Units    `samples` counts single values (frames * channels); buffers of storage are bytes at any alignment.
// Threads  [any]; no allocation.
// Failure  nothing saturates: a value beyond full scale wraps into its storage (G.711 and reals excepted). Only
//          ConvertSamplesToDevice holds its values.
#pragma once

struct LSF16 {
  static constexpr int kBytes = 2;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFBE16 {
  static constexpr int kBytes = 2;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFU8 {
  static constexpr int kBytes = 1;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFS8 {  // read only
  static constexpr int kBytes = 1;
  static int Get(const unsigned char* at);
};
struct LSFBE8 {  // write only; rounds by 8 of 4096
  static constexpr int kBytes = 1;
  static void Set(unsigned char* at, int x);
};
struct LSF32 {
  static constexpr int kBytes = 4;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFBE32 {
  static constexpr int kBytes = 4;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFLE24 {
  static constexpr int kBytes = 3;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFBE24 {
  static constexpr int kBytes = 3;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFF32 {
  static constexpr int kBytes = 4;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFFRE32 {  // read only
  static constexpr int kBytes = 4;
  static int Get(const unsigned char* at);
};
struct LSFF64 {  // read only
  static constexpr int kBytes = 8;
  static int Get(const unsigned char* at);
};
struct LSFULAW {
  static constexpr int kBytes = 1;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};
struct LSFALAW {
  static constexpr int kBytes = 1;
  static int Get(const unsigned char* at);
  static void Set(unsigned char* at, int x);
};

// Instantiated for every storage class with the member it needs.
template <class Storage>
void ConvertSamplesIn(int* out, const unsigned char* in, int samples);
template <class Storage>
void ConvertSamplesOut(unsigned char* out, const int* in, int samples);

// Signed 32-bit samples for a device: x << 12, held within the range. The only conversion that saturates.
void ConvertSamplesToDevice(int* out, const int* in, int samples);
