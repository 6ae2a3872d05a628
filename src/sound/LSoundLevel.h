// Peak, mean square and level of blocks of samples, and the quick gain.
// Units    samples on the 20-bit scale; a mean square of 134214685 is a full-scale sine and reads 0 dB.
// Threads  [any]; no allocation.
#pragma once
#include "sound/LdB.h"

int GetBufferPeak(const int* samples, int frames, unsigned char channels);
int GetBufferPeak(const int* samples, int frames, unsigned char channels, int& peakFrame);  // first largest magnitude
int GetBufferPeakChan(int channel, const int* samples, int frames, unsigned char channels);

unsigned GetBufferMeanSquare(const int* samples, int frames, unsigned char channels);
unsigned GetBufferMeanSquareChan(int channel, const int* samples, int frames, unsigned char channels);

LLevel LevelFromMeanSquare(unsigned meanSquare);

// Each sample becomes (gain * sample) >> 9 in wrapping 32-bit arithmetic; 512 is unity.
void GainAudioBufferQuick(int gain9, int* samples, int count);
