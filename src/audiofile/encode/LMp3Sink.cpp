#include "audiofile/encode/LMp3Sink.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <thread>

#include "audiofile/encode/LMp3Encoder.h"
#include "audiofile/encode/LMp3FileSink.h"
#include "foundation/LFile.h"

namespace {

// Is there a place to write to? Told by a file of the thread's own, which is gone at once.
bool CanWriteTo(const std::string& folder) {
  const auto thread = std::hash<std::thread::id>()(std::this_thread::get_id());
  const std::string path = LFile::MakePath(folder, std::to_string(thread) + "__wt");
  const LFileHandle file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666));
  if (!file.IsOpen()) return false;
  const bool locked = ::flock(file.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
  return LFile::Remove(path) && locked;
}

}  // namespace

LSoundSink OpenMp3Sink(const std::string& path, const LMp3EncodeSettings& settings, int rate, int channels) {
  const std::string folder = LFile::FolderFromPath(path);
  if (!CanWriteTo(folder.empty() ? "." : folder)) return {};
  const int sinkRate = Mp3SampleRate(settings, rate);
  const unsigned char sinkChannels = Mp3Channels(settings, channels);
  LSoundSink sink = kHasMp3Library ? OpenMp3FileSink(path, settings, sinkRate, sinkChannels)
                                   : LSoundSink::Make<LMp3EncodeSinkPipe>(path, settings, sinkRate, sinkChannels);
  return sink.HasError() ? LSoundSink() : sink;
}
