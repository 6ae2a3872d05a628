// A source over given samples, and what scripts do with a source.
// Signal   frames before 0 and from the end on read as zeros; the position always advances; a seek keeps what it is
//          given, unless `clamp` holds it to 0..end.
#pragma once
#include "sound/LSoundSource.h"
#include "support/EngineData.h"

class TestSource final : public LSoundSourceBase {
 public:
  TestSource(std::vector<int> samples, int sampleRate, unsigned char channels, int peak = kPeak16)
      : LSoundSourceBase(sampleRate, channels, peak), samples_(std::move(samples)) {}

  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return int(samples_.size()) / GetChannels(); }
  void Seek(int frame) override;
  bool IsStreaming() const override { return streaming; }

  bool clamp = false, streaming = false, negated = false;

 private:
  std::vector<int> samples_;
  int position_ = 0;
};

struct ScriptResult {
  std::vector<int> samples, ints;
};

// Does one step of a script; false: not one of a source's words.
bool RunSourceStep(const EngineStep& step, LSoundSource& source, ScriptResult& result);
ScriptResult RunSourceScript(const EngineCase& data, LSoundSource& source);
void ReadInto(std::vector<int>& samples, LSoundSource& source, int frames);  // appended

// The source of a case: its input array, with the rate, channels and switches its params give. `name` is "" or "a".
TestSource* NewTestSource(const EngineCase& data, const std::string& name = "");
