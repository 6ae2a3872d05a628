// The text of the loops of LMP3Kernels.h; LMP3Kernels.cpp includes it once a form, inside a namespace.
// Law      vectors run over what is independent (subbands, slots, lines), so that the order of additions, and with it
//          every bit of the result, does not depend on how long a vector is. No multiplication is fused with an addition.
// Units    see LMP3Kernels.h; L_LANES floats a vector, 4 or 8; L_TARGET is the attribute of every function.
// Threads  [any]; no allocation.

#define L_LOOP [[gnu::always_inline]] L_TARGET inline

constexpr int kLanes = L_LANES;
typedef float V __attribute__((vector_size(4 * L_LANES)));
typedef int VInt __attribute__((vector_size(4 * L_LANES)));

L_LOOP V Load(const float* at) {
  V v;
  __builtin_memcpy(&v, at, sizeof v);
  return v;
}
L_LOOP void Store(float* at, V v) { __builtin_memcpy(at, &v, sizeof v); }
L_LOOP void Store(int* at, VInt v) { __builtin_memcpy(at, &v, sizeof v); }

#if L_LANES == 8
#define L_SHUFFLE(a, b, i0, i1, i2, i3) \
  __builtin_shufflevector(a, b, i0, i1, i2, i3, (i0) + 4, (i1) + 4, (i2) + 4, (i3) + 4)
// Indices of the second operand count from 8.
constexpr int kB = 8;
L_LOOP V Reverse(V v) { return __builtin_shufflevector(v, v, 7, 6, 5, 4, 3, 2, 1, 0); }
#else
#define L_SHUFFLE(a, b, i0, i1, i2, i3) __builtin_shufflevector(a, b, i0, i1, i2, i3)
constexpr int kB = 4;
L_LOOP V Reverse(V v) { return __builtin_shufflevector(v, v, 3, 2, 1, 0); }
#endif

// Of each group of four lanes: the first and the last two pairs of a and b, interleaved.
template <class Vector>
L_LOOP Vector ZipLow(Vector a, Vector b) {
  return L_SHUFFLE(a, b, 0, kB, 1, kB + 1);
}
template <class Vector>
L_LOOP Vector ZipHigh(Vector a, Vector b) {
  return L_SHUFFLE(a, b, 2, kB + 2, 3, kB + 3);
}

L_LOOP void TransposeFours(V* r) {
  const V a = ZipLow(r[0], r[1]), b = ZipHigh(r[0], r[1]), c = ZipLow(r[2], r[3]), d = ZipHigh(r[2], r[3]);
  r[0] = L_SHUFFLE(a, c, 0, 1, kB, kB + 1);
  r[1] = L_SHUFFLE(a, c, 2, 3, kB + 2, kB + 3);
  r[2] = L_SHUFFLE(b, d, 0, 1, kB, kB + 1);
  r[3] = L_SHUFFLE(b, d, 2, 3, kB + 2, kB + 3);
}

// kLanes vectors of kLanes floats.
L_LOOP void Transpose(V* r) {
  TransposeFours(r);
#if L_LANES == 8
  TransposeFours(r + 4);
  for (int i = 0; i < 4; ++i) {
    const V low = r[i], high = r[i + 4];
    r[i] = __builtin_shufflevector(low, high, 0, 1, 2, 3, 8, 9, 10, 11);
    r[i + 4] = __builtin_shufflevector(low, high, 4, 5, 6, 7, 12, 13, 14, 15);
  }
#endif
}

// --- Huffman -----------------------------------------------------------------------------------------------------

L_LOOP std::uint64_t Window(const unsigned char* bytes, int position) {
  std::uint64_t word;
  __builtin_memcpy(&word, bytes + (position >> 3), sizeof word);
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  return word << (position & 7);  // at least 57 bits are valid
}

struct BitCursor {
  const unsigned char* bytes;
  int position;

