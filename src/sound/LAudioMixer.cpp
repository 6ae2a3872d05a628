#include "sound/LAudioMixer.h"

#include <algorithm>
#include <cassert>
#include <mutex>

#include "sound/LSPConvertSourceRateChannels.h"

namespace {

bool IsChannel(int channel) { return channel >= 0 && channel < LAudioMixerSource::kChannels; }

int Held(long long frame) { return int(std::clamp<long long>(frame, INT32_MIN, INT32_MAX)); }

}  // namespace

LAudioMixerSource::LAudioMixerSource(int newId, const LSoundSource& newSource)
    : id(newId), source(newSource), levels_(kChannels * kChannels), slots_(kChannels * kSlots, kFree) {}

void LAudioMixerSource::CountLiveSlots(int inputChannel) {
  const auto row = slots_.begin() + inputChannel * kSlots;
  liveSlots_[std::size_t(inputChannel)] = static_cast<short>(std::find(row, row + kSlots, kFree) - row);
}

void LAudioMixerSource::AddDesignation(int inputChannel, int outputChannel) {
  if (!IsChannel(inputChannel) || !IsChannel(outputChannel)) return;
  const auto row = slots_.begin() + inputChannel * kSlots;
  if (std::find(row, row + kSlots, outputChannel) != row + kSlots) return;
  const auto hole = std::find(row, row + kSlots, kFree);
  if (hole != row + kSlots) *hole = static_cast<short>(outputChannel);
  CountLiveSlots(inputChannel);
}

void LAudioMixerSource::RemoveDesignation(int inputChannel, int outputChannel) {
  if (!IsChannel(inputChannel) || !IsChannel(outputChannel)) return;
  const auto row = slots_.begin() + inputChannel * kSlots;
  std::replace(row, row + kSlots, static_cast<short>(outputChannel), kFree);
  CountLiveSlots(inputChannel);
}

void LAudioMixerSource::SetVolume(int inputChannel, int outputChannel, LLevel level) {
  if (!IsChannel(inputChannel) || !IsChannel(outputChannel)) return;
  levels_[At(inputChannel, outputChannel)].store(static_cast<signed char>(level.Get()), std::memory_order_relaxed);
}

int LAudioMixerSource::Gain24(int inputChannel, int outputChannel) const {
  return LLevel(levels_[At(inputChannel, outputChannel)].load(std::memory_order_relaxed)).AmplitudeGain24();
}

LAudioMixerSource* LAudioMixer::Find(int id) {
  const auto found = std::find_if(sources_.begin(), sources_.end(), [id](const auto& input) { return input.id == id; });
  return found == sources_.end() ? nullptr : &*found;
}

void LAudioMixer::AddSource(LSoundSource& source, int id) {
  std::lock_guard lock(mutex_);
  bool present = false;
  for (LAudioMixerSource& input : sources_) {
    if (input.id != id) continue;
    input.source = source;
    present = true;
  }
  if (!present) sources_.emplace_front(id, source);
}

void LAudioMixer::ChangeSource(int id, LSoundSource& source) {
  std::lock_guard lock(mutex_);
  if (LAudioMixerSource* input = Find(id)) input->source = source;
}

void LAudioMixer::UpdateSource(int id, LSoundSource& source) {
  std::lock_guard lock(mutex_);
  LAudioMixerSource* input = Find(id);
  if (!input) return;
  source.Seek(input->source.GetPositionSample());
  input->source = source;
}

void LAudioMixer::UpdateSourceID(int id, int newId) {
  std::lock_guard lock(mutex_);
  if (LAudioMixerSource* input = Find(id)) input->id = newId;
}

void LAudioMixer::DeleteSource(int id) {
  std::lock_guard lock(mutex_);
  sources_.remove_if([id](const LAudioMixerSource& input) { return input.id == id; });
}

void LAudioMixer::AddChannelDesignation(int id, int inputChannel, int outputChannel) {
  std::lock_guard lock(mutex_);
  if (LAudioMixerSource* input = Find(id)) input->AddDesignation(inputChannel, outputChannel);
}

void LAudioMixer::RemoveChannelDesignation(int id, int inputChannel, int outputChannel) {
  std::lock_guard lock(mutex_);
  if (LAudioMixerSource* input = Find(id)) input->RemoveDesignation(inputChannel, outputChannel);
}

void LAudioMixer::SetChannelDesignationVolume(int id, int inputChannel, int outputChannel, LdB<signed char> level) {
  if (LAudioMixerSource* input = Find(id)) input->SetVolume(inputChannel, outputChannel, level);
}

int LAudioMixer::GetPositionSample(int id) {
  std::lock_guard lock(mutex_);
  const LAudioMixerSource* input = Find(id);
  return input ? input->source.GetPositionSample() : 0;
}

LSoundSource LAudioMixer::OpenSource() {
  std::lock_guard lock(mutex_);
  return LSoundSource::Make<LAudioMixerSourceBase>(*this);
}

