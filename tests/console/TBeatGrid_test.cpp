#include "console/TBeatGrid.h"

#include <gtest/gtest.h>

#include "console/DJPitchLaw.h"
#include "console/TCuePoints.h"
#include "support/EngineData.h"

namespace {

TBeatGrid GridOf(const EngineCase& data) {
  const double pitch = data.Decimal("pitch");
  return {data.Decimal("bpm"), data.Int("interval"), data.Int("offset"), pitch, int(data.Int("base_end") / pitch)};
}

struct DeckRow {
  TBeatGrid grid;
  bool snaps;
};

// Rows of base end, interval, offset, BPM, pitch, strict beats.
std::vector<DeckRow> DecksOf(const EngineCase& data) {
  const std::vector<double> values = data.In<double>("decks");
  std::vector<DeckRow> decks;
  for (std::size_t i = 0; i + 6 <= values.size(); i += 6)
    decks.push_back(
        {{values[i + 3], int(values[i + 1]), int(values[i + 2]), values[i + 4], int(values[i] / values[i + 4])},
         values[i + 5] != 0 && values[i + 3] > 1});
  return decks;
}

template <class Query>
std::vector<int> Answers(const EngineCase& data, Query query) {
  const TBeatGrid grid = GridOf(data);
  std::vector<int> answers;
  for (const int frame : data.In("frames")) answers.push_back(query(grid, frame));
  return answers;
}

}  // namespace

TEST(TBeatGrid, FindsBeatsAndBars) {
  for (const EngineCase* data : Engine::CasesBelow("cue/previous_beat/"))
    EXPECT_EQ(Answers(*data, [](auto& grid, int frame) { return grid.GetPreviousBeatPos(frame); }), data->Out("beats"))
        << data->id;
  for (const EngineCase* data : Engine::CasesBelow("cue/closest_beat/"))
    EXPECT_EQ(Answers(*data, [](auto& grid, int frame) { return grid.GetClosestBeatPos(frame); }), data->Out("beats"))
        << data->id;
  for (const EngineCase* data : Engine::CasesBelow("cue/bar/")) {
    EXPECT_EQ(Answers(*data, [](auto& grid, int frame) { return grid.GetBarPosition(frame); }), data->Out("bar"));
    const TBeatGrid grid = GridOf(*data);
    const auto frames = data->In("frames");
    const auto bars = data->Out<double>("rel_bar"), beats = data->Out<double>("rel_beat");
    for (std::size_t i = 0; i < frames.size(); ++i) {
      EXPECT_NEAR(grid.GetRelativeBarPosition(frames[i]), bars[i], 1e-12) << data->id << " " << frames[i];
      EXPECT_NEAR(grid.GetRelativeBeatPosition(frames[i]), beats[i], 1e-9) << data->id << " " << frames[i];
    }
  }
}

TEST(TBeatGrid, AnswersZeroWithoutBeats) {
  for (const TBeatGrid& grid : {TBeatGrid{}, TBeatGrid{120, 0, 500, 1.0, 1000}, TBeatGrid{0.5, 0, -3, 1.5, 0}}) {
    for (const int frame : {-5, 0, 1, 100000}) {
      EXPECT_EQ(grid.GetPreviousBeatPos(frame), 0);
      EXPECT_EQ(grid.GetBarPosition(frame), 0);
      EXPECT_EQ(grid.GetRelativeBarPosition(frame), 0);
      EXPECT_EQ(grid.GetRelativeBeatPosition(frame), 0);
      EXPECT_EQ(grid.GetPhaseKeepingPos(frame, 3), frame);
      EXPECT_EQ(EquivalentBarPosition(grid, frame, grid, grid.FirstBeat()), grid.FirstBeat());
    }
  }
}

TEST(TBeatGrid, KeepsThePhaseOfARunningDeck) {
  const EngineCase& cue = Engine::Case("cue/cue_play");
  const auto decks = DecksOf(cue);
  const auto rows = cue.In("rows"), frames = cue.Out("frame");
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const DeckRow& deck = decks.at(std::size_t(rows[3 * i]));
    const int target = rows[3 * i + 2];
    const int jump = deck.snaps ? deck.grid.GetPhaseKeepingPos(target, rows[3 * i + 1]) : target;
    EXPECT_EQ(std::max(jump, 0), frames[i]) << i;
  }
  const EngineCase& bars = Engine::Case("pitch/equivalent_bar");
  const auto pairDecks = DecksOf(bars);
  const auto pairs = bars.In<double>("rows");
  const auto positions = bars.Out("position");
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const double* row = &pairs[6 * i];
    TBeatGrid slave = pairDecks.at(std::size_t(row[1])).grid;
    slave.pitch = row[2];
    const int lag = int(row[5]);
    EXPECT_EQ(EquivalentBarPosition(pairDecks.at(std::size_t(row[0])).grid, std::max(int(row[3]) - lag, 0), slave,
                                    std::max(int(row[4]) - lag, 0)),
              positions[i])
        << i;
  }
}

