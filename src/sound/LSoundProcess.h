// A recipe that wraps a source into a new source, and the base of the sources so made.
// Threads  LSoundProcess [main]; the sources it opens follow LSoundSource's rules.
// Failure  OpenSource on a source with an error gives a source with lseInputError, never null.
#pragma once
#include <string>

#include "sound/LSoundSource.h"

// What a parameter of a process is, for panels and scripts.
struct LSoundProcessParameter {
  enum Type : unsigned char { Percent = 0, Whole = 1, Decimal = 2, OnOff = 3, Db = 4, Time = 7 };
  std::string name, unit;
  Type type = Whole;
  int value = 0, low = 0, high = 0;  // Decimal in thousandths, Time in ms
};

class LSoundProcess {
 public:
  virtual ~LSoundProcess() = default;
  virtual LSoundSource OpenSource(LSoundSource& input) = 0;
  virtual std::string GetName() const { return ""; }
  virtual int GetSoundProcessType() const { return 0; }
  virtual LSoundProcess* GetNewCopy() const { return nullptr; }
  virtual bool IsValid() const { return true; }
  virtual int GetNumParameters() const { return 0; }
  virtual void SetParameterByIndex(int /*index*/, int /*value*/) {}
  virtual bool GetParameterByIndex(int /*index*/, LSoundProcessParameter*) const { return false; }
  virtual int GetNumPresets() const { return 0; }
  virtual std::string GetPresetsName(int /*index*/) const { return ""; }
  virtual void SetPreset(int /*index*/) {}
  virtual int GetIndexInPreset() const { return -1; }
};

// Base of a source made by a process: copies rate, channels and peak, and forwards what it does not override.
class LSoundProcessBase : public LSoundSourceBase {
 public:
  explicit LSoundProcessBase(const LSoundSource& input)
      : LSoundSourceBase(input.GetSampleRate(), input.GetChannels(), input.GetPeak(),
                         input.IsOk() ? lseNone : lseInputError),
        input_(input) {}

  int GetPositionSample() const override { return input_.GetPositionSample(); }
  int GetEndSample() const override { return input_.GetEndSample(); }
  void Seek(int frame) override { input_.Seek(frame); }
  bool ControlMessage(int code, long* value) override { return input_.ControlMessage(code, value); }
  int AdjustRelativeOffset(int offset, int position) override { return input_.AdjustRelativeOffset(offset, position); }
  bool IsStreaming() const override { return input_.IsStreaming(); }
  void WaitForStreamingData(int ms) override { input_.WaitForStreamingData(ms); }

 protected:
  LSoundSource input_;
};
