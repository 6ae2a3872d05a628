#include "tempo/LSPVarPitchShift.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

double Constant(int, double, void* user) { return *static_cast<double*>(user); }

LSoundSource OpenCase(const EngineCase& data) {
  LSoundSource input(NewTestSource(data));
  static double two = 2;
  if (data.Text("points").empty()) return LSPVarPitchShift(Constant, &two).OpenSource(input);
  std::vector<LPSPoint> points;
  std::stringstream text(data.Text("points"));
  LPSPoint point;
  for (char colon; text >> point.inputFrame >> colon >> point.ratio;) points.push_back(point);
  return LSPVarPitchShift(points, data.Int("resolution")).OpenSource(input);
}

LSoundSource WithRatio(double& ratio, int frames, int channels = 1) {
  LSoundSource input(new TestSource(Engine::Noise(41, 500000, std::size_t(frames) * std::size_t(channels)), 44100,
                                    static_cast<unsigned char>(channels)));
  return LSPVarPitchShift(Constant, &ratio).OpenSource(input);
}

}  // namespace

TEST(LSPVarPitchShift, RunsTheComputedScripts) {
  for (const EngineCase* data : Engine::CasesBelow("speed/var/")) {
    LSoundSource source = OpenCase(*data);
    const ScriptResult result = RunSourceScript(*data, source);
    const std::vector<int> wanted = data->Out("samples");
    ASSERT_EQ(result.samples.size(), wanted.size()) << data->id;
    for (std::size_t i = 0; i < wanted.size(); ++i)
      ASSERT_NEAR(result.samples[i], wanted[i], 1) << data->id << " at " << i;
    EXPECT_EQ(result.ints, data->Out("ints")) << data->id;
  }
}

TEST(LSPVarPitchShift, HoldsTheRatioBeforeTheFirstAndAfterTheLastPoint) {
  LSoundSource input(new TestSource({}, 44100, 1));
  LSRCVarPitchShift line(input, {{100, 2}, {200, 1}, {200, 3}}, 10, nullptr, nullptr);
  LSRCVarPitchShift none(input, {}, 1, nullptr, nullptr);
  const auto ratio = [](LSRCVarPitchShift& of, double at) { return of.GetPitchChangeRatio(0, at, &of); };
  for (const int turn : {0, 1}) {  // forward and back, past the remembered segment
    EXPECT_EQ(ratio(line, 50), 2) << turn;
    EXPECT_EQ(ratio(line, 159.9), 1.5) << turn;  // at 150
    EXPECT_EQ(ratio(line, 200), 3) << turn;
    EXPECT_EQ(ratio(line, 1e9), 3) << turn;
  }
  EXPECT_EQ(ratio(none, 7), 1);
}

TEST(LSPVarPitchShift, AnyBlockSizeAndAnyRatioIsBounded) {
  for (double ratio : {1.0, 0.37, 1.91, 40.0, 5000.0, 1e5, HUGE_VAL, 0.0, -4.0, std::nan("")}) {
    LSoundSource whole = WithRatio(ratio, 20000, 2), cut = WithRatio(ratio, 20000, 2);
    std::vector<int> wanted(2 * 9000), heard(wanted.size());
    const AllocationGuard guard;
    whole.Read(wanted.data(), 9000);
    for (int at = 0, frames = 1; at < 9000; at += frames, frames = std::min(frames * 3 % 2003, 9000 - at))
      cut.Read(heard.data() + 2 * at, frames);
    EXPECT_EQ(guard.Count(), 0) << ratio;
    EXPECT_EQ(heard, wanted) << ratio;
    EXPECT_EQ(whole.GetPositionSample(), 9000) << ratio;
  }
  double least = 0;
  EXPECT_NEAR(WithRatio(least, 100).GetEndSample(), 10000, 1);  // counts as 0.01
}

TEST(LSPVarPitchShift, SeeksToWhereReadingWouldHaveCome) {
  double ratio = 1.3;
  LSoundSource source = WithRatio(ratio, 20000);
  std::vector<int> all, part;
  ReadInto(all, source, 6000);
  source.Seek(2500);
  ReadInto(part, source, 1000);
  EXPECT_TRUE(std::equal(part.begin(), part.end(), all.begin() + 2500));
  source.Seek(2147483647);
  EXPECT_EQ(source.GetPositionSample(), 2147483647);
  ReadInto(part, source, 10);
  EXPECT_EQ(part.back(), 0);
}