TEST(TBeatGrid, FindsThePitchOfASlave) {
  const EngineCase& data = Engine::Case("pitch/sync");
  const auto rows = data.In<double>("rows"), ratios = data.Out<double>("ratio");
  const auto results = data.Out("result");
  for (std::size_t i = 0; i < results.size(); ++i) {
    double pitch = 0;
    const TBeatGrid master{120, int(rows[3 * i]), 0, rows[3 * i + 1], 0}, slave{120, int(rows[3 * i + 2]), 0, 1.0, 0};
    EXPECT_EQ(FindSyncPitch(master, slave, pitch), results[i]) << i;
    if (results[i] == syncDone) {
      EXPECT_NEAR(pitch, ratios[i], 1e-15);
    }
  }
}

TEST(DJPitchLaw, MapsTheSliderAndRescalesPositions) {
  const auto factors = Engine::Case("pitch/slider").Out<double>("pitch");
  for (int value = 0; value <= kPitchSliderMax; ++value) {
    EXPECT_EQ(PitchFromSlider(value), factors[std::size_t(value)]) << value;
    EXPECT_EQ(SliderFromPitch(PitchFromSlider(value)), value);
  }
  EXPECT_TRUE(IsPitchAllowed(PitchFromSlider(0)) && IsPitchAllowed(PitchFromSlider(1000)));
  for (const double outside : {0.0, 0.4999, 1.5001, -1.0, 1e300}) EXPECT_FALSE(IsPitchAllowed(outside));
  const EngineCase& data = Engine::Case("pitch/rescale");
  const int end = data.Int("base_end");
  const double was = data.Decimal("old"), is = data.Decimal("new");
  const auto from = data.In("pos"), to = data.Out("new");
  for (std::size_t i = 0; i < from.size(); ++i)
    EXPECT_EQ(RescalePosition(from[i], int(end / was), int(end * (1 / is))), to[i]);
  EXPECT_EQ(RescalePosition(5, 0, 100), 0);
  for (int value = 0; value <= kPitchSliderMax; ++value) {
    const double pitch = PitchFromSlider(value), wanted = 44100 / pitch,
                 made = std::trunc(44100 / NearestRateRatio(pitch, 44100));
    EXPECT_LE(std::fabs(made - wanted), 0.5 + 1e-9) << value;
  }
}

TEST(TDeckLoop, StartsOnABeatAndStaysInsideTheTrack) {
  const EngineCase& data = Engine::Case("cue/set_beat_loop");
  const auto decks = DecksOf(data);
  const auto rows = data.In("rows"), results = data.Out("result");
  const auto beats = data.In<double>("beats"), fractions = data.Out<double>("fractions");
  for (std::size_t i = 0; i < beats.size(); ++i) {
    const int* row = &rows[5 * i];
    const int* result = &results[4 * i];
    const DeckRow& deck = decks.at(std::size_t(row[0]));
    TDeckLoop loop;
    loop.on = row[3] != 0;
    loop.start = row[4];
    const int audible = row[1] - row[2];
    const bool told = loop.SetBeats(beats[i], deck.grid, deck.snaps ? deck.grid.GetPreviousBeatPos(audible) : audible);
    EXPECT_EQ(told, result[0] != 0) << i;
    EXPECT_EQ(loop.on, result[1] != 0) << i;
    if (result[2] != -1) {
      EXPECT_EQ(loop.start, result[2]) << i;
    }
    if (result[3] == -1) continue;
    EXPECT_EQ(loop.length, result[3]) << i << " beats " << beats[i];
    EXPECT_NEAR(loop.lengthFraction, fractions[2 * i], 1e-15) << i;
    EXPECT_NEAR(loop.startFraction, fractions[2 * i + 1], 1e-15) << i;
  }
}

TEST(TCuePoints, IgnoreWrongIndices) {
  TCuePoints cues;
  for (const int index : {-1, 8, 1000}) {
    cues.Set(index, 5, 100);
    cues.SetLoopLength(index, 3);
    cues.Clear(index);
    EXPECT_EQ(cues.Position(index, 100), kNoCue);
    EXPECT_EQ(cues.LoopLength(index), kNoLoopLength);
  }
  cues.SetLoopLength(0, kLoopLengths);
  EXPECT_EQ(cues.LoopLength(0), kNoLoopLength);
  cues.Set(3, 0, 100);
  EXPECT_TRUE(cues.At(3).IsSet());
  cues.Rescale(50);
  EXPECT_EQ(cues.At(3).position, 0);
  cues.Set(4, 10, 0);  // a track without frames
  EXPECT_EQ(cues.Position(4, 0), 0);
}
