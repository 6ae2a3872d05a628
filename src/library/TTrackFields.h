// The fields of a track by name, and those that are numbers as numbers. What a list file brought along may be anything;
// what makes no sense reads as if it were not there.
// Units    lengths and offsets in frames of the track's own rate, tempo in beats per minute
// Threads  as LPlayItem
#pragma once
#include <string>

#include "library/LPlayItem.h"

inline constexpr const char* kTitleField = "title";
inline constexpr const char* kArtistField = "artist";
inline constexpr const char* kAlbumField = "album";
inline constexpr const char* kBpmField = "bpm";
inline constexpr const char* kCommentField = "comment";
inline constexpr const char* kPlayTimesField = "playtimes";
inline constexpr const char* kVersionField = "version";
inline constexpr const char* kLengthField = "length";
inline constexpr const char* kSampleRateField = "samplerate";
inline constexpr const char* kBeatOffsetField = "beatoffset";
inline constexpr const char* kFilePathValidField = "filepathvalid";
inline constexpr const char* kFeedToField = "feedto";
inline constexpr const char* kOriginalFilePathField = "originalfilepath";

inline constexpr const char* kUnknown = "Unbekannt";
inline constexpr const char* kFeedToNames[] = {"Deck A", "Deck B", "Keines"};

double TrackBpm(const LPlayItem& item);  // 0: not measured; up to 1: measured, and there is none
int TrackLength(const LPlayItem& item);
int TrackSampleRate(const LPlayItem& item);
int TrackBeatOffset(const LPlayItem& item);
int TrackPlayTimes(const LPlayItem& item);
bool IsTrackValid(const LPlayItem& item);
std::string TrackFeedTo(const LPlayItem& item);  // without a value the decks take turns by the index
std::string TrackOriginalPath(const LPlayItem& item);
std::string TrackText(const LPlayItem& item, const char* field);  // kUnknown where there is none

std::string BpmFieldText(double bpm);