  L_LOOP unsigned Take(int count) {  // 0..32
    const std::uint64_t window = Window(bytes, position);
    position += count;
    return unsigned(window >> 1 >> (63 - count));
  }
};

L_LOOP float EscapedValue(const LMP3LookupTables& tables, BitCursor& cursor, int value, int linbits) {
  if (value == LMP3PairLookup::kZero) value += int(cursor.Take(linbits));
  const float power = tables.powers[value];
  return value > 0 && cursor.Take(1) ? -power : power;
}

// One region, two pairs a window. Gives the line behind the last one decoded: `end`, unless the bits ran out.
L_LOOP int DecodeRegion(const LMP3LookupTables& tables, const LMP3PairLookup& lookup, BitCursor& cursor, int endBit,
                        float* lines, int line, int end) {
  constexpr int kPairBits = 21;  // of the longest word with its signs
  const std::uint32_t* const entries = lookup.entries;
  const float* const powers = tables.signedPowers;
  while (line < end && cursor.position < endBit) {
    std::uint64_t window = Window(cursor.bytes, cursor.position);
    for (int left = 57 - kPairBits; left >= 0 && line < end; left -= kPairBits, line += 2) {
      std::uint32_t entry = entries[window >> (64 - LMP3PairLookup::kFirstBits)];
      if (entry & LMP3PairLookup::kSpecial) [[unlikely]] {
        if (!(entry & LMP3PairLookup::kEscape))
          entry = entries[(entry >> 16) +
                          (window << LMP3PairLookup::kFirstBits >> (64 - (entry & LMP3PairLookup::kLinkMask)))];
        if (entry & LMP3PairLookup::kEscape) {
          cursor.position += int(entry & LMP3PairLookup::kLengthMask);
          lines[line] = EscapedValue(tables, cursor, int(entry >> 8 & 31), lookup.linbits);
          lines[line + 1] = EscapedValue(tables, cursor, int(entry >> 16 & 31), lookup.linbits);
          window = Window(cursor.bytes, cursor.position);
          continue;
        }
      }
      const int length = int(entry & LMP3PairLookup::kLengthMask);
      window <<= length;
      cursor.position += length;
      lines[line] = powers[entry >> 8 & 31];
      lines[line + 1] = powers[entry >> 16 & 31];
    }
  }
  return line;
}

// Fours of lines that are -1, 0 or 1, to the end of the bits. One that reaches over the end is padding of the encoder.
L_LOOP int DecodeQuads(const LMP3LookupTables& tables, const LMP3QuadLookup* lookup, BitCursor& cursor, int endBit,
                       float* lines, int line) {
  while (line <= LMP3BandTables::kLines - 4 && cursor.position < endBit) {
    const std::uint64_t window = Window(cursor.bytes, cursor.position);
    const unsigned entry = lookup[window >> (64 - LMP3LookupTables::kQuadBits)];
    cursor.position += int(entry >> 8);
    if (cursor.position > endBit) break;
    __builtin_memcpy(lines + line, tables.quads[entry & 255], 4 * sizeof(float));
    line += 4;
  }
  return line;
}

L_TARGET int Huffman(const LMP3LookupTables& tables, const LMP3HuffmanRun& run, float* lines) {
  BitCursor cursor{run.bytes, run.position};
  int line = 0;
  for (int region = 0; region < 3; ++region) {
    const int end = run.regionEnds[region];
    const LMP3PairLookup& lookup = tables.pairs[run.tables[region]];
    if (!lookup.entries) {
      for (; line < end; ++line) lines[line] = 0;
    } else {
      line = DecodeRegion(tables, lookup, cursor, run.end, lines, line, end);
      if (line < end) return line;
    }
  }
  return DecodeQuads(tables, tables.quadTables[run.quadTable], cursor, run.end, lines, line);
}

// --- Spectral lines ----------------------------------------------------------------------------------------------

L_TARGET void ScaleBands(float* lines, const short* starts, const float* gains, int bands) {
  for (int band = 0; band < bands; ++band) {
    const float gain = gains[band];
    for (int i = starts[band]; i < starts[band + 1]; ++i) lines[i] *= gain;
  }
}

