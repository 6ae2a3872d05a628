#include "audiofile/tags/LAudioTagData.h"

#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "audiofile/tags/LFlacTags.h"
#include "audiofile/tags/LID3Tags.h"
#include "audiofile/tags/LMP4Tags.h"
#include "audiofile/tags/LOggTags.h"
#include "audiofile/tags/LRiffTags.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"

namespace {

bool ReadTagsAnyWave(LAudioTagData& tags, const LTagBlock& file, int kinds) {
  switch (kinds) {
    case LAudioTagData::ltkWave:
      return ReadTagsWAV(tags, file);
    case LAudioTagData::ltkBroadcast:
      return ReadTagsBWF(tags, file);
    case LAudioTagData::ltkCart:
      return ReadTagsCART(tags, file);
    default: {
      const bool cart = ReadTagsCART(tags, file);
      const bool broadcast = ReadTagsBWF(tags, file);
      return ReadTagsWAV(tags, file) || broadcast || cart;
    }
  }
}

template <bool (*kRead)(LAudioTagData&, const LTagBlock&)>
bool ReadWithoutKinds(LAudioTagData& tags, const LTagBlock& file, int) {
  return kRead(tags, file);
}

struct FormatRow {
  const char* extension;
  bool (*read)(LAudioTagData& tags, const LTagBlock& file, int kinds);
};

constexpr FormatRow kFormats[] = {
    {".wav", ReadTagsAnyWave},
    {".mp3", ReadWithoutKinds<ReadTagsMP3>},
    {".m4a", ReadWithoutKinds<ReadTagsM4A>},
    {".mp4", ReadWithoutKinds<ReadTagsM4A>},
    {".m4r", ReadWithoutKinds<ReadTagsM4A>},
    {".ogg", ReadWithoutKinds<ReadTagsOGG>},
    {".oga", ReadWithoutKinds<ReadTagsOGG>},
    {".flac", ReadWithoutKinds<ReadTagsFLAC>},
};

}  // namespace

LAudioTagData::~LAudioTagData() {
  if (!imagePath_.empty()) LFile::Remove(imagePath_);
}

bool LAudioTagData::ReadTags(const std::string& path, int kinds) {
  const std::string extension = LFile::ExtensionFromPath(path);
  for (const FormatRow& format : kFormats) {
    if (!LText::EqualsNoCase(format.extension, extension)) continue;
    LFileHandle file = LFileHandle::OpenRead(path);
    return file.IsOpen() && format.read(*this, LTagBlock(file), kinds);
  }
  return false;
}

void LAudioTagData::SetTag(std::string_view name, std::string_view value, bool replace) {
  value = LText::Trim(value);
  if (!replace && GetParm(name)) return;
  if (!value.empty()) {
    SetString(name, value);
  } else if (replace) {
    DeleteField(name);
  }
}

void LAudioTagData::SetNumber(std::string_view name, long long value, bool replace) {
  SetTag(name, std::to_string(value), replace);
}

void LAudioTagData::AddPicture(const LTagBlock& picture, const char* extension) {
  if (!WantsPicture() || picture.GetSize() < 1 || picture.GetSize() > LTagBlock::kMaxPictureBytes) return;
  std::string path = LFile::MakePath(LPlatform::Folders().GetTempFolder(), "0XXXXXX") + extension;
  LFileHandle file(::mkstemps(path.data(), int(std::string_view(extension).size())));
  if (!file.IsOpen()) return;
  const std::string bytes = picture.Read(LTagBlock::kMaxPictureBytes);
  if (file.Write(bytes.data(), bytes.size())) {
    SetTag("IMAGE", path, true);
    imagePath_ = std::move(path);
  } else {
    LFile::Remove(path);
  }
}

std::string LAudioTagData::TakeImage() { return std::exchange(imagePath_, {}); }
