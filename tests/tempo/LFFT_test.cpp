#include "tempo/LFFT.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "sound/LSoundSource.h"
#include "support/EngineData.h"
#include "tempo/LFFTFrame.h"

namespace {

using Points = std::vector<std::complex<double>>;

Points NoisePoints(std::size_t size) {
  const std::vector<int> noise = Engine::Noise(5, 1 << 20, 2 * size);
  Points points;
  for (std::size_t i = 0; i < size; ++i) points.emplace_back(noise[2 * i] / 1048576.0, noise[2 * i + 1] / 1048576.0);
  return points;
}

// By the definition.
Points DirectTransform(const Points& in) {
  Points turns, out(in.size());
  for (std::size_t i = 0; i < in.size(); ++i)
    turns.push_back(std::polar(1.0, -2 * std::numbers::pi * double(i) / double(in.size())));
  for (std::size_t k = 0; k < in.size(); ++k)
    for (std::size_t i = 0; i < in.size(); ++i) out[k] += in[i] * turns[k * i % in.size()];
  return out;
}

struct Arrays {
  explicit Arrays(const Points& points) : re(points.size()), im(points.size()) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      re[i] = points[i].real();
      im[i] = points[i].imag();
    }
  }
  LAlignedDoubles re, im;
};

Points PointsOf(const Arrays& arrays) {
  Points points;
  for (std::size_t i = 0; i < arrays.re.size(); ++i) points.emplace_back(arrays.re[i], arrays.im[i]);
  return points;
}

// The largest distance over the first `count` points.
double Distance(const Arrays& got, const Points& wanted, std::size_t count) {
  double largest = 0;
  for (std::size_t i = 0; i < count; ++i)
    largest = std::max(largest, std::abs(std::complex<double>(got.re[i], got.im[i]) - wanted[i]));
  return largest;
}

}  // namespace

TEST(LFFT, CountsBitsAsComputed) {
  const EngineCase& data = Engine::Case("vocoder/bits");
  std::vector<int> bits;
  for (const int n : data.In("n")) bits.push_back(int(LFFT::GetBits(static_cast<unsigned long>(n))));
  EXPECT_EQ(bits, data.Out("bits"));
}

TEST(LFFT, EveryFormEqualsTheDefinition) {
  constexpr double kBound = 1e-11;  // of noise in -1..1
  for (unsigned long bits = 3; bits <= 11; ++bits) {
    SCOPED_TRACE(bits);
    LFFT transform(bits), scalar(bits, *UsableTempoKernels().front());
    const std::size_t size = transform.Size();
    const Points in = NoisePoints(size), wanted = DirectTransform(in);

    Arrays forward(in), sameBits(in), plain(in);
    transform.DoFFT(forward.re.data(), forward.im.data());
    EXPECT_LT(Distance(forward, wanted, size), kBound);
    scalar.DoFFT(sameBits.re.data(), sameBits.im.data());
    EXPECT_EQ(Distance(sameBits, PointsOf(forward), size), 0);
    transform.DoFFTNoOpt(plain.re.data(), plain.im.data());
    EXPECT_LT(Distance(plain, wanted, size), kBound);

    Arrays quarter = Arrays(wanted);
    transform.DoInverseQuarter(quarter.re.data(), quarter.im.data());
    Points scaled = in;
    for (auto& point : scaled) point *= double(size);
    EXPECT_LT(Distance(quarter, scaled, size / 4), 1e3 * kBound);
    transform.DoInverseFFT(forward.re.data(), forward.im.data());
    EXPECT_LT(Distance(forward, in, size), kBound);

    Points real = in;
    for (auto& point : real) point = point.real();
    const Arrays reals(real);
    Arrays bins(Points(size / 2 + 1));
    transform.DoRealFFT(reals.re.data(), bins.re.data(), bins.im.data());
    EXPECT_LT(Distance(bins, DirectTransform(real), size / 2 + 1), kBound);
    scalar.DoRealFFT(reals.re.data(), sameBits.re.data(), sameBits.im.data());
    EXPECT_EQ(Distance(sameBits, PointsOf(bins), size / 2 + 1), 0);
  }
}