L_TARGET void MidSide(float* left, float* right, int lines) {
  constexpr float kHalfRoot = 0.70710678118654752440F;
  for (int i = 0; i < lines; ++i) {
    const float middle = left[i] * kHalfRoot, side = right[i] * kHalfRoot;
    left[i] = middle + side;
    right[i] = middle - side;
  }
}

L_TARGET void ReduceAlias(const LMP3LookupTables& tables, float* lines, int borders) {
  for (int border = 1; border <= borders; ++border) {
    float* const above = lines + border * LMP3BandTables::kSubbandLines;
    for (int i = 0; i < LMP3LookupTables::kAliasLines; i += kLanes) {
      float* const below = above - i - kLanes;
      const V cs = Load(tables.Cs + i), ca = Load(tables.Ca + i), up = Load(above + i), down = Reverse(Load(below));
      Store(below, Reverse(down * cs - up * ca));
      Store(above + i, up * cs + down * ca);
    }
  }
}

// --- From lines to subband samples -------------------------------------------------------------------------------

// out[j] = sum of in[m] cos(pi m (2j + 1) / 18), nine of each.
L_LOOP void Cosines9(const V* in, V* out) {
  constexpr float c10 = 0.98480775301220805937F, c20 = 0.93969262078590838405F, c30 = 0.86602540378443864676F;
  constexpr float c40 = 0.76604444311897803520F, c50 = 0.64278760968653932632F, c70 = 0.34202014332566873304F;
  constexpr float c80 = 0.17364817766693034885F;
  const V level = in[0] + in[6] * 0.5F, apart = in[0] - in[6], rest = in[2] - in[4] - in[8];
  const V even0 = level + in[2] * c20 + in[4] * c40 + in[8] * c80;
  const V even1 = apart + rest * 0.5F;
  const V even2 = level - in[2] * c80 - in[4] * c20 + in[8] * c40;
  const V even3 = level - in[2] * c40 + in[4] * c80 - in[8] * c20;
  const V third = in[3] * c30;
  const V odd0 = in[1] * c10 + third + in[5] * c50 + in[7] * c70;
  const V odd1 = (in[1] - in[5] - in[7]) * c30;
  const V odd2 = in[1] * c50 - third - in[5] * c70 + in[7] * c10;
  const V odd3 = in[1] * c70 - third + in[5] * c10 - in[7] * c50;
  out[0] = even0 + odd0;
  out[8] = even0 - odd0;
  out[1] = even1 + odd1;
  out[7] = even1 - odd1;
  out[2] = even2 + odd2;
  out[6] = even2 - odd2;
  out[3] = even3 + odd3;
  out[5] = even3 - odd3;
  out[4] = apart - rest;
}

// 2 cos(pi (2j + 1) / 72) times a DCT-IV of 18 points: adding neighbours turns it into two transforms of nine, the second
// of them divided by the same cosine once more. The factor that is left is in the windows.
L_LOOP void FDCT18(const V* in, V* out) {
  constexpr float kHalfSecants[9] = {0.50190991877167369479F, 0.51763809020504152470F, 0.55168895948124587825F,
                                     0.61038729438072803416F, 0.70710678118654752440F, 0.87172339781054900991F,
                                     1.18310079157624925896F, 1.93185165257813657350F, 5.73685662283492756461F};
  V even[9], odd[9], evenOut[9], oddOut[9];
  even[0] = in[0];
  odd[0] = in[1] + in[0];
  for (int m = 1; m < 9; ++m) {
    even[m] = in[2 * m] + in[2 * m - 1];
    odd[m] = (in[2 * m + 1] + in[2 * m]) + (in[2 * m - 1] + in[2 * m - 2]);
  }
  Cosines9(even, evenOut);
  Cosines9(odd, oddOut);
  for (int j = 0; j < 9; ++j) {
    const V second = oddOut[j] * kHalfSecants[j];
    out[j] = evenOut[j] + second;
    out[17 - j] = evenOut[j] - second;
  }
}

