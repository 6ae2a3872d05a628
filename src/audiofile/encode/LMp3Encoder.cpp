#include "audiofile/encode/LMp3Encoder.h"

#include <algorithm>

#include "foundation/LComponentFinder.h"
#include "foundation/LProcessInterface.h"
#include "foundation/LText.h"
#include "sound/LSampleFormats.h"
#include "sound/LSoundSource.h"

std::vector<std::string> LMp3Encoder::CreateCommand(int rate, int channels) const {
  constexpr const char* kModes[] = {"s", "j", "f", "m"};
  const std::string program = LComponentGetPath("mp3el2");
  if (program.empty()) return {};
  const LMp3EncodeSettings& s = *settings_;
  const auto mode = channels == 1 ? LMp3EncodeSettings::Mono : s.GetMode();
  std::vector<std::string> command{program};
  const auto add = [&](std::initializer_list<std::string> words) { command.insert(command.end(), words); };
  if (channels == 2 && mode == LMp3EncodeSettings::Mono) add({"-a"});  // the program mixes to mono by itself
  add({"-m", kModes[mode]});
  if (s.errorProtection) add({"-p"});
  if (s.constantBitRate) {
    add({"-b", std::to_string(s.cbrBitRate)});
    if (s.highQuality) add({"-h"});
  } else {
    add({"-v", "-b", std::to_string(s.vbrMinBitRate), "-B", std::to_string(s.vbrMaxBitRate), "-V",
         std::to_string(s.vbrQuality)});
  }
  add({"-r", "-x", "-s", LText::Format("%d.%.3d", rate / 1000, rate % 1000), "-S", input_, path_});
  return command;
}

LPipe16Sink::LPipe16Sink(const std::vector<std::string>& command, int rate, unsigned char channels)
    : LSoundSinkBase(rate, channels), buffer_(std::size_t(kMaxBlockFrames) * GetChannels() * LSF16::kBytes) {
  if (command.empty() || !program_.Start(command, LChildProcess::ToChild)) SetError();
}

LPipe16Sink::~LPipe16Sink() {
  program_.CloseInput();
  LProcessInterfaceVoid nobody;
  program_.Wait(nobody);
}

void LPipe16Sink::Write(const int* samples, int frames) {
  while (frames > 0) {
    const int count = std::min(frames, kMaxBlockFrames);
    const int values = count * GetChannels();
    position_ += count;
    ConvertSamplesOut<LSF16>(buffer_.data(), samples, values);
    if (!program_.Write(buffer_.data(), std::size_t(values) * LSF16::kBytes)) SetError();
    samples += values;
    frames -= count;
  }
}

LMp3EncodeSinkPipe::LMp3EncodeSinkPipe(const std::string& path, const LMp3EncodeSettings& settings, int rate,
                                       unsigned char channels)
    : LSoundSinkBase(rate, channels),
      sink_(LMp3Encoder(path, settings).CreateCommand(rate, GetChannels()), rate, GetChannels()) {
  if (sink_.HasError()) SetError();
}

void LMp3EncodeSinkPipe::Write(const int* samples, int frames) {
  sink_.Write(samples, frames);
  if (sink_.HasError()) SetError();
  position_ = sink_.GetPositionSample();
}
