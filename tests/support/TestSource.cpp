#include "support/TestSource.h"

#include <algorithm>

void TestSource::Read(int* out, int frames) {
  const int channels = GetChannels();
  for (int frame = 0; frame < frames; ++frame, ++position_)
    for (int channel = 0; channel < channels; ++channel) {
      const bool inside = position_ >= 0 && position_ < GetEndSample();
      const int sample = inside ? samples_[std::size_t(position_) * std::size_t(channels) + std::size_t(channel)] : 0;
      *out++ = negated ? -sample : sample;
    }
}

void TestSource::Seek(int frame) { position_ = clamp ? std::clamp(frame, 0, GetEndSample()) : frame; }

void ReadInto(std::vector<int>& samples, LSoundSource& source, int frames) {
  const std::size_t before = samples.size();
  samples.resize(before + std::size_t(frames) * source.GetChannels(), 0x5a5a5a);
  source.Read(samples.data() + before, frames);
}

bool RunSourceStep(const EngineStep& step, LSoundSource& source, ScriptResult& result) {
  if (step.word == "read")
    ReadInto(result.samples, source, step.Int(0));
  else if (step.word == "seek")
    source.Seek(step.Int(0));
  else if (step.word == "pos")
    result.ints.push_back(source.GetPositionSample());
  else if (step.word == "end")
    result.ints.push_back(source.GetEndSample());
  else
    return false;
  return true;
}

ScriptResult RunSourceScript(const EngineCase& data, LSoundSource& source) {
  ScriptResult result;
  for (const EngineStep& step : data.Steps())
    if (!RunSourceStep(step, source, result)) std::abort();
  return result;
}

TestSource* NewTestSource(const EngineCase& data, const std::string& name) {
  const std::string key = name.empty() ? "source." : "source." + name + ".";
  auto* source =
      new TestSource(data.In(name.empty() ? "source" : name), data.Int(key + "rate", 44100),
                     static_cast<unsigned char>(data.Int(key + "channels", 2)), data.Int(key + "peak", kPeak16));
  source->clamp = data.Int(key + "clamp") != 0;
  source->streaming = data.Int(key + "streaming") != 0;
  return source;
}
