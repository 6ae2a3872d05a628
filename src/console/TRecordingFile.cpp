#include "console/TRecordingFile.h"

#include <ctime>

#include "audiofile/LAifFile.h"
#include "audiofile/LWaveFile.h"
#include "audiofile/encode/LMp3Sink.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"
#include "sound/LSoundSource.h"

namespace {

constexpr int kRecordChannels = 2, kRecordBits = 16;

LSoundSink OpenWave(const std::string& path) {
  return LWaveFile::OpenSinkPCM(path, kDeckRate, kRecordChannels, kRecordBits, 0);
}

LSoundSink OpenAiff(const std::string& path) {
  const int format = TSettings::kAiffFormat.Get();
  return LAifFile::OpenAIFFSink(
      path, TSettings::kAiffSampleRate.Get(), static_cast<unsigned char>(TSettings::kAiffChannels.Get()),
      TSettings::kAiffSampleSize.Get(), format >= 1 && format <= 3 ? AIFFFormatType(format) : AIFFFormatType(0));
}

LSoundSink OpenMp3(const std::string& path) {
  return OpenMp3Sink(path, LMp3EncodeSettings(path), kDeckRate, kRecordChannels);
}

struct Format {
  const char* extension;
  LSoundSink (*open)(const std::string& path);
};
constexpr Format kFormats[] = {
    {".wav", OpenWave},
    {".mp3", OpenMp3},
    {".aiff", OpenAiff},
    {".aif", OpenAiff},
};

}  // namespace

std::string TRecordingFile::AutomaticName() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H-%M-%S", &local);
  return text;
}

std::string TRecordingFile::NewPath() {
  const std::string folder = TSettings::kDefaultRecordFolder.Get();
  const std::string extension = TSettings::kRecordingExtension.Get();
  const bool automatic = TSettings::kAutoRecordFileName.Get();
  const std::string name = automatic ? AutomaticName() : LFile::PreprocessName(TSettings::kRecordingFileName.Get());
  std::string path = LFile::MakePath(folder, name + extension);
  for (int number = 1; LFile::Exists(path) && number < 0x7fffffff; ++number)
    path = LFile::MakePath(folder, LText::Format("%s-%d%s", name.c_str(), number, extension.c_str()));
  return path;
}

bool TRecordingFile::IsKnownExtension(const std::string& extension) {
  for (const Format& format : kFormats)
    if (LText::EqualsNoCase(format.extension, extension)) return true;
  return false;
}

std::string TRecordingFile::KnownExtensions() {
  std::string list;
  for (const Format& format : kFormats) list += (list.empty() ? "" : ", ") + std::string(format.extension);
  return list;
}

LSoundSink TRecordingFile::OpenSink(const std::string& path) {
  const std::string extension = LFile::ExtensionFromPath(path);
  for (const Format& format : kFormats)
    if (LText::EqualsNoCase(format.extension, extension)) return format.open(path);
  return {};
}