// The same of six points, for one of the three windows of a short block.
L_LOOP void FDCT6(const V* in, int stride, V* out) {
  constexpr float c30 = 0.86602540378443864676F;
  constexpr float kHalfSecants[3] = {0.51763809020504152470F, 0.70710678118654752440F, 1.93185165257813657350F};
  const V x0 = in[0], x1 = in[stride], x2 = in[2 * stride], x3 = in[3 * stride], x4 = in[4 * stride];
  const V even1 = (x2 + x1) * c30, even2 = x4 + x3;
  const V odd0 = x1 + x0, odd1 = ((x3 + x2) + odd0) * c30, odd2 = (in[5 * stride] + x4) + (x3 + x2);
  const V evenLevel = x0 + even2 * 0.5F, oddLevel = odd0 + odd2 * 0.5F;
  const V evens[3] = {evenLevel + even1, x0 - even2, evenLevel - even1};
  const V odds[3] = {oddLevel + odd1, odd0 - odd2, oddLevel - odd1};
  for (int j = 0; j < 3; ++j) {
    const V second = odds[j] * kHalfSecants[j];
    out[j] = evens[j] + second;
    out[5 - j] = evens[j] - second;
  }
}

// 36 samples of kLanes subbands, windowed.
L_LOOP void LongSamples(const V* in, const float* window, V* out) {
  V transform[18];
  FDCT18(in, transform);
  for (int i = 0; i < 9; ++i) {
    out[i] = transform[i + 9] * window[i];
    out[i + 9] = transform[17 - i] * window[i + 9];
    out[i + 18] = transform[8 - i] * window[i + 18];
    out[i + 27] = transform[i] * window[i + 27];
  }
}

L_LOOP void ShortSamples(const V* in, const float* window, V* out) {
  for (int i = 0; i < 36; ++i) out[i] = V{};
  for (int part = 0; part < 3; ++part) {
    V transform[6];
    FDCT6(in + part, 3, transform);
    V* const to = out + 6 + 6 * part;
    for (int i = 0; i < 3; ++i) {
      to[i] += transform[i + 3] * window[i];
      to[i + 3] += transform[5 - i] * window[i + 3];
      to[i + 6] += transform[2 - i] * window[i + 6];
      to[i + 9] += transform[i] * window[i + 9];
    }
  }
}

// The lines of kLanes subbands, one vector a line.
L_LOOP void LoadSubbands(const float* lines, V* out) {
  constexpr int kLines = LMP3BandTables::kSubbandLines;
  constexpr int kFirstOfLast = kLines - kLanes;  // the last block overlaps the one before
  for (int line = 0; line < kLines; line += kLanes) {
    const int first = line > kFirstOfLast ? kFirstOfLast : line;
    V block[kLanes];
    for (int lane = 0; lane < kLanes; ++lane) block[lane] = Load(lines + lane * kLines + first);
    Transpose(block);
    for (int i = 0; i < kLanes; ++i) out[first + i] = block[i];
  }
}

