#include "sound/LdB.h"

#include <cmath>

namespace {

// 10^(db / divisor) with 24 fraction bits, rounded, capped.
std::int32_t GainFromDb(int db, double divisor) {
  const double gain = std::pow(10.0, db / divisor) * kUnityGain24 + 0.5;
  return gain < 2147483647.0 ? std::int32_t(gain) : INT32_MAX;
}

LLevel::Table BuildTable() {
  LLevel::Table table{};  // -128 and -127 stay 0
  for (std::size_t i = 2; i < table.amplitude.size(); ++i) {
    const int db = int(i) - 128;
    table.amplitude[i] = GainFromDb(db, 20.0);
    table.power[i] = GainFromDb(db, 10.0);
  }
  return table;
}

}  // namespace

LLevel operator+(LLevel a, LLevel b) {
  const int sum = a.db_ + b.db_;  // whole numbers: nothing to round
  if (sum >= 127) return 127;
  return sum > LLevel::kMuted ? sum : LLevel::kMuted;
}

const LLevel::Table& LLevel::GetTable() {
  static const Table table = BuildTable();
  return table;
}