LAudioMixerSourceBase::LAudioMixerSourceBase(LAudioMixer& mixer)
    : LSoundSourceBase(mixer.sampleRate_, mixer.channels_, kPeakHeadroom), mixer_(mixer), work_(kWorkSamples) {
  LLevel::GetTable();  // built here, not in the first Read
  for (LAudioMixerSource& input : mixer_.sources_)
    if (input.source.GetSampleRate() != GetSampleRate())
      LSPConvertSourceRateChannels(GetSampleRate(), input.source.GetChannels(), input.source);
}

void LAudioMixerSourceBase::Read(int* out, int frames) {
  if (frames < 1) return;
  std::fill_n(out, frames * GetChannels(), 0);
  for (LAudioMixerSource& input : mixer_.sources_) {
    const int channels = input.source.GetChannels();
    assert(frames * channels <= kWorkSamples);
    const int most = kWorkSamples / channels;
    for (int done = 0; done < frames; done += most)
      Mix(input, out + done * GetChannels(), std::min(most, frames - done));
  }
}

// Where each output channel has one input channel at most, which is the rule, one pass serves all of them.
void LAudioMixerSourceBase::Mix(LAudioMixerSource& input, int* out, int frames) {
  input.source.Read(work_.data(), frames);
  if (GetChannels() > kMixLanes) return MixRouted(input, out, frames);

  LMixPlan plan{input.source.GetChannels(), GetChannels(), {}, {}};
  bool taken[kMixLanes] = {};
  bool any = false;
  for (int channel = 0; channel < plan.inChannels; ++channel)
    for (int slot = 0; slot < input.LiveSlots(channel); ++slot) {
      const int target = input.OutputOfSlot(channel, slot);
      if (target >= plan.outChannels) continue;
      if (taken[target]) return MixRouted(input, out, frames);
      taken[target] = any = true;
      plan.source[target] = channel;
      plan.gain24[target] = input.Gain24(channel, target);
    }
  if (any) Kernels().mixFrames(out, work_.data(), frames, plan);
}

void LAudioMixerSourceBase::MixRouted(const LAudioMixerSource& input, int* out, int frames) {
  const int inChannels = input.source.GetChannels();
  for (int channel = 0; channel < inChannels; ++channel)
    for (int slot = 0; slot < input.LiveSlots(channel); ++slot) {
      const int target = input.OutputOfSlot(channel, slot);
      if (target >= GetChannels()) continue;
      Kernels().mixChannel(out + target, GetChannels(), work_.data() + channel, inChannels, frames,
                           input.Gain24(channel, target));
    }
}

int LAudioMixerSourceBase::GetPositionSample() const {
  int largest = 0;
  bool first = true;
  for (const LAudioMixerSource& input : mixer_.sources_) {
    const int position = input.source.GetPositionSample();
    largest = first ? position : std::max(largest, position);
    first = false;
  }
  return largest;
}

int LAudioMixerSourceBase::GetEndSample() const { return mixer_.endRule_ ? EndOfFirst() : EndOfLast(); }

int LAudioMixerSourceBase::EndOfFirst() const {
  if (mixer_.sources_.empty()) return GetPositionSample() - 1;
  long long least = INT64_MAX;
  for (const LAudioMixerSource& input : mixer_.sources_)
    least = std::min(least, (long long)input.source.GetEndSample() - input.source.GetPositionSample());
  return Held(GetPositionSample() + least);
}

// The end of the input with the largest one, put off by what other inputs have left beyond it.
int LAudioMixerSourceBase::EndOfLast() const {
  long long end = 0, remainder = 0;
  bool first = true;
  for (const LAudioMixerSource& input : mixer_.sources_) {
    const long long inputEnd = input.source.GetEndSample();
    if (inputEnd == kEndless) return kEndless;
    const long long inputRemainder = inputEnd - input.source.GetPositionSample();
    if (!first && (inputEnd < end || (inputEnd == end && inputRemainder >= remainder))) continue;
    end = inputEnd;
    remainder = inputRemainder;
    first = false;
  }
  for (const LAudioMixerSource& input : mixer_.sources_) {
    const long long inputRemainder = (long long)input.source.GetEndSample() - input.source.GetPositionSample();
    if (inputRemainder <= remainder) continue;
    end += inputRemainder - remainder;
    remainder = inputRemainder;
  }
  return Held(end);
}

void LAudioMixerSourceBase::Seek(int frame) {
  const long long largest = GetPositionSample();
  for (LAudioMixerSource& input : mixer_.sources_) {
    const long long target = frame - (largest - input.source.GetPositionSample());
    input.source.Seek(Held(std::min<long long>(target, input.source.GetEndSample())));
  }
}

bool LAudioMixerSourceBase::ControlMessage(int code, long* value) {
  return std::all_of(mixer_.sources_.begin(), mixer_.sources_.end(),
                     [&](LAudioMixerSource& input) { return input.source.ControlMessage(code, value); });
}

bool LAudioMixerSourceBase::IsStreaming() const {
  return std::any_of(mixer_.sources_.begin(), mixer_.sources_.end(),
                     [](const LAudioMixerSource& input) { return input.IsStreaming(); });
}

void LAudioMixerSourceBase::WaitForStreamingData(int ms) {
  for (const LAudioMixerSource& input : mixer_.sources_)
    if (input.IsStreaming()) input.WaitForStreamingData(ms);
}
