#include "audiofile/mp3/LMP3FrameDecoder.h"

#include <algorithm>
#include <cstring>

using namespace LMP3BandTables;

void LMP3FrameDecoder::Clear() {
  mainBytes_ = 0;
  for (Channel& channel : channel_) {
    std::memset(channel.overlap, 0, sizeof channel.overlap);
    channel.overlapSubbands = 0;
    channel.synth.Clear();
    channel.factors = {};
  }
}

void LMP3FrameDecoder::Collect(const LMP3Header& header, const unsigned char* frame) {
  const int kept = std::min(mainBytes_, kReservoirBytes);
  std::memmove(main_, main_ + mainBytes_ - kept, std::size_t(kept));
  const int own = std::clamp(header.FrameBytes() - header.MainDataOffset(), 0, LMP3Header::kMaxFrameBytes);
  std::memcpy(main_ + kept, frame + header.MainDataOffset(), std::size_t(own));
  mainBytes_ = kept + own;
  std::memset(main_ + mainBytes_, 0, kMainSlack);
}

void LMP3FrameDecoder::Decode(const LMP3Header& header, const unsigned char* frame, int* out) {
  const int kept = std::min(mainBytes_, kReservoirBytes);
  Collect(header, frame);
  const int coded = std::min(header.Channels(), channels_);
  const bool isSound = header.FrameBytes() >= header.MainDataOffset() &&
                       side_.Parse(header, frame + header.SideInfoOffset()) && side_.mainDataBegin <= kept;
  int position = isSound ? 8 * (kept - side_.mainDataBegin) : 8 * mainBytes_ + 1;
  for (int granule = 0; granule < header.Granules(); ++granule) {
    DecodeGranule(header, granule, coded, position);
    for (int channel = 0; channel < coded; ++channel)
      Filter(side_.granules[granule][channel], header.BandTable(), spectra_[channel], channel_[channel],
             granule * kSubbandLines);
  }
  Synthesise(header.Granules() * kSubbandLines, coded, out);
}

// A position behind the main data stands for a frame without sound.
void LMP3FrameDecoder::DecodeGranule(const LMP3Header& header, int granule, int coded, int& position) {
  LMP3Granule(&granules)[2] = side_.granules[granule];
  for (int channel = 0; channel < header.Channels(); ++channel) {
    const int start = position;
    position += granules[channel].dataBits;
    if (start > 8 * mainBytes_ || position > 8 * mainBytes_) {
      position = 8 * mainBytes_ + 1;
      spectra_[channel].Clear();
    } else {
      DecodeSpectrum(header, granule, channel, start, position);
    }
  }
  // Blocks of different lengths cannot be one sound in two channels.
  const bool isAlike = granules[0].IsShort() == granules[1].IsShort() && granules[0].IsMixed() == granules[1].IsMixed();
  if (coded == 2 && header.mode == LMP3Header::kJointStereo && (isAlike || !header.HasIntensity()))
    LMP3JointStereo(kernels_, header, granules[1], channel_[1].factors, spectra_);
}

void LMP3FrameDecoder::DecodeSpectrum(const LMP3Header& header, int granule, int channel, int start, int end) {
  const LMP3Granule& part = side_.granules[granule][channel];
  LMP3ScaleFactors& factors = channel_[channel].factors;
  LMP3Spectrum& spectrum = spectra_[channel];
  LMP3BitReader bits(main_, start);
  if (header.IsLowRate())
    factors.ReadLowRate(bits, part, channel == 1 && header.HasIntensity());
  else
    factors.Read(bits, part, granule == 1 ? side_.sharesScaleFactors[channel] : nullptr);
  if (bits.Position() > end) return spectrum.Clear();

  LMP3HuffmanRun run{main_, bits.Position(), end, {}, {}, part.quadTable};
  std::copy_n(part.regionEnds, 3, run.regionEnds);
  std::copy_n(part.tables, 3, run.tables);
  spectrum.count = kernels_.huffman(tables_, run, spectrum.lines);
  std::fill(spectrum.lines + spectrum.count, spectrum.lines + kLines, 0.0F);
  spectrum.Requantise(kernels_, part, factors, header.BandTable());
}

void LMP3FrameDecoder::Filter(const LMP3Granule& granule, int table, LMP3Spectrum& spectrum, Channel& channel,
                              int slot) {
  const int longSubbands = granule.isSwitchedAbove ? MixedLongLines(table) / kSubbandLines : 0;
  int subbands = (spectrum.count + kSubbandLines - 1) / kSubbandLines;
  const int borders = std::min(subbands, granule.IsShort() ? std::max(0, longSubbands - 1) : kSubbands - 1);
  kernels_.reduceAlias(tables_, spectrum.lines, borders);
  subbands = std::max(subbands, std::min(borders + 1, kSubbands));
  kernels_.hybrid(tables_, {spectrum.lines, channel.overlap, channel.slots + slot, subbands, channel.overlapSubbands,
                            granule.blockType, longSubbands});
  channel.overlapSubbands = subbands;
}

void LMP3FrameDecoder::Synthesise(int slots, int coded, int* out) {
  for (int channel = 0; channel < coded; ++channel)
    channel_[channel].synth.MatrixMultiply(kernels_, channel_[channel].slots, slots);
  // A frame of one channel in a file of two is heard in both.
  if (coded < channels_) {
    channel_[1].synth = channel_[0].synth;
    std::memcpy(channel_[1].overlap, channel_[0].overlap, sizeof channel_[0].overlap);
    channel_[1].overlapSubbands = channel_[0].overlapSubbands;
  }
  kernels_.windowSum(out, channel_[0].synth.Rows(), channels_ == 2 ? channel_[1].synth.Rows() : nullptr, slots);
  for (int channel = 0; channel < channels_; ++channel) channel_[channel].synth.Advance(slots);
}
