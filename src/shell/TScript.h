// A script: one event a line, "SECONDS VERB ARGUMENTS", "#" begins a comment line. The whole script is checked before
// anything of it runs.
// Units    seconds with fractions; levels in dB; crossfader 0..100; pitch slider 0..1000; loops in beats; frames of 44100
//          a second.
// Threads  [main]
// Failure  the first wrong line gives a German text that names it.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "console/DJDeckPosition.h"
#include "shell/TEffectAction.h"

struct TScriptEvent {
  enum Verb { Load, Command, Crossfade, Volume, Seek, Pitch, Loop, Bpm, Scratch, Effect, Equalizer, State, Quit };
  enum ScratchStep { ScratchBegin, ScratchMove, ScratchEnd };
  double seconds = 0;
  Verb verb = Quit;
  DJDeckPosition deck = kNoDeck;  // Load and all that a deck does; Volume of a deck
  int target =
      0;  // Command: id; Volume without deck: 0 master, 1 headphones; Bpm: first beat; Scratch: ScratchStep; Equalizer: band
  double value = 0;       // Crossfade, Volume, Seek, Pitch, Loop, Bpm; Scratch: the frame
  std::string path = {};  // Load, State
  TEffectAction effect = {};
  int line = 0;
};

struct TScript {
  std::vector<TScriptEvent> events;  // by time; equal times in the order of the lines

  static TScript Parse(std::string_view text, std::string& error);
  // The two demo tracks, mixed: deck B joins at 20 s, the crossfade runs from 24 s to 32 s, the end is at 60 s.
  static TScript Demo(const std::string& trackA, const std::string& trackB);
};
