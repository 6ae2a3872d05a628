#include "audiofile/convert/FileConverter.h"

#include <atomic>
#include <cstring>
#include <mutex>

#include "audiofile/TGenSourceLadder.h"

namespace {

constexpr double kOpened = 0.5;  // of the progress, where opening means decoding into a temporary wave

template <std::size_t kSize>
void CopyText(char (&to)[kSize], const std::string& text) {
  const std::string cut = LText::CutUtf8(text, kSize - 1);
  std::memcpy(to, cut.c_str(), cut.size() + 1);
}

// Progress of a conversion to its deck, and the request to stop it.
class ProcessCounter final : public LProcessInterfaceVoid {
 public:
  ProcessCounter(LQueuedNotifyDataHandler& handler, int deck) : handler_(handler), deck_(deck) {}

  bool IsToStop() override { return stop_.IsSignaled(); }
  LProcessWaitResult ProcessWait(unsigned ms) override { return stop_.WaitSignal(ms) ? lpwStopped : lpwTimedOut; }
  LProcessWaitResult ProcessWaitSignal(LSignalObjectRef signal, unsigned ms) override {
    LSignalObjectGroup group;
    group.Add(signal);
    return ProcessWaitSignalObjectGroup(group, ms);
  }
  LProcessWaitResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned ms) override {
    LSignalObjectGroup with = group;
    with.Add(stop_);
    const bool signalled = with.Select(ms);
    return stop_.IsSignaled() ? lpwStopped : signalled ? lpwSignalled : lpwTimedOut;
  }
  void SetError(const char* text) override { reason_ = text; }
  void SetProgress(double progress) override {
    const FileConversionProgress told{int(progress * 100), deck_};
    if (told.percent == percent_) return;
    percent_ = told.percent;
    handler_.PostNotifyFromSender(FileConverter::kProgress, &told, sizeof told);
  }

  void Stop() { stop_.Signal(); }
  void SetDeck(int deck) { deck_ = deck; }
  int GetDeck() const { return deck_; }
  int Percent() const { return percent_; }
  const std::string& Reason() const { return reason_; }

 private:
  LQueuedNotifyDataHandler& handler_;
  std::atomic<int> deck_;
  int percent_ = -1;
  LSignalObject stop_;
  std::string reason_;
};

}  // namespace

class FileConversionForDeck final : public FileConversion {
 public:
  FileConversionForDeck(const std::string& path, LQueuedNotifyDataHandler& handler, int deck, long value)
      : FileConversion(path), handler_(handler), counter_(handler, deck), value_(value) {}
  void Stop() { counter_.Stop(); }
  void SetDeck(int deck) { counter_.SetDeck(deck); }
  bool IsComplete() const { return complete_; }

 private:
  void ConversionComplete(LProcessResult result) override {
    auto done = std::make_unique<FileConversionDone>();
    done->result = result;
    done->deck = counter_.GetDeck();
    done->value = value_;
    CopyText(done->source, Source());
    CopyText(done->cached, CachedPath());
    CopyText(done->reason, counter_.Reason());
    complete_ = true;  // first: who is told may convert the next file
    handler_.PostNotifyFromSender(FileConverter::kComplete, done.get(), sizeof *done);
  }
  LProcessResult PrepareSoundSource(LSoundSource& source) override {
    LProcessInterfaceSubProcess opening(counter_, 0, kOpened);
    LGenSourceOpenInterfaceProcess interface(opening);
    return ProcessGenSourceOpenSource(source, Source(), interface, false, "");
  }
  LProcessResult ProcessSourceToSink(LPRSourceToSink& copy) override {
    // What opens at once leaves the whole bar to the copy.
    LProcessInterfaceSubProcess copying(counter_, counter_.Percent() > 0 ? kOpened : 0, 1);
    return Process(copying, copy);
  }
  LProcessInterface& WaitingProcess() override { return counter_; }

  LQueuedNotifyDataHandler& handler_;
  ProcessCounter counter_;
  long value_;
  std::atomic<bool> complete_{false};
};

FileConverter::FileConverter() : LStepThread("FileConverter", LThreadRole::Worker) {}

FileConverter::~FileConverter() {
  StopConverting();
  StopSteps();
}

bool FileConverter::ConvertFileForDeck(const std::string& path, LQueuedNotifyDataHandler& handler, int deck, long value,
                                       FileConversionAsker* asker) {
  if (IsConverting()) return false;
  auto conversion = std::make_unique<FileConversionForDeck>(path, handler, deck, value);
  bool cancelled = false;
  if (conversion->CheckCache(asker, cancelled)) return true;
  if (cancelled) conversion->Stop();
  StopSteps();
  {
    const std::lock_guard lock(mutex_);
    conversion_ = std::move(conversion);
  }
  if (!StartSteps(kPriorityBackground)) Step();
  return true;
}

LStepResult FileConverter::Step() {
  conversion_->Convert();
  const std::lock_guard lock(mutex_);
  conversion_.reset();
  return LStepResult::End();
}

bool FileConverter::IsConverting() const {
  const std::lock_guard lock(mutex_);
  return conversion_ && !conversion_->IsComplete();
}

void FileConverter::StopConverting() {
  const std::lock_guard lock(mutex_);
  if (conversion_) conversion_->Stop();
}

void FileConverter::SetDeck(int deck) {
  const std::lock_guard lock(mutex_);
  if (conversion_) conversion_->SetDeck(deck);
}

std::string FileConverter::GetSource() const {
  const std::lock_guard lock(mutex_);
  return conversion_ && !conversion_->IsComplete() ? conversion_->Source() : "";
}

std::string FileConverter::GetCachePath() const {
  const std::lock_guard lock(mutex_);
  return conversion_ ? conversion_->CachedPath() : "";
}
