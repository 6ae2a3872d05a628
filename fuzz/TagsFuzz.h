// Bytes read as a tag of one format, pictures and all.
#pragma once
#include <filesystem>

#include "FuzzFile.h"
#include "audiofile/tags/LAudioTagData.h"
#include "audiofile/tags/LTagText.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"

inline void FuzzTags(const std::uint8_t* bytes, std::size_t size, bool (*read)(LAudioTagData&, const LTagBlock&)) {
  static const std::string folder = (std::filesystem::temp_directory_path() / "tavi_fuzz_tags").string();
  static LFolders folders(folder);
  static const bool filled = [] {
    LPlatformServices services;
    services.folders = &folders;
    LPlatform::Fill(services);
    return true;
  }();
  if (!filled) return;
  LFileHandle file = LFileHandle::OpenRead(FuzzFile(bytes, size));
  LAudioTagData tags(size % 4 == 0 ? LAudioTagData::WithPictures : LAudioTagData::NoPictures);
  read(tags, LTagBlock(file));
  for (const auto& [name, value] : tags)
    if (!IsUtf8(name) || !IsUtf8(value) || value.empty()) std::abort();
}
