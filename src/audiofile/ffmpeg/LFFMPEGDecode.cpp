#include "audiofile/ffmpeg/LFFMPEGDecode.h"

#include "audiofile/LWaveFile.h"
#include "audiofile/convert/LPRSourceToSink.h"
#include "audiofile/ffmpeg/LFFMPEGSourceManager.h"
#include "foundation/LComponentFinder.h"

namespace {

constexpr int kWaveBits = 16;

using Manager = std::shared_ptr<LFFMPEGSourceManager>;

LSoundSource OpenSound(const Manager& manager, const std::string& path) {
  std::string program;
  if (!manager->Open(path) || !manager->GetSoundStreamComponent(-1, program, true)) return LSoundSource();
  if (!program.empty() && LComponentGetPath(program).empty()) return LSoundSource();
  LSoundSource source = LFFMPEGSourceManagerBase::GetSoundSource(manager, -1, true);
  return manager->Init() ? source : LSoundSource();
}

}  // namespace

LProcessResult Process(LProcessInterface& process, LFFMPEGDecode& job) {
  const auto manager = std::make_shared<LFFMPEGSourceManager>();
  manager->SetProcess(&process);
  LPRSourceToSinkStreaming copy{LFile::NameFromPath(job.input), OpenSound(manager, job.input)};
  copy.progress = [&manager] { return manager->ReadShare(); };
  if (process.IsToStop()) return lprStopped;
  if (!copy.source.IsOk()) return lprFailed;
  copy.sink = LWaveFile::OpenSinkPCM(job.output, copy.source.GetSampleRate(), copy.source.GetChannels(), kWaveBits, 0);
  const LProcessResult result = Process(process, copy);
  copy.sink.Close();
  if (result != lprDone) LFile::Remove(job.output);
  return result;
}