TEST(LFFT, KernelsGiveTheSameBits) {
  LFFT transform(11);
  const auto made = [&](const LTempoKernels& kernels) {
    std::vector<double> all;
    const auto keep = [&](const LAlignedDoubles& array) { all.insert(all.end(), array.data(), array.data() + 1024); };
    Arrays data(NoisePoints(2052)), other(NoisePoints(2052)), joined(Points(2052));
    const std::vector<int> samples = Engine::Noise(9, kFullScale, 3 * 2048);
    const LHanningWindow window(2048);
    kernels.loadWindowed({data.re.data(), data.im.data()}, samples.data() + 1, 3, 2048, window.data(), window.data());
    keep(data.re);
    LAlignedDoubles magnitude(1024), phase(1024), cross(1024), frequencies(1024);
    kernels.polar({data.re.data(), data.im.data()}, 1024, {magnitude.data(), phase.data(), cross.data()});
    kernels.frequencies(frequencies.data(), phase.data(), cross.data(), 1024, 277);
    kernels.rebuild({other.re.data(), other.im.data()}, magnitude.data(), cross.data(), 1024);
    kernels.joinReal({joined.re.data(), joined.im.data()}, {data.re.data(), data.im.data()},
                     {other.re.data(), other.im.data()}, 1024);
    LAlignedDoubles unwrapped(1024);
    kernels.unwrap(unwrapped.data(), phase.data(), 1024);
    std::vector<int> peaks(1024);
    const int count = kernels.peaks(peaks.data(), magnitude.data(), 1023, 1e6);  // a tail of less than a vector
    all.insert(all.end(), peaks.begin(), peaks.begin() + count);
    for (const auto* array : {&unwrapped, &magnitude, &phase, &cross, &frequencies, &other.re, &other.im, &joined.re})
      keep(*array);
    return all;
  };
  const auto forms = UsableTempoKernels();
  const std::vector<double> wanted = made(*forms.front());
  for (const LTempoKernels* form : forms) EXPECT_TRUE(made(*form) == wanted) << form->name;
}

// Magnitude and phase of points all around the circle, and the way back with the phase driven up over many turns.
TEST(LFFT, PhasesAgreeWithTheLibrary) {
  constexpr int kBins = 1024;
  for (const LTempoKernels* form : UsableTempoKernels()) {
    SCOPED_TRACE(form->name);
    Arrays data(Points(2 * kBins + 4)), back(Points(kBins + 4));
    LAlignedDoubles magnitude(kBins), phase(kBins), cross(kBins);
    for (std::size_t k = 1; k < kBins; ++k) {
      const double angle = double(k) / 512 * std::numbers::pi - std::numbers::pi,
                   length = std::exp2(double(k % 40) - 20);
      data.re[k] = data.re[2 * kBins - k] = length * std::cos(angle);
      data.im[k] = length * std::sin(angle);
      data.im[2 * kBins - k] = -data.im[k];
    }
    form->polar({data.re.data(), data.im.data()}, kBins, {magnitude.data(), phase.data(), cross.data()});
    EXPECT_EQ(phase[0], 0);  // of nothing
    for (std::size_t k = 1; k < kBins; ++k) {
      EXPECT_NEAR(phase[k], std::atan2(data.im[k], data.re[k]), 1e-13) << k;
      EXPECT_NEAR(magnitude[k] / std::hypot(data.re[k], data.im[k]), 1, 1e-15) << k;
    }
    for (const double far : {0.0, 1e3, -1e6}) {
      for (std::size_t k = 0; k < kBins; ++k) {
        phase[k] = far + double(k) / 64;
        magnitude[k] = 1;
      }
      form->rebuild({back.re.data(), back.im.data()}, magnitude.data(), phase.data(), kBins);
      for (std::size_t k = 0; k < kBins; ++k)
        EXPECT_NEAR(std::abs(std::complex(back.re[k], back.im[k]) - std::polar(1.0, phase[k])), 0, 5e-13) << far;
    }
  }
}

TEST(LFFTWindow, HasTheComputedTables) {
  const EngineCase& data = Engine::Case("vocoder/window/31");
  const LHanningWindow hanning(31);
  const LHammingWindow hamming(31);
  const LCosineWindow cosine(31);
  const std::pair<const char*, const LFFTWindow*> windows[] = {
      {"hanning", &hanning}, {"hamming", &hamming}, {"cosine", &cosine}};
  for (const auto& [name, window] : windows) {
    const auto wanted = data.Out<double>(name);
    for (std::size_t i = 0; i < wanted.size(); ++i) EXPECT_NEAR((*window)[i], wanted[i], 1e-14) << name << i;
  }
}

TEST(LFFTFrame, LoadsShiftsAndMirrors) {
  const LHanningWindow window(4);  // 0, 0.5, 1, 0.5, but for rounding
  LFFTFrame frame(4);
  const auto points = [&](const double* data) {
    std::vector<int> rounded;
    std::transform(data, data + 4, std::back_inserter(rounded), [](double value) { return int(std::lround(value)); });
    return rounded;
  };
  const int stereo[] = {1, 10, 2, 20, 3, 30, 4, 40};
  frame.LoadRealSamples(stereo, 4, window, 2, 1);
  EXPECT_EQ(points(frame.re()), (std::vector<int>{0, 10, 30, 20}));
  frame.ShiftHalf(4);
  EXPECT_EQ(points(frame.re()), (std::vector<int>{30, 20, 0, 10}));
  frame.im()[1] = 7;
  frame.MirrorTopHalf(4);
  EXPECT_EQ(points(frame.re()), (std::vector<int>{30, 20, 0, 20}));
  EXPECT_EQ(points(frame.im()), (std::vector<int>{0, 7, 0, -7}));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(frame.re()) % 16, 0U);
}
