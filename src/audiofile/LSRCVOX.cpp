#include "audiofile/LSRCVOX.h"

namespace {

constexpr int kSteps = 49;
constexpr int kStepChange[8] = {-1, -1, -1, -1, 2, 4, 6, 8};  // by magnitude
constexpr int kLowest = -2048, kHighest = 2047;               // 12 bits

}  // namespace

// What the codes do at each step; two codes of a byte at once, since running over an hour of sound waits for nothing but
// the next step.
struct LDialogicAdpcm::Tables {
  short difference[kSteps][16];
  unsigned char next[kSteps][16];
  unsigned char nextOfByte[kSteps][256];

  Tables();
};

const LDialogicAdpcm::Tables LDialogicAdpcm::kTables;

LDialogicAdpcm::Tables::Tables() {
  double width = 16;
  for (int step = 0; step < kSteps; ++step, width *= 1.1) {
    for (int code = 0; code < 16; ++code) {
      const int magnitude = code & 7;
      const int change = (2 * magnitude + 1) * int(width) >> 3;
      difference[step][code] = short(code & 8 ? -change : change);
      next[step][code] = static_cast<unsigned char>(std::clamp(step + kStepChange[magnitude], 0, kSteps - 1));
    }
  }
  for (auto& row : nextOfByte)
    for (int byte = 0; byte < 256; ++byte) row[byte] = next[next[&row - nextOfByte][byte >> 4]][byte & 15];
}

int LDialogicAdpcm::DecodeOne(State& state, int code) {
  state.value = short(std::clamp(state.value + kTables.difference[state.step][code], kLowest, kHighest));
  state.step = kTables.next[state.step][code];
  return state.value * 256;
}

void LDialogicAdpcm::Skip(State& state, const unsigned char* bytes, int count) {
  int value = state.value, step = state.step;
  for (int i = 0; i < count; ++i) {
    const int high = bytes[i] >> 4, low = bytes[i] & 15;
    value = std::clamp(value + kTables.difference[step][high], kLowest, kHighest);
    value = std::clamp(value + kTables.difference[kTables.next[step][high]][low], kLowest, kHighest);
    step = kTables.nextOfByte[step][bytes[i]];
  }
  state = {short(value), static_cast<unsigned char>(step)};
}

LSRCVOX::LSRCVOX(LPCMData&& data)
    : LDecodedSource(data.rate, 1, kPeakHeadroom, std::int64_t{data.length} * 2),
      file_(std::move(data.file)),
      run_({}, {}, data.start, data.length) {}
