#include "audiofile/LGenSourceTables.h"

#include <algorithm>

#include "foundation/LComponentFinder.h"
#include "foundation/LText.h"

namespace {

constexpr const char* kSources[] = {
    ".wav", ".mp3", ".flac", ".mp2",  ".mpga", ".aif",  ".aiff", ".aifc", ".au",  ".gsm", ".vox", ".qcp",
    ".raw", ".dct", ".amr",  ".dart", ".mpg",  ".mpeg", ".avi",  ".m4r",  ".voc", ".aac", ".m4a", ".wma",
    ".ra",  ".ram", ".rm",   ".rmj",  ".caf",  ".ds2",  ".act",  ".rcd",  ".rec", ".shn", ".mpc", ".wmv",
    ".asf", ".ape", ".spx",  ".cda",  ".wv",   ".mid",  ".smf",  ".moh",  ".mov", ".oga", ".ogg", ".flac",
    ".aac", ".m4a", ".mpc",  ".3gp",  ".3g2",  ".3gpp", ".mod",  ".flv",  ".mkv",
};
constexpr const char* kSinks[] = {
    ".wav", ".mov",  ".aifc", ".mp3", ".m4a", ".m4r", ".aac", ".amr", ".flac", ".ogg", ".mpc",
    ".spx", ".aiff", ".aif",  ".au",  ".gsm", ".raw", ".rss", ".vox", ".m3u",  ".pls", ".wpl",
};

struct ComponentRow {
  const char *extension, *decoder, *encoder;
};
// ".mp3" is written by the linked library; "mp3el2" stands for it where it is missing.
constexpr ComponentRow kComponents[] = {
    {".mp3", "mp3el2", "mp3el2"},
    {".rss", "", "mp3el2"},
    {".oga", "oggdec2", ""},
    {".ogg", "oggdec2", "oggenc2"},
    {".flac", "flaccodec", "flaccodec"},
    {".aac", "aacdec2", "aacenc4"},
    {".m4a", "aacdec2", "aacenc4"},
    {".m4r", "aacdec2", "aacenc4"},
    {".mp4", "aacdec2", ""},
    {".amr", "amrdec2", "amrenc2"},
    {".spx", "speexdec", "speexenc2"},
    {".wma", "wmadec", ""},
    {".mpc", "mpcdec", "mpcenc2"},
    {".mpp", "", "mpcenc2"},
    {".3gp", "ffmpeg17", ""},
    {".flv", "ffmpeg17", ""},
    {".mkv", "ffmpeg17", ""},
    {".mod", "ffmpeg17", ""},
    {".mov", "ffmpeg17", ""},
};

constexpr const char* kNeedEncoder[] = {".ogg", ".flac", ".mpc", ".mpp", ".amr", ".aac", ".m4a", ".m4r", ".spx"};

constexpr LCommandLineDecode kDecoders[] = {
    {".oga", {"-o", ">", "<"}},
    {".ogg", {"-o", ">", "<"}},
    {".flac", {"-d", "-o", ">", "-F", "<"}},
    {".aac", {"-d", "-o", ">", "<"}},
    {".m4a", {"-d", "-o", ">", "<"}},
    {".m4r", {"-d", "-o", ">", "<"}},
    {".mp4", {"-d", "-o", ">", "<"}},
    {".caf", {"<", ">"}},
    {".sd2", {"<", ">"}},
    {".spx", {"<", ">"}},
    {".wma", {"-i", "<", "-vn", "-f", "wav", ">"}},
    {".mpc", {"<", ">"}},
};

template <class Table>
bool Holds(const Table& table, std::string_view extension) {
  return std::any_of(std::begin(table), std::end(table),
                     [&](const char* row) { return LText::EqualsNoCase(row, extension); });
}

template <class Table>
auto FindRow(const Table& table, std::string_view extension) {
  const auto row = std::find_if(std::begin(table), std::end(table),
                                [&](const auto& each) { return LText::EqualsNoCase(each.extension, extension); });
  return row == std::end(table) ? nullptr : &*row;
}

}  // namespace

bool LGenSourceIsSupported(std::string_view extension) { return Holds(kSources, extension); }

bool LGenSinkIsSupported(std::string_view extension) {
  if (Holds(kNeedEncoder, extension)) return !LComponentGetPath(LGenSinkGetComponentName(extension)).empty();
  return Holds(kSinks, extension);
}

const std::vector<const char*>& LGenSourceExtensions() {
  static const std::vector<const char*> once = [] {
    std::vector<const char*> list;
    for (const char* row : kSources)
      if (!Holds(list, row)) list.push_back(row);
    return list;
  }();
  return once;
}

const char* LGenSourceGetComponentName(std::string_view extension) {
  const ComponentRow* row = FindRow(kComponents, extension);
  return row ? row->decoder : "";
}

const char* LGenSinkGetComponentName(std::string_view extension) {
  const ComponentRow* row = FindRow(kComponents, extension);
  return row ? row->encoder : "";
}

const LCommandLineDecode* LGetCommandLineDecode(std::string_view extension) { return FindRow(kDecoders, extension); }
