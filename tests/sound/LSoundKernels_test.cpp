#include "sound/kernels/LSoundKernels.h"

#include <gtest/gtest.h>

#include <random>

#include "sound/LRateRows.h"
#include "sound/LdB.h"

namespace {

constexpr int kOffsets = 16, kCounts = 34;
constexpr int kExtremes[] = {0, 1, -1, 0xfff, 0x1000, -0xfff, 524287, -524288, 524288, 2147483647, -2147483647 - 1};
constexpr int kGains[] = {0, 1, 0xfff, 0x1000, 0x7fffff, kUnityGain24, kUnityGain24 + 1, 0x7fffffff, -1};

// Random ints with an extreme one in every third place.
std::vector<int> Ints(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<int> values(count);
  for (std::size_t i = 0; i < count; ++i)
    values[i] = i % 3 ? int(random()) : kExtremes[random() % std::size(kExtremes)];
  return values;
}

// Calls check(other form, offset, count) for every form beside the plain one.
template <class Check>
void ForEveryFormOffsetAndCount(Check check) {
  for (const LSoundKernels* form : UsableKernels().subspan(1))
    for (int offset = 0; offset < kOffsets; ++offset)
      for (int count = 0; count < kCounts; ++count) {
        check(*form, offset, count);
        if (::testing::Test::HasFailure()) return;
      }
}

const LSoundKernels& Plain() { return *UsableKernels()[0]; }

}  // namespace

TEST(LSoundKernels, EveryFormMixesTheSame) {
  ForEveryFormOffsetAndCount([](const LSoundKernels& form, int offset, int count) {
    for (const int gain : kGains)
      for (const int stride : {1, 2, 3}) {
        const std::vector<int> in = Ints(200, 1U + unsigned(offset));
        std::vector<int> plain = Ints(200, 2), other = plain;
        Plain().mixChannel(plain.data() + offset, stride, in.data() + offset, 2, count, gain);
        form.mixChannel(other.data() + offset, stride, in.data() + offset, 2, count, gain);
        ASSERT_EQ(plain, other) << form.name << " offset " << offset << " count " << count << " gain " << gain;
      }
    for (int inChannels = 1; inChannels <= 4; ++inChannels)
      for (int outChannels = 1; outChannels <= kMixLanes; ++outChannels) {
        LMixPlan plan{inChannels, outChannels, {}, {}};
        for (int channel = 0; channel < outChannels; ++channel) {
          plan.source[channel] = (channel * 3 + offset) % inChannels;
          plan.gain24[channel] = kGains[(channel + count) % int(std::size(kGains))];
        }
        const std::vector<int> in =
            Ints(std::size_t(offset) + std::size_t(count) * std::size_t(inChannels), 3);  // no frame more than is asked
        std::vector<int> plain = Ints(300, 4), other = plain;
        Plain().mixFrames(plain.data() + offset, in.data() + offset, count, plan);
        form.mixFrames(other.data() + offset, in.data() + offset, count, plan);
        ASSERT_EQ(plain, other) << form.name << " " << inChannels << " to " << outChannels << " count " << count;
      }
  });
}

TEST(LSoundKernels, EveryFormGainsMeasuresAndConvertsTheSame) {
  ForEveryFormOffsetAndCount([](const LSoundKernels& form, int offset, int count) {
    const std::vector<int> in = Ints(200, 5U + unsigned(offset));
    for (const int gain9 : {0, 1, 256, 513, 0xffff, -3}) {
      std::vector<int> plain = in, other = in;
      Plain().gainQuick(plain.data() + offset, count, gain9);
      form.gainQuick(other.data() + offset, count, gain9);
      ASSERT_EQ(plain, other) << form.name << " offset " << offset << " count " << count;
    }
    ASSERT_EQ(Plain().peak(in.data() + offset, count), form.peak(in.data() + offset, count));
    for (const int stride : {1, 2, 5}) {
      std::uint64_t sums[4] = {1, 2, 1, 2};
      Plain().squares(in.data() + offset, count, stride, sums[0], sums[1]);
      form.squares(in.data() + offset, count, stride, sums[2], sums[3]);
      ASSERT_TRUE(sums[0] == sums[2] && sums[1] == sums[3]) << form.name << " stride " << stride;
    }
    std::vector<int> plain(200), other(200);
    Plain().toDevice(plain.data(), in.data() + offset, count);
    form.toDevice(other.data(), in.data() + offset, count);
    ASSERT_EQ(plain, other);
  });
}

TEST(LSoundKernels, EveryFormFiltersTheSame) {
  ForEveryFormOffsetAndCount([](const LSoundKernels& form, int offset, int count) {
    const std::vector<int> in = Ints(200, 6);
    for (const int stride : {1, 2, 5}) {
      std::vector<std::int16_t> plain(100), other(100);
      Plain().rate->split(plain.data() + offset, in.data() + offset, stride, count, offset);
      form.rate->split(other.data() + offset, in.data() + offset, stride, count, offset);
      ASSERT_EQ(plain, other) << "stride " << stride << " offset " << offset << " count " << count;
    }
  });
  class RateTable final : public LConvertRateBase {
   public:
    using LConvertRateBase::LConvertRateBase;
  };
  for (const auto& [from, to] : {std::pair{44100, 48000}, std::pair{48000, 44100}, std::pair{44100, 22050}}) {
    const RateTable table(from, to, kRateTaps, false, false, LConvertRateBase::Rows::OnRequest);
    LRateRows rows(table);
    for (const bool extreme : {false, true}) {
      std::mt19937 random(8);
      std::vector<std::int16_t> left(200), right(200);
      for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] = static_cast<std::int16_t>(extreme ? (random() % 2 ? 32767 : -32768) : int(random() % 65536) - 32768);
        right[i] = static_cast<std::int16_t>(extreme ? -32768 : int(random() % 65536) - 32768);
      }
      ForEveryFormOffsetAndCount([&](const LSoundKernels& form, int offset, int count) {
        const LRateRun run{&rows, table.Phases(), table.Step(), 80, offset};
        LRateCursor plainEnd{offset, offset * 5, 0}, otherEnd = plainEnd;
        std::vector<int> plain(200), other(200);
        const int made = Plain().rate->stereo(run, plainEnd, left.data(), right.data(), plain.data(), count);
        ASSERT_EQ(form.rate->stereo(run, otherEnd, left.data(), right.data(), other.data(), count), made);
        ASSERT_TRUE(plain == other && plainEnd.index == otherEnd.index && plainEnd.phase == otherEnd.phase &&
                    plainEnd.row == otherEnd.row);
        LRateCursor monoEnd{offset, offset * 5, 0};
        ASSERT_EQ(form.rate->mono(run, monoEnd, right.data(), other.data() + 1, 2, count), made);
        ASSERT_EQ(plain, other) << "mono, offset " << offset << " count " << count;
      });
    }
  }
}
