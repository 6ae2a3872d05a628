// What the sliders of a deck's equaliser mean.
// Law      above the centre a straight line to +12 dB. Below it an arch, 20 log10 sin: -24 dB just below the centre, where
//          the kill commands put a slider, 0 dB a quarter of the way from the bottom, silence at the bottom.
// Units    slider positions 0 (top) .. 100 (bottom), others are held to that; dB.
// Threads  [any]
#pragma once
#include "sound/LdB.h"

LLevel EqualizerDbFromSlider(int position);
