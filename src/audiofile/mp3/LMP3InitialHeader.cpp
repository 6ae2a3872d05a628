#include "audiofile/mp3/LMP3InitialHeader.h"

#include <algorithm>
#include <cmath>

#include "audiofile/LHeaderBytes.h"

namespace {

constexpr int kIdBytes = 4;
constexpr int kVbriOffset = LMP3Header::kBytes + 32;  // whatever the length of the side information
constexpr int kMaxFrames = 0x7fffffff / LMP3Header::kMaxSamples;

}  // namespace

LMP3InitialHeader::Tag LMP3InitialHeader::ReadTag(const unsigned char* frame, const LMP3Header& header) {
  constexpr unsigned kHasFrames = 1, kHasBytes = 2, kHasToc = 4, kHasQuality = 8;
  constexpr int kTocBytes = 100, kVbriFramesAt = kIdBytes + 10;
  const int bytes = header.FrameBytes();
  Tag tag;
  if (kVbriOffset + kVbriFramesAt + 4 <= bytes && IsId(frame + kVbriOffset, "VBRI")) {
    tag.isTag = tag.isVariable = true;
    tag.frames = GetBe32(frame + kVbriOffset + kVbriFramesAt);
    return tag;
  }
  // Some writers leave out the room for the check sum.
  for (const int start : {header.MainDataOffset(), LMP3Header::kBytes + header.SideInfoBytes()}) {
    if (start + kIdBytes + 4 > bytes) continue;
    tag.isInfo = IsId(frame + start, "Info");
    tag.isVariable = IsId(frame + start, "Xing");
    tag.isTag = tag.isInfo || tag.isVariable;
    if (!tag.isTag) continue;
    const std::uint32_t flags = GetBe32(frame + start + kIdBytes);
    int offset = start + kIdBytes + 4;
    if ((flags & kHasFrames) != 0 && offset + 4 <= bytes) tag.frames = GetBe32(frame + offset);
    for (const unsigned flag : {kHasFrames, kHasBytes, kHasQuality})
      if ((flags & flag) != 0) offset += 4;
    if ((flags & kHasToc) != 0) offset += kTocBytes;
    ReadEncoder(frame, bytes, offset, tag);
    break;
  }
  return tag;
}

void LMP3InitialHeader::ReadEncoder(const unsigned char* frame, int bytes, int offset, Tag& tag) {
  constexpr int kDelayAt = 21, kDelayBytes = 3;
  if (offset + kDelayAt + kDelayBytes > bytes) return;
  // The libraries that write for other encoders use the same block under their own names.
  const unsigned char* const encoder = frame + offset;
  if (!IsId(encoder, "LAME") && !IsId(encoder, "Lavc") && !IsId(encoder, "Lavf")) return;
  const unsigned char* const both = encoder + kDelayAt;
  tag.delay = both[0] * 16 + both[1] / 16;
  tag.padding = both[1] % 16 * 256 + both[2];
}

bool LMP3InitialHeader::Read(LMP3ReadFile& file) {
  LMP3FoundFrame first;
  if (!LMP3FrameSearch::First(file, first)) return false;
  header = first.header;
  firstAudioOffset = first.offset;
  Tag tag;
  if (const unsigned char* const frame = file.PeekAt(first.offset, header.FrameBytes())) tag = ReadTag(frame, header);
  if (tag.isTag) {
    firstAudioOffset += header.FrameBytes();
    encoderDelay = tag.delay;
    encoderPadding = tag.padding;
  }
  file.Seek(firstAudioOffset);
  ScanBitRates(file);
  isVariable = isVariable || tag.isVariable;
  if (averageFrameBytes > 0) {
    const double frames = double(file.AudioEnd() - firstAudioOffset) / averageFrameBytes;
    // A file that ends in the middle of a frame has one less; with padding the mean may miss the last one by a byte.
    const double tolerance = 1 / averageFrameBytes;
    endFrame = int(std::clamp(isVariable ? frames : frames + tolerance, 0.0, double(kMaxFrames)));
  }
  TakeCount(file, tag);
  file.Seek(firstAudioOffset);
  return true;
}

// Places an equal number of bytes apart meet long frames more often than short ones: what is averaged is frames per byte.
void LMP3InitialHeader::ScanBitRates(LMP3ReadFile& file) {
  constexpr int kPlaces = 8, kFramesOfPlace = 8, kSettledFrames = 4;
  int last = 0;
  bool hasPadding = false;
  // Gives the mean bit rate of the frames from the position on, 0 without any.
  const auto scan = [&](int count, int settled) {
    double sum = 0;
    int frames = 0;
    LMP3FoundFrame frame;
    for (; frames < count && LMP3FrameSearch::Next(file, header, frame); ++frames) {
      isVariable = isVariable || (frames > settled && frame.header.bitRate != last);
      last = frame.header.bitRate;
      hasPadding = hasPadding || frame.header.isPadded;
      sum += last;
      file.Seek(frame.offset + frame.header.FrameBytes());
    }
    return frames > 0 ? sum / frames : 0;
  };
  const double startRate = scan(kScanFrames, kSettledFrames);
  if (startRate == 0) return;
  // A varying rate may hide behind a start of even silence.
  const int settledRate = last;
  const std::int64_t length = file.AudioEnd() - firstAudioOffset;
  double inverses = 1 / startRate;
  int places = 1;
  for (int place = 1; place < kPlaces; ++place) {
    file.Seek(firstAudioOffset + length * place / kPlaces);
    const double rate = scan(kFramesOfPlace, 0);
    isVariable = isVariable || last != settledRate;
    if (rate == 0) continue;
    inverses += 1 / rate;
    ++places;
  }
  const double rate = isVariable ? places / inverses : settledRate;
  averageFrameBytes = rate * header.SlotFactor() / header.SampleRate();
  if (!isVariable && !hasPadding) averageFrameBytes = std::floor(averageFrameBytes);
}

void LMP3InitialHeader::TakeCount(const LMP3ReadFile& file, const Tag& tag) {
  constexpr double kInfoTolerance = 0.1, kLeastKbit = 8, kMostKbit = 640;
  if (tag.frames <= 0 || tag.frames > kMaxFrames) return;
  const double bytes = double(file.AudioEnd() - firstAudioOffset);
  const double kbit = bytes * header.SampleRate() * 8 / 1000 / (double(tag.frames) * header.Samples());
  const bool fits = tag.isInfo ? std::fabs(double(tag.frames) - endFrame) <= kInfoTolerance * endFrame
                               : kbit >= kLeastKbit && kbit <= kMostKbit;
  if (!fits) {
    encoderPadding = 0;  // counts from an end that is not this file's
    return;
  }
  endFrame = int(tag.frames);
  hasFrameCount = true;
  if (isVariable) averageFrameBytes = bytes / double(tag.frames);
}
