// What key lock does to a sound, measured for this program and beside it for other time stretchers.
//   key_lock_quality [TRACK]   the optional sound file is stretched as well
// tones     16 steady tones from 60 Hz to 12 kHz: error of frequency in cents and of level in dB, and what else than the
//           tone came out, in dB below it
// semitone  440 and 466.16 Hz together: error of frequency and level
// drums     bursts with an attack of one sample over a bass drum: 10 to 90 % rise of the envelope in ms (a bare burst has
//           about 3, being noise), place of the attack against the asked time: mean and spread in ms; level in dB
// stereo    the same sound in both channels: what differs, in dB below it; tones with a fixed 60 degrees between the
//           channels: mean error of that and its wander over time, in degrees
// drift     how much the place of the attacks moves over two minutes, in ms (the mean of 60 bursts, see spread)
// track     level and third octaves; side against middle is what the left and right channels do not share
#include <complex>
#include <cstdio>
#include <numbers>

#include "KeyLockEngines.h"
#include "audiofile/TSourceOpen.h"

namespace {

using Complex = std::complex<double>;
constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kSpeeds[] = {0.5, 0.8, 0.92, 1.08, 1.2, 1.5};

struct Engine {
  const char* name;
  StereoTrack (*stretch)(const StereoTrack& track, double speed);
};

constexpr Engine kEngines[] = {{"Tavi", StretchTavi},
                               {"Rubber Band faster", StretchRubberBandFaster},
                               {"Rubber Band finer", StretchRubberBandFiner},
                               {"SoundTouch", StretchSoundTouch}};

double Decibels(double ratio) { return 20 * std::log10(std::max(ratio, 1e-10)); }

double Rms(const std::vector<float>& samples, std::size_t from = 0) {
  double sum = 0;
  for (std::size_t i = from; i < samples.size(); ++i) sum += double(samples[i]) * double(samples[i]);
  return std::sqrt(sum / double(std::max<std::size_t>(samples.size() - from, 1)));
}

// Amplitude and phase of a tone over `frames` under a Hann window.
Complex ToneAt(const std::vector<float>& samples, std::size_t from, std::size_t frames, double hz) {
  Complex sum = 0;
  for (std::size_t i = 0; i < frames && from + i < samples.size(); ++i) {
    const double window = 1 - std::cos(kTurn * (double(i) + 0.5) / double(frames));
    sum += window * double(samples[from + i]) * std::polar(1.0, -kTurn * hz * double(from + i) / kDeckRate);
  }
  return sum * (2.0 / double(frames));
}

struct ToneError {
  double cents, decibels, residueDb;
};

ToneError MeasureTone(const std::vector<float>& samples, double hz, double amplitude) {
  const std::size_t frames = samples.size() / 3, first = samples.size() / 4, step = 400;
  double turned = 0;  // over short steps, so that no whole turn is missed
  for (std::size_t at = first; at < first + frames; at += step)
    turned += std::arg(ToneAt(samples, at + step, frames / 2, hz) / ToneAt(samples, at, frames / 2, hz));
  const double steps = std::ceil(double(frames) / double(step));
  const double found = hz + turned / kTurn * kDeckRate / (steps * double(step));
  const Complex tone = ToneAt(samples, first, frames, found);
  double rest = 0;
  for (std::size_t i = first; i < first + frames; ++i) {
    const double wanted = (tone * std::polar(1.0, kTurn * found * double(i) / kDeckRate)).real();
    rest += (double(samples[i]) - wanted) * (double(samples[i]) - wanted);
  }
  return {1200 * std::log2(found / hz), Decibels(std::abs(tone) / amplitude),
          Decibels(std::sqrt(2 * rest / double(frames)) / std::abs(tone))};
}

StereoTrack Tones(const std::vector<double>& hz, double seconds, double amplitude, double turnBetweenChannels = 0) {
  StereoTrack track{std::size_t(seconds * kDeckRate)};
  for (std::size_t i = 0; i < track.Frames(); ++i)
    for (const double tone : hz)
      for (std::size_t c = 0; c < 2; ++c)
        track.channel[c][i] +=
            float(amplitude * std::sin(kTurn * (tone * double(i) / kDeckRate + 0.1) + double(c) * turnBetweenChannels));
  return track;
}

// Times that fall on no grid of an engine's.
double BurstSeconds(int burst) { return 0.31 + burst * 0.46371; }

StereoTrack Drums(double seconds) {
  StereoTrack track{std::size_t(seconds * kDeckRate)};
  unsigned seed = 7;
  for (int burst = 0; BurstSeconds(burst) + 0.4 < seconds; ++burst) {
    const auto start = std::size_t(BurstSeconds(burst) * kDeckRate);
    for (std::size_t i = 0; i < 13000; ++i) {
      const double t = double(i) / kDeckRate;
      seed = seed * 1664525U + 1013904223U;
      const double snare = 0.5 * std::exp(-t / 0.03) * (int(seed) / 2147483648.0);
      const double kick = 0.3 * std::exp(-t / 0.1) * std::sin(kTurn * (50 * t + 3 * (1 - std::exp(-t / 0.03))));
      for (auto& channel : track.channel) channel[start + i] += float(snare + kick);
    }
  }
  return track;
}

struct BurstFigures {
  double riseMs, placeMs, spreadMs, firstMs, lastMs;
};

BurstFigures MeasureBursts(const std::vector<float>& samples, double speed) {
  constexpr std::size_t kSmooth = 22;  // half a millisecond
  double rise = 0, place = 0, squares = 0, first = 0, last = 0;
  const double seconds = double(samples.size()) / kDeckRate * speed;
  int count = 0, all = 0;
  while (BurstSeconds(all) + 0.5 < seconds) ++all;
  const int atEnds = std::min(all / 2, 60);
  for (int burst = 1; burst < all; ++burst) {
    const double expected = BurstSeconds(burst) / speed * kDeckRate;
    const std::size_t from = std::size_t(expected) - 2600, length = 5200;
    std::vector<double> envelope(length);
    for (std::size_t i = 0; i < length; ++i) {
      double sum = 0;
      for (std::size_t j = 0; j < kSmooth; ++j)
        sum += std::pow(double(samples[std::min(from + i + j, samples.size() - 1)]), 2);
      envelope[i] = std::sqrt(sum / kSmooth);
    }
    const auto top = std::max_element(envelope.begin(), envelope.end());
    const auto passes = [&](double share) {  // the last time it is below, before the top
      auto at = top;
      while (at != envelope.begin() && *at > share * *top) --at;
      return double(at - envelope.begin());
    };
    const double late = (double(from) + passes(0.5) + kSmooth / 2.0 - expected) * 1000 / kDeckRate;
    rise += (passes(0.9) - passes(0.1)) * 1000 / kDeckRate;
    place += late;
    squares += late * late;
    if (burst <= atEnds) first += late / atEnds;
    if (burst >= all - atEnds) last += late / atEnds;
    ++count;
  }
  place /= count;
  return {rise / count, place, std::sqrt(std::max(squares / count - place * place, 0.0)), first, last};
}

void PrintTones(const Engine& engine, double speed) {
  constexpr int kTones = 16;
  constexpr double kAmplitude = 0.5;
  ToneError worst{}, mean{};
  worst.residueDb = -200;
  for (int tone = 0; tone < kTones; ++tone) {
    const double hz = 60 * std::pow(200, tone / (kTones - 1.0));
    const ToneError error = MeasureTone(engine.stretch(Tones({hz}, 1.2, kAmplitude), speed).channel[0], hz, kAmplitude);
    worst.cents = std::max(worst.cents, std::abs(error.cents));
    worst.decibels = std::max(worst.decibels, std::abs(error.decibels));
    worst.residueDb = std::max(worst.residueDb, error.residueDb);
    mean.cents += std::abs(error.cents) / kTones;
    mean.decibels += error.decibels / kTones;
    mean.residueDb += error.residueDb / kTones;
  }
  const std::vector<double> pair{440, 440 * std::exp2(1.0 / 12)};
  const StereoTrack both = engine.stretch(Tones(pair, 4, 0.25), speed);
  const ToneError low = MeasureTone(both.channel[0], pair[0], 0.25), high = MeasureTone(both.channel[0], pair[1], 0.25);
  std::printf("| %-18s | %4.2f | %8.3f %8.3f | %6.2f %6.2f | %6.1f %6.1f | %7.3f %7.3f | %6.2f %6.2f |\n", engine.name,
              speed, mean.cents, worst.cents, mean.decibels, worst.decibels, mean.residueDb, worst.residueDb, low.cents,
              high.cents, low.decibels, high.decibels);
}

void PrintDrums(const Engine& engine, double speed) {
  const StereoTrack in = Drums(10), out = engine.stretch(in, speed);
  const BurstFigures figures = MeasureBursts(out.channel[0], speed);
  // The decays are stretched, so that the same mean level is the right one.
  std::printf("| %-18s | %4.2f | %6.2f | %7.2f %7.2f | %6.2f |\n", engine.name, speed, figures.riseMs, figures.placeMs,
              figures.spreadMs, Decibels(Rms(out.channel[0]) / Rms(in.channel[0])));
}

void PrintStereo(const Engine& engine, double speed) {
  StereoTrack common = Drums(4);
  const StereoTrack chord = Tones({220.5, 557.3, 1318.9}, 4, 0.1);
  for (std::size_t c = 0; c < 2; ++c)
    for (std::size_t i = 0; i < common.Frames(); ++i) common.channel[c][i] += chord.channel[c][i];
  const StereoTrack same = engine.stretch(common, speed);
  std::vector<float> difference(same.Frames());
  for (std::size_t i = 0; i < difference.size(); ++i) difference[i] = same.channel[0][i] - same.channel[1][i];

  const std::vector<double> hz{220.5, 557.3, 1318.9};
  const StereoTrack turned = engine.stretch(Tones(hz, 8, 0.2, kTurn / 6), speed);
  double error = 0, wander = 0;
  for (const double tone : hz) {
    double low = 1e9, high = -1e9, sum = 0;
    int count = 0;
    for (std::size_t at = kDeckRate; at + kDeckRate < turned.Frames(); at += 8820) {
      const Complex ratio = ToneAt(turned.channel[1], at, 8820, tone) / ToneAt(turned.channel[0], at, 8820, tone);
      const double off = std::arg(ratio * std::polar(1.0, -kTurn / 6)) * 360 / kTurn;
      low = std::min(low, off);
      high = std::max(high, off);
      sum += std::abs(off);
      ++count;
    }
    error += sum / count / double(hz.size());
    wander = std::max(wander, high - low);
  }
  std::printf("| %-18s | %4.2f | %7.1f | %6.1f %6.1f |\n", engine.name, speed,
              Decibels(Rms(difference) / Rms(same.channel[0])), error, wander);
}

void PrintDrift(const Engine& engine, const StereoTrack& drums, double speed) {
  const StereoTrack out = engine.stretch(drums, speed);
  const BurstFigures figures = MeasureBursts(out.channel[0], speed);
  std::printf("| %-18s | %5.3f | %8.2f | %8zu | %8zu |\n", engine.name, speed, figures.lastMs - figures.firstMs,
              out.Frames(), StretchedFrames(drums, speed));
}

// Power in third-octave bands from 63 Hz on, by transforms of 4096 frames: coarse at the low end, but alike for all.
std::vector<double> Bands(const std::vector<float>& samples) {
  constexpr std::size_t kBits = 12, kSize = 1 << kBits;
  LFFT transform(kBits);
  LAlignedDoubles in(kSize), re(kSize), im(kSize);
  std::vector<double> bands(24);
  for (std::size_t at = 0; at + kSize < samples.size(); at += kSize) {
    for (std::size_t i = 0; i < kSize; ++i)
      in[i] = double(samples[at + i]) * (1 - std::cos(kTurn * double(i) / double(kSize)));
    transform.DoRealFFT(in.data(), re.data(), im.data());
    for (std::size_t k = 4; k < kSize / 2; ++k) {
      const auto band = std::size_t(std::lround(3 * std::log2(double(k) * kDeckRate / kSize / 63)));
      if (band < bands.size()) bands[band] += (re[k] * re[k] + im[k] * im[k]) / double(samples.size());
    }
  }
  return bands;
}

void PrintTrack(const Engine& engine, const StereoTrack& track, double speed) {
  const StereoTrack out = engine.stretch(track, speed);
  const std::vector<double> before = Bands(track.channel[0]), after = Bands(out.channel[0]);
  double worst = 0, mean = 0;
  for (std::size_t band = 0; band < before.size(); ++band) {
    const double change = 10 * std::log10((after[band] + 1e-12) / (before[band] + 1e-12));
    worst = std::abs(change) > std::abs(worst) ? change : worst;
    mean += std::abs(change) / double(before.size());
  }
  const auto width = [](const StereoTrack& sound) {  // side against middle
    double side = 0, middle = 0;
    for (std::size_t i = 0; i < sound.Frames(); ++i) {
      side += std::pow(double(sound.channel[0][i]) - double(sound.channel[1][i]), 2);
      middle += std::pow(double(sound.channel[0][i]) + double(sound.channel[1][i]), 2);
    }
    return 10 * std::log10((side + 1e-12) / (middle + 1e-12));
  };
  std::printf("| %-18s | %4.2f | %6.2f | %6.2f %6.2f | %7.2f %7.2f |\n", engine.name, speed,
              Decibels(Rms(out.channel[0]) / Rms(track.channel[0])), mean, worst, width(track), width(out));
}

template <class Print>
void Table(const char* heading, Print print) {
  std::printf("\n%s\n", heading);
  for (const double speed : kSpeeds)
    for (const Engine& engine : kEngines) print(engine, speed);
}

}  // namespace