L_TARGET void Hybrid(const LMP3LookupTables& tables, const LMP3HybridRun& run) {
  constexpr int kLines = LMP3BandTables::kSubbandLines;
  V inversion;  // every other sample of every other subband is turned round
  VInt numbers;
  for (int lane = 0; lane < kLanes; ++lane) {
    inversion[lane] = lane % 2 == 0 ? 1.0F : -1.0F;
    numbers[lane] = lane;
  }
  int subband = 0;
  for (; subband < run.subbands; subband += kLanes) {
    V in[kLines], out[36];
    LoadSubbands(run.lines + subband * kLines, in);
    if (run.blockType == 2) {
      ShortSamples(in, tables.shortWindow, out);
    } else {
      LongSamples(in, tables.longWindows[run.blockType], out);
    }
    if (subband < run.longSubbands) {
      V normal[36];
      LongSamples(in, tables.longWindows[0], normal);
      for (int i = 0; i < 36; ++i) out[i] = numbers < run.longSubbands ? normal[i] : out[i];
    }
    for (int i = 0; i < kLines; ++i) {
      float* const overlap = run.overlap[i] + subband;
      const V sum = out[i] + Load(overlap);
      Store(run.slots[i] + subband, i % 2 == 0 ? sum : sum * inversion);
      Store(overlap, out[i + kLines]);
    }
  }
  for (; subband < LMP3BandTables::kSubbands; subband += kLanes)
    for (int i = 0; i < kLines; ++i) {
      float* const overlap = run.overlap[i] + subband;
      const V sum = Load(overlap);
      Store(run.slots[i] + subband, i % 2 == 0 ? sum : sum * inversion);
      if (subband < run.overlapSubbands) Store(overlap, V{});
    }
}

// --- Synthesis ---------------------------------------------------------------------------------------------------

// Half of 1 / cos(pi (2k + 1) / 2N), k = 0 .. N/2 - 1.
template <int N>
struct HalfSecants;
template <>
struct HalfSecants<32> {
  static constexpr float values[16] = {
      0.50060299823519630134F, 0.50547095989754365998F, 0.51544730992262454697F, 0.53104259108978417447F,
      0.55310389603444452782F, 0.58293496820613387367F, 0.62250412303566481615F, 0.67480834145500574602F,
      0.74453627100229844977F, 0.83934964541552703873F, 0.97256823786196069369F, 1.16943993343288495515F,
      1.48416461631416627724F, 2.05778100995341155085F, 3.40760841846871878570F, 10.19000812354805681150F};
};
template <>
struct HalfSecants<16> {
  static constexpr float values[8] = {0.50241928618815570551F, 0.52249861493968888062F, 0.56694403481635770368F,
                                      0.64682178335999012954F, 0.78815462345125022473F, 1.06067768599034747134F,
                                      1.72244709823833392782F, 5.10114861868916385802F};
};
template <>
struct HalfSecants<8> {
  static constexpr float values[4] = {0.50979557910415916894F, 0.60134488693504528054F, 0.89997622313641570463F,
                                      2.56291544774150617881F};
};
template <>
struct HalfSecants<4> {
  static constexpr float values[2] = {0.54119610014619698439F, 1.30656296487637652785F};
};
template <>
struct HalfSecants<2> {
  static constexpr float values[1] = {0.70710678118654752440F};
};

// x[n] = sum of x[k] cos(pi n (2k + 1) / 2N): the even ones from the sums of mirrored points, the odd ones as sums of
// neighbours in the transform of their differences.
template <int N>
L_LOOP void CosineTransform(V* x) {
  if constexpr (N > 1) {
    constexpr int kHalf = N / 2;
    V sums[kHalf], differences[kHalf];
    for (int k = 0; k < kHalf; ++k) {
      sums[k] = x[k] + x[N - 1 - k];
      differences[k] = (x[k] - x[N - 1 - k]) * HalfSecants<N>::values[k];
    }
    CosineTransform<kHalf>(sums);
    CosineTransform<kHalf>(differences);
    for (int n = 0; n < kHalf; ++n) {
      x[2 * n] = sums[n];
      x[2 * n + 1] = n + 1 < kHalf ? differences[n] + differences[n + 1] : differences[n];
    }
  }
}

// Row i of 64 is the sum of sample k times cos(pi (16 + i)(2k + 1) / 64): 32 different values, mirrored and negated.
L_LOOP V RowValue(const V* transform, int i) {
  if (i < 16) return transform[16 + i];
  if (i == 16) return V{};
  if (i <= 48) return -transform[48 - i];
  return -transform[i - 48];
}

