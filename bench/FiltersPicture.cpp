// Prints what the filters and equalisers do, beside what their laws say: levels at frequencies, the wah's sweep over time.
// Measured with sines of a whole number of turns, at 44100 Hz; the laws' whole-number samples leave small deviations.
#include <cmath>
#include <complex>
#include <cstdio>
#include <functional>
#include <numbers>
#include <vector>

#include "effects/LEffectTypes.h"
#include "effects/LOnePole.h"
#include "effects/LSPEqBand.h"
#include "effects/LSPHighPass.h"
#include "effects/LSPLowPass.h"
#include "effects/LSPParametricEq.h"
#include "effects/LSPWahwah.h"
#include "effects/LSRCFilterIIRBiquad.h"
#include "effects/TEqualizer.h"
#include "effects/TSPEqSimple.h"

namespace {

constexpr int kFrames = kDeckRate;  // one second: frequencies in whole Hz turn wholly
constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kFloorDb = -90;  // below, whole-number samples tell nothing

using Complex = std::complex<double>;
using Law = std::function<double(double hz)>;  // in dB

class Samples final : public LSoundSourceBase {
 public:
  explicit Samples(std::function<double(int)> law) : LSoundSourceBase(kDeckRate, 1, kPeak16), law_(std::move(law)) {}
  void Read(int* out, int frames) override {
    for (int i = 0; i < frames; ++i) out[i] = int(std::lrint(law_(position_++)));
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return kEndless; }
  void Seek(int frame) override { position_ = frame; }