int main(int argc, char** argv) {
  std::printf("rise of a bare burst: %.2f ms\n", MeasureBursts(Drums(10).channel[0], 1).riseMs);
  Table("tones and semitone: cents mean, worst | level dB mean, worst | residue dB mean, worst | cents | level dB",
        PrintTones);
  Table("drums: rise ms | place ms, spread ms | level dB", PrintDrums);
  Table("stereo: difference dB | error of 60 degrees: mean, wander", PrintStereo);
  std::printf("\ndrift: ms over two minutes | frames | asked\n");
  const StereoTrack drums = Drums(120);
  for (const Engine& engine : kEngines) PrintDrift(engine, drums, 1.083);

  if (argc < 2) return 0;
  LSoundSource source;
  if (!TSourceOpenWithConvert(source, argv[1])) return 1;
  const int frames = std::min(source.GetEndSample(), 20 * kDeckRate);
  StereoTrack track{std::size_t(frames)};
  std::vector<int> samples(std::size_t(frames) * 2);
  source.Read(samples.data(), frames);
  for (std::size_t i = 0; i < track.Frames(); ++i)
    for (std::size_t c = 0; c < 2; ++c) track.channel[c][i] = float(samples[2 * i + c]) / kFullScale;
  Table("track: level dB | change of a third octave: mean, worst dB | side against middle dB: before, after",
        [&](const Engine& engine, double speed) { PrintTrack(engine, track, speed); });
}
