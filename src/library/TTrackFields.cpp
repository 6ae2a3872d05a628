#include "library/TTrackFields.h"

#include <algorithm>

#include "foundation/LText.h"

namespace {

constexpr double kMaxBpm = 1000;
constexpr int kDefaultSampleRate = 44100;

int AtLeastZero(const LPlayItem& item, const char* field, int fallback) {
  return std::max(item.fields.GetInt(field, fallback), 0);
}

}  // namespace

double TrackBpm(const LPlayItem& item) {
  const double bpm = LText::ToDouble(LText::Trim(item.fields.GetParm(kBpmField, ""))).value_or(0);
  return bpm >= 0 && bpm <= kMaxBpm ? bpm : 0;
}

int TrackLength(const LPlayItem& item) { return AtLeastZero(item, kLengthField, 0); }
int TrackSampleRate(const LPlayItem& item) { return AtLeastZero(item, kSampleRateField, kDefaultSampleRate); }
int TrackBeatOffset(const LPlayItem& item) { return AtLeastZero(item, kBeatOffsetField, 0); }
int TrackPlayTimes(const LPlayItem& item) { return AtLeastZero(item, kPlayTimesField, 0); }
bool IsTrackValid(const LPlayItem& item) { return item.fields.GetBool(kFilePathValidField, true); }

std::string TrackFeedTo(const LPlayItem& item) {
  const std::string text = item.fields.GetParm(kFeedToField, "");
  return text.empty() ? kFeedToNames[item.index % 2] : text;
}

std::string TrackOriginalPath(const LPlayItem& item) { return item.fields.GetParm(kOriginalFilePathField, ""); }

std::string TrackText(const LPlayItem& item, const char* field) {
  const std::string text = item.fields.GetParm(field, "");
  return text.empty() ? kUnknown : text;
}

std::string BpmFieldText(double bpm) { return bpm > 1 ? LText::Format("%3.2f", bpm) : bpm > 0 ? "1.0" : "0.0"; }