 private:
  std::function<double(int)> law_;
  int position_ = 0;
};

double Db(Complex gain) { return 20 * std::log10(std::abs(gain)); }
Complex Delay(double hz) { return std::polar(1.0, -kTurn * hz / kDeckRate); }

Complex SectionAt(const LBiquadSection& s, double hz) {
  const Complex z = Delay(hz);
  return (s.b0 + s.b1 * z + s.b2 * z * z) / (1.0 + s.a1 * z + s.a2 * z * z);
}

double MeasuredDb(LSoundProcess& process, int hz) {
  constexpr double kLevel = 400000;
  auto input = LSoundSource::Make<Samples>([=](int i) { return kLevel * std::sin(kTurn * hz * i / kDeckRate); });
  LSoundSource source = process.OpenSource(input);
  std::vector<int> out(kFrames);
  source.Read(out.data(), kFrames);  // settles
  source.Read(out.data(), kFrames);
  Complex sum;
  for (int i = 0; i < kFrames; ++i) sum += double(out[std::size_t(i)]) * std::polar(1.0, -kTurn * hz * i / kDeckRate);
  return Db(sum * 2.0 / (kLevel * kFrames));
}

void PrintResponse(const char* title, LSoundProcess& process, const Law& law) {
  std::printf("\n%s\n%8s %10s %10s %10s\n", title, "Hz", "measured", "law", "deviation");
  double worst = 0;
  for (const int hz : {20, 60, 100, 250, 500, 1000, 2000, 4000, 8000, 12000, 16000, 20000}) {
    const double measured = MeasuredDb(process, hz), expected = law(hz);
    const double off = expected < kFloorDb ? 0 : measured - expected;
    worst = std::max(worst, std::abs(off));
    std::printf("%8d %10.3f %10.3f %10.4f\n", hz, measured, expected, off);
  }
  std::printf("largest deviation %.4f dB\n", worst);
}

std::function<double(double)> PeakingLaw(std::vector<LSPEqBandInfo> bands) {
  return [bands = std::move(bands)](double hz) {
    Complex gain = 1;
    for (const LSPEqBandInfo& band : bands) gain *= SectionAt(PeakingSection(band, kDeckRate), hz);
    return Db(gain);
  };
}

void PrintPeaking() {
  std::vector<LSPEqBandInfo> deck, list;
  constexpr int kLevels[] = {12, -6, 9, -24, 6, -12, 3};
  TSPEqSimple simple;
  for (int i = 0; i < TEqualizer::kBands; ++i)
    deck.push_back({TEqualizer::kCentresHz[std::size_t(i)], kLevels[i], TEqualizer::kQ});
  for (int i = 0; i < TSPEqSimple::kBands; ++i) {
    list.push_back({TSPEqSimple::kCentresHz[i], kLevels[i], TSPEqSimple::kQ});
    simple.SetParameterByIndex(i, kLevels[i]);
  }
  LSPParametricEq five(deck);
  PrintResponse("Deck equaliser: 12, -6, 9, -24, 6 dB", five, PeakingLaw(deck));
  PrintResponse("7-Band-Equalizer: 12, -6, 9, -24, 6, -12, 3 dB", simple, PeakingLaw(list));
}

void PrintOnePole() {
  LSPLowPass low;
  PrintResponse("Tiefpass 1600 Hz", low, [](double hz) {
    const double a = LOnePole::Step8(1600, kDeckRate) / 256.0;
    return Db(a / (1.0 - (1 - a) * Delay(hz)));
  });
  for (const int percent : {100, 50}) {
    LSPHighPass high;
    high.SetParameterByIndex(LSPHighPass::Frequency, 200);
    high.SetParameterByIndex(LSPHighPass::Share, percent);
    PrintResponse(percent == 100 ? "Hochpass 200 Hz" : "Hochpass 200 Hz, 50 %", high, [=](double hz) {
      const double a = LOnePole::Step8(200, kDeckRate) / 256.0, share = percent / 100.0;
      return Db(1.0 - share * a * Delay(hz) / (1.0 - (1 - a * share) * Delay(hz)));
    });
  }
}

void PrintCurves() {
  const auto curve = [](const LSPEqBand& band) { return [&band](double hz) { return band.DbAt(hz); }; };
  LSPParametricEqBand bell;
  bell.SetParameterByIndex(LSPParametricEqBand::Level, -24);
  LSPGraphicEqBand graphic;
  LSPEqPointLine line;
  for (int i = 0; i < kEqCurveBands; ++i) {
    graphic.SetParameterByIndex(i, i % 2 ? 6 : -6);
    line.SetParameterByIndex(i, i % 2 ? 6 : -6);
  }
  PrintResponse("Parametrischer EQ: -24 dB at 1000 Hz, one octave", bell, curve(bell));
  PrintResponse("Grafischer EQ: -6, 6, -6, 6, -6, 6, -6 dB", graphic, curve(graphic));
  PrintResponse("Visueller EQ: -6, 6, -6, 6, -6, 6, -6 dB", line, curve(line));
}

void PrintTable() {
  // A Butterworth high-pass of 4 poles at 8000 Hz.
  const double table[] = {1, -2, 1, -0.4542475801634096, 0.08731500560118874,
                          1, -2, 1, -0.6199802267798911, 0.48402288353699097};
  constexpr double kGain = 0.20271577969980312;
  LSPFilterIIRBiquad filter(2, table, kGain);
  PrintResponse("Biquads of a table: two sections, above 8000 Hz", filter, [&](double hz) {
    const LBiquadSection first{table[0], table[1], table[2], table[3], table[4]};
    const LBiquadSection second{table[5], table[6], table[7], table[8], table[9]};
    return Db(kGain * SectionAt(first, hz) * SectionAt(second, hz));
  });
}

// A sine is loudest when the centre passes it: on the way up, and on the way down.
void PrintSweep() {
  constexpr int kWindow = kDeckRate / 100, kHalf = kFrames / 2;
  LSPWahwah wah;
  wah.SetParameterByIndex(LSPWahwah::Frequency, 1000);
  wah.SetParameterByIndex(LSPWahwah::Depth, 60);
  wah.SetParameterByIndex(LSPWahwah::Centre, 1000);
  wah.SetParameterByIndex(LSPWahwah::Resonance, 95);
  std::printf("\nWah-Wah 1 Hz, 60 %% around 1000 Hz: when the centre passes a frequency, in ms\n");
  std::printf("%8s %10s %10s %10s %10s %10s\n", "Hz", "up", "law", "down", "law", "late");
  for (int hz = 500; hz <= 1500; hz += 100) {
    auto input = LSoundSource::Make<Samples>([=](int i) { return 20000 * std::sin(kTurn * hz * i / kDeckRate); });
    LSoundSource source = wah.OpenSource(input);
    std::vector<int> out(kFrames);
    for (int turn = 0; turn < 2; ++turn) source.Read(out.data(), kFrames);
    int loudest[2] = {};
    for (int half = 0; half < 2; ++half) {
      double most = 0;
      for (int at = half * kHalf; at + kWindow < (half + 1) * kHalf; at += kWindow / 40) {
        Complex sum;
        for (int i = at; i < at + kWindow; ++i)
          sum += double(out[std::size_t(i)]) * std::polar(1.0, -kTurn * hz * i / kDeckRate);
        if (std::abs(sum) <= most) continue;
        most = std::abs(sum);
        loudest[half] = at + kWindow / 2;
      }
    }
    const double up = loudest[0] * 1000.0 / kDeckRate, down = loudest[1] * 1000.0 / kDeckRate;
    const double law = (hz - 400) / 1200.0 * 500;
    std::printf("%8d %10.1f %10.1f %10.1f %10.1f %10.1f\n", hz, up, law, down, 1000 - law,
                (up - law + down - (1000 - law)) / 2);
  }
  std::printf("It is late because the filter takes 1 / (pi q f) to ring up, 6 ms at 500 Hz and 2 ms at 1500 Hz.\n");
}

void PrintWah() {
  LSPWahwah still;
  still.SetParameterByIndex(LSPWahwah::Depth, 0);
  PrintResponse("Wah-Wah at rest: 500 Hz, resonance 75 %", still, [&](double hz) {
    const LWahSweep sweep = still.Sweep(kDeckRate);
    const double g = 2 * std::sin(std::numbers::pi * sweep.lowHz / kDeckRate);
    const Complex z = Delay(hz), d = 1.0 - z;
    return Db(g * d / (d * d + g * sweep.damping * z * d + g * g * z));
  });

  PrintSweep();
}

}  // namespace

int main() {
  PrintPeaking();
  PrintOnePole();
  PrintCurves();
  PrintTable();
  PrintWah();
  return 0;
}
