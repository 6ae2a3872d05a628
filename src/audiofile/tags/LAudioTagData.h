// What a file's tags tell of a track, whatever the format: upper-case field names to UTF-8 text. Tags are read straight
// from the file, without opening it as sound, and only their bytes are read.
// Fields   TITLE ARTIST ALBUMARTIST ALBUM TRACKNUMBER DISKNUMBER GENRE BPM PLAYCOUNT COMPOSER CATEGORY YEAR DATE TIME
//          RATING COMMENT PRODUCER COPYRIGHT ENCODER ENCODEDBY URL IMAGE, and those of broadcast wave and CART; Vorbis
//          comments keep names of their own. No field is empty.
// Units    LENGTH in ms
// Threads  [any], one at a time
// Failure  a file that cannot be read, or a damaged tag, gives false and leaves what was read.
#pragma once
#include <string>
#include <string_view>

#include "audiofile/tags/LTagBlock.h"
#include "foundation/LHashTable.h"

class LAudioTagData final : public LHashTable {
 public:
  enum Kinds { ltkWave = 0, ltkBroadcast = 1, ltkCart = 2, ltkAll = 3 };  // of a wave file; other formats ignore it
  enum Pictures : bool { NoPictures = false, WithPictures = true };

  explicit LAudioTagData(Pictures pictures = NoPictures) : pictures_(pictures) {}
  ~LAudioTagData();  // deletes the picture file, unless it was taken
  LAudioTagData(const LAudioTagData&) = delete;
  LAudioTagData& operator=(const LAudioTagData&) = delete;

  bool ReadTags(const std::string& path, int kinds = ltkAll);

  // Blanks at both ends go. Without replace the first source wins; with it an empty value removes the field.
  void SetTag(std::string_view name, std::string_view value, bool replace);
  void SetNumber(std::string_view name, long long value, bool replace);

  bool WantsPicture() const { return pictures_ && imagePath_.empty(); }
  // Puts it into a temporary file whose path is IMAGE. One above 16 MiB is ignored.
  void AddPicture(const LTagBlock& picture, const char* extension);
  std::string TakeImage();  // the file is the caller's from now on; "" if there is none

 private:
  bool pictures_;
  std::string imagePath_;  // ours to delete; never what a tag says
};
