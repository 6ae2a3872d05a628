// Records from an input device into a sink: waits for sound above a threshold, records until it falls silent, waits
// again. With a silence limit of 0 it is a noise gate.
// Units    thresholds in dB, lengths and positions in ms.
// Threads  Start, Stop, EvNotify [main]; Step [worker] at priority 40.
// Failure  Start returns false for a sink with an error and for a device that does not open; a device that gives nothing
//          for 3 s ends the recording as a stop.
#pragma once
#include "foundation/LStepThread.h"
#include "foundation/LThreadRunOnMainThread.h"
#include "sound/LSoundRecLLCA.h"
#include "sound/LSoundSink.h"
#include "sound/LSoundTime.h"

class LSoundRecorderNotify {
 public:
  virtual ~LSoundRecorderNotify() = default;
  virtual void srntfRecord(long) {}
  virtual void srntfWait(long) {}
  virtual void srntfStop(long) {}
  virtual void srntfTime(LSoundTime, long) {}
  virtual void srntfLevel(const LDBMultiChannel<LdB<signed char>>&, long) {}
};

inline constexpr unsigned short kRecorderHoldUntilResume = 1, kRecorderRecordAtOnce = 2;

template <class Device>
class LSoundRecorderTemplate final : public LStepThread, public LThreadQueuedNotify {
 public:
  enum Mode { Idle = 0, Waiting = 1, Recording = 2 };

  LSoundRecorderTemplate();
  ~LSoundRecorderTemplate() override;

  void SetNotify(LSoundRecorderNotify* target, long id) { target_ = target, id_ = id; }
  void SetDevice(const LSoundRecordDevice& device) { device_.SetDevice(device); }
  bool Start(LSoundSink& sink, LSoundTime maxLength, LLevel threshold, LSoundTime silenceLimit, unsigned short flags);
  void Resume() { resume_.Signal(); }
  void Stop();
  Mode GetMode() const { return mode_.load(); }

 private:
  void StepsBegin() override;
  LStepResult Step() override;
  void StepsEnd() override;
  void EvNotify() override;
  bool OpenDevice();
  void StartDevice();
  bool TakeBlock();  // the next filled block, converted and gained, into block_
  void HandleBlock();
  void WaitForSound(LLevel loudest);
  void RecordBlock(LLevel loudest);
  LLevel MeasureBlock();
  LLevel LoudestOf(const int* samples, int frames) const;

  Device device_;
  LSoundRecorderNotify* target_ = nullptr;
  long id_ = 0;
  std::atomic<Mode> mode_{Idle};
  LSoundSink sink_;
  LSoundTime lastQuiet_ = 0, lastSound_ = 0;  // [worker]
  std::atomic<LSoundTime> timeMs_{0};         // the sink's length
  LSignalObject started_, resume_;
  std::atomic<signed char> levelLeft_{LLevel::kMuted}, levelRight_{LLevel::kMuted};
  LLevel startThreshold_, stopThreshold_;
  LSoundTime maxLength_ = 0, silenceLimit_ = 0;
  std::atomic<bool> stopRequest_{false}, reportPending_{false}, modeChangePending_{false};
  unsigned short flags_ = 0;

  std::vector<int> block_, previous_;  // one device block each
  int blockFrames_ = 0;                // in block_
  int previousFrames_ = 0;             // 0: none held
  int skipBlocks_ = 0;
  bool deviceRuns_ = false;
  std::uint32_t lastBlockMs_ = 0;
};

using LSoundRecorder = LSoundRecorderTemplate<LSoundRecLLCA>;
extern template class LSoundRecorderTemplate<LSoundRecLLCA>;
