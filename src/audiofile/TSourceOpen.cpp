#include "audiofile/TSourceOpen.h"

#include "audiofile/TGenSourceLadder.h"
#include "sound/LSPConvertSourceRateChannels.h"

namespace {

constexpr unsigned char kDeckChannels = 2;

struct PromptRow {
  const char* extension;
  const LRawSection& section;
};
constexpr PromptRow kPrompts[] = {
    {".vox", kVoxAudioSection},
    {".raw", kRawAudioSection},
    {".snd", kRawAudioSection},
};

}  // namespace

LProcessResult TGenSourceOpen(LSoundSource& out, const std::string& path) {
  LProcessInterfaceVoid process;
  LGenSourceOpenInterfaceProcess interface(process);
  return ProcessGenSourceOpenSource(out, path, interface, true, "");
}

bool TSourceOpenWithConvert(LSoundSource& out, const std::string& path) {
  if (TGenSourceOpen(out, path) != lprDone) return false;
  if (out.GetSampleRate() != kDeckRate || out.GetChannels() != kDeckChannels)
    LSPConvertSourceRateChannels(kDeckRate, kDeckChannels, out);
  return out.IsOk();
}

LProcessResult LGenSourceOpenPrompt(const std::string& path, bool& prompt, LRawSettingsAsker& asker) {
  for (const PromptRow& row : kPrompts) {
    if (!prompt || !LText::EqualsNoCase(row.extension, LFile::ExtensionFromPath(path))) continue;
    prompt = false;
    return asker.AskRawSettings(row.section) ? lprDone : lprStopped;
  }
  return lprDone;
}
