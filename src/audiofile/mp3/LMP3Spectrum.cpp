#include "audiofile/mp3/LMP3Spectrum.h"

#include <algorithm>

using namespace LMP3BandTables;

namespace {

constexpr int kGainOfOne = 210;       // global_gain of factor 1, in quarters of a power of 2
constexpr int kSubblockQuarters = 8;  // of one step of a window's gain
constexpr float kHalfRoot = 0.70710678118654752440F;

int LongBandsOf(const LMP3Granule& granule, int table) {
  if (!granule.IsShort()) return kLongBands;
  if (!granule.IsMixed()) return 0;
  const short* const starts = sfb_start_long[table];
  return int(std::find(starts, starts + kLongBands, MixedLongLines(table)) - starts);
}

// Where the lines of a band stand: `stride` apart.
struct Lines {
  int start, stride, end;
};
Lines LinesOfLong(int table, int band) { return {sfb_start_long[table][band], 1, sfb_start_long[table][band + 1]}; }
Lines LinesOfShort(int table, int band, int window) {
  return {3 * sfb_start_short[table][band] + window, 3, 3 * sfb_start_short[table][band + 1]};
}

bool IsSilent(const float* lines, const Lines& band) {
  for (int i = band.start; i < band.end; i += band.stride)
    if (lines[i] != 0) return false;
  return true;
}

class JointStereo {
 public:
  JointStereo(const LMP3Header& header, const LMP3Granule& right, const LMP3ScaleFactors& factors,
              LMP3Spectrum (&spectra)[2])
      : header_(header), right_(right), factors_(factors), spectra_(spectra), table_(header.BandTable()) {}

  // From the highest band down: intensity holds above the right channel's last line.
  void Process() {
    bool isSilent = true;
    if (right_.IsShort()) {
      bool isWindowSilent[3] = {true, true, true};
      for (int band = kShortBands - 1; band >= (right_.IsMixed() ? kMixedFirstShortBand : 0); --band) {
        const int from = std::min(band, kShortBands - 2);  // the last band has no factor of its own
        for (int window = 0; window < 3; ++window)
          ProcessBand(LinesOfShort(table_, band, window), factors_.shortBands[from][window],
                      factors_.shortLimits[from][window], isWindowSilent[window]);
      }
      isSilent = isWindowSilent[0] && isWindowSilent[1] && isWindowSilent[2];
    }
    for (int band = LongBandsOf(right_, table_) - 1; band >= 0; --band) {
      const int from = std::min(band, kLongBands - 2);
      ProcessBand(LinesOfLong(table_, band), factors_.longBands[from], factors_.longLimits[from], isSilent);
    }
  }

 private:
  void ProcessBand(const Lines& band, int position, int limit, bool& isSilent) {
    float* const left = spectra_[0].lines;
    float* const right = spectra_[1].lines;
    isSilent = isSilent && IsSilent(right, band);
    const int none = header_.IsLowRate() ? limit : LMP3LookupTables::kNoPosition;
    if (isSilent && position < none) {
      const auto [leftRatio, rightRatio] = Ratios(position);
      for (int i = band.start; i < band.end; i += band.stride) {
        right[i] = left[i] * rightRatio;
        left[i] *= leftRatio;
      }
    } else if (header_.HasMidSide()) {
      for (int i = band.start; i < band.end; i += band.stride) {
        const float middle = left[i] * kHalfRoot, side = right[i] * kHalfRoot;
        left[i] = middle + side;
        right[i] = middle - side;
      }
    }
  }

  std::pair<float, float> Ratios(int position) const {
    const LMP3LookupTables& tables = GetMp3LookUpTable();
    if (!header_.IsLowRate()) return {tables.Kl[position], tables.Kr[position]};
    const float ratio = tables.lowRateRatios[right_.scaleFactorBits & 1][position];
    return position % 2 == 1 ? std::pair{ratio, 1.0F} : std::pair{1.0F, ratio};
  }

  const LMP3Header& header_;
  const LMP3Granule& right_;
  const LMP3ScaleFactors& factors_;
  LMP3Spectrum (&spectra_)[2];
  int table_;
};

}  // namespace

void LMP3Spectrum::Clear() {
  std::fill_n(lines, kLines, 0.0F);
  count = 0;
}

void LMP3Spectrum::Requantise(const LMP3Kernels& kernels, const LMP3Granule& granule, const LMP3ScaleFactors& factors,
                              int table) {
  const LMP3LookupTables& tables = GetMp3LookUpTable();
  const int shift = granule.hasLargeSteps ? 2 : 1;  // a scale factor's step is a whole or half power of 2
  const int overall = granule.globalGain - kGainOfOne;

  float gains[kLongBands];
  const int longs = LongBandsOf(granule, table);
  int bands = 0;
  for (; bands < longs && sfb_start_long[table][bands] < count; ++bands) {
    const int factor = factors.longBands[bands] + (factors.hasPreflag ? pretab[bands] : 0);
    gains[bands] = tables.Gain(overall - (factor << shift));
  }
  kernels.scaleBands(lines, sfb_start_long[table], gains, bands);
  if (!granule.IsShort()) return;

  float band[kLines];
  for (int number = granule.IsMixed() ? kMixedFirstShortBand : 0; number < kShortBands; ++number) {
    const int start = 3 * sfb_start_short[table][number];
    const int width = sfb_start_short[table][number + 1] - sfb_start_short[table][number];
    if (start >= count) break;
    std::copy_n(lines + start, 3 * width, band);
    for (int window = 0; window < 3; ++window) {
      const float gain = tables.Gain(overall - kSubblockQuarters * granule.subblockGains[window] -
                                     (factors.shortBands[number][window] << shift));
      for (int i = 0; i < width; ++i) lines[start + 3 * i + window] = band[window * width + i] * gain;
    }
    if (start + 3 * width >= count) {
      count = start + 3 * width;
      break;
    }
  }
}

void LMP3JointStereo(const LMP3Kernels& kernels, const LMP3Header& header, const LMP3Granule& right,
                     const LMP3ScaleFactors& rightFactors, LMP3Spectrum (&spectra)[2]) {
  const int count = std::max(spectra[0].count, spectra[1].count);
  if (header.HasIntensity())
    JointStereo(header, right, rightFactors, spectra).Process();
  else if (header.HasMidSide())
    kernels.midSide(spectra[0].lines, spectra[1].lines, count);
  spectra[0].count = spectra[1].count = count;
}