// kLanes slots at a time, one lane each.
L_LOOP void MatrixLanes(const float (*slots)[32], float (*rows)[LMP3Kernels::kRowFloats], int usable) {
  V x[32];
  for (int first = 0; first < 32; first += kLanes) {
    for (int lane = 0; lane < kLanes; ++lane) x[first + lane] = Load(slots[lane < usable ? lane : 0] + first);
    Transpose(x + first);
  }
  CosineTransform<32>(x);
  for (int first = 0; first < LMP3Kernels::kRowFloats; first += kLanes) {
    V block[kLanes];
    for (int i = 0; i < kLanes; ++i) block[i] = RowValue(x, first + i);
    Transpose(block);
    for (int lane = 0; lane < usable; ++lane) Store(rows[lane] + first, block[lane]);
  }
}

L_TARGET void MatrixMultiply(const float (*slots)[32], float (*rows)[LMP3Kernels::kRowFloats], int count) {
  int done = 0;
  for (; done + kLanes <= count; done += kLanes) MatrixLanes(slots + done, rows + done, kLanes);
  if (done < count) MatrixLanes(slots + done, rows + done, count - done);
}

// To the nearest, halves away from 0; what does not fit 32 bits is held at their ends.
L_LOOP VInt ToSamples(V v) {
  constexpr float kHighest = 2147483520.0F;  // the largest float below 2^31
  const V high = V{} + kHighest, half = V{} + 0.5F;
  v = v < high ? v : high;
  v = v > -high ? v : -high;
  return __builtin_convertvector(v + (v < V{} ? -half : half), VInt);
}

constexpr int kWindowVectors = 4;  // of output that are summed side by side

// A part of one output row; even blocks of the window take the first half of a row, odd ones the second of the row before.
template <int kChannels>
L_LOOP void SumRow(const float* const (&rows)[kChannels], int first, VInt (&out)[kChannels][kWindowVectors]) {
  V sums[kChannels][kWindowVectors] = {};
  for (int block = 0; block < 16; ++block) {
    const int from = first + (block % 2 == 0 ? 0 : 32) - block * LMP3Kernels::kRowFloats;
    for (int i = 0; i < kWindowVectors; ++i) {
      const V window = Load(LMP3PolyphaseSynth::D + 32 * block + first + i * kLanes);
      for (int channel = 0; channel < kChannels; ++channel)
        sums[channel][i] += Load(rows[channel] + from + i * kLanes) * window;
    }
  }
  for (int channel = 0; channel < kChannels; ++channel)
    for (int i = 0; i < kWindowVectors; ++i) out[channel][i] = ToSamples(sums[channel][i]);
}

L_LOOP void StoreInterleaved(int* out, VInt left, VInt right) {
  const VInt low = ZipLow(left, right), high = ZipHigh(left, right);
#if L_LANES == 8
  Store(out, __builtin_shufflevector(low, high, 0, 1, 2, 3, 8, 9, 10, 11));
  Store(out + kLanes, __builtin_shufflevector(low, high, 4, 5, 6, 7, 12, 13, 14, 15));
#else
  Store(out, low);
  Store(out + kLanes, high);
#endif
}

L_TARGET void WindowSum(int* out, const float (*left)[LMP3Kernels::kRowFloats],
                        const float (*right)[LMP3Kernels::kRowFloats], int rows) {
  constexpr int kStep = kWindowVectors * kLanes;
  for (int row = 0; row < rows; ++row)
    for (int first = 0; first < 32; first += kStep) {
      if (right) {
        VInt both[2][kWindowVectors];
        SumRow<2>({left[row], right[row]}, first, both);
        for (int i = 0; i < kWindowVectors; ++i, out += 2 * kLanes) StoreInterleaved(out, both[0][i], both[1][i]);
      } else {
        VInt one[1][kWindowVectors];
        SumRow<1>({left[row]}, first, one);
        for (int i = 0; i < kWindowVectors; ++i, out += kLanes) Store(out, one[0][i]);
      }
    }
}

#undef L_SHUFFLE
#undef L_LOOP
