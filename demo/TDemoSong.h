// The two demo tracks as tables, and how a table becomes sound.
// Law      a step is a sixteenth; every beat falls on a whole frame, the first one on frame 0.
// Units    bars of 4 beats, steps of a quarter beat; notes in MIDI numbers
#pragma once
#include <string>
#include <vector>

struct TDemoSection {
  int bars;
  unsigned layers;  // of TDemoLayer
};

enum TDemoLayer : unsigned {
  tdlKick = 1,
  tdlClap = 2,
  tdlHat = 4,
  tdlOpenHat = 8,
  tdlBass = 16,
  tdlPad = 32,
  tdlPluck = 64,
  tdlSweep = 128,  // rises over the whole section
  tdlBright = 256,
};

struct TDemoChord {
  int bass;
  int notes[4];
};

// Patterns have 16 steps: '.' is a rest; of bass 'x' is the root and 'o' its octave; of pluck '0'..'3' a chord's note
// and '4'..'7' the same an octave above.
struct TDemoSong {
  const char* name;
  int beatFrames;        // 22050: 120 BPM
  TDemoChord chords[4];  // one a bar
  const char* hat;
  const char* openHat;
  const char* bass;
  const char* pluck[2];  // in turn
  std::vector<TDemoSection> sections;
  unsigned seed;
};

const std::vector<TDemoSong>& DemoSongs();

// Interleaved stereo of 16 bits at 44100 Hz; the loudest sample lies at -1.5 dB.
std::vector<short> RenderDemoSong(const TDemoSong& song);
