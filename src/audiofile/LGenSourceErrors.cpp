#include "audiofile/LGenSourceErrors.h"

#include "audiofile/LGenSourceTables.h"
#include "audiofile/WaveCodecs.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"

namespace {

constexpr const char* kManual = " Näheres im Handbuch unter \"Dateiformate\".";

constexpr const char* kDamaged = "Die Datei \"%s\" kann nicht geöffnet werden, da sie beschädigt ist.";
constexpr const char* kCannotOpen =
    "Die Datei \"%s\" kann nicht geöffnet werden. Überprüfen Sie, ob diese existiert und Sie Lesezugriff haben.";
constexpr const char* kOther =
    "Datei \"%s\" kann nicht geöffnet werden. Es ist möglich, dass das Dateiformat nicht von diesem Programm "
    "unterstützt wird.";
constexpr const char* kWaveCodec =
    "Kann die Datei \"%s\" nicht öffnen, da der nötige Codec (\"%s\") nicht installiert ist.";
constexpr const char* kUnknownWaveCodec =
    "Die Datei \"%s\" kann nicht geöffnet werden, da der benötigte Codec (\"%s\") nicht installiert ist.";
constexpr const char* kUnknownCodecName = "Für Microsoft unbekanntes Wave-Format";
constexpr const char* kEnglishCodec =
    "Cannot open the file \"%s\" because the required codec (\"%s\") is not installed.";
constexpr const char* kMp3 =
    "Die Datei \"%s\" kann nicht geöffnet werden. Sie ist entweder beschädigt oder keine wahre Layer-3 MPEG Datei.";
constexpr const char* kMidi = "MIDI-Entschlüsselung wird derzeit in unseren Produkten in OS X nicht unterstützt.";
constexpr const char* kEncrypted = "Die Datei \"%s\" kann nicht geöffnet werden, da sie verschlüsselt ist.";
constexpr const char* kDecoder =
    "Die Decodierung ist während der Komprimierung der Datei \"%s\" ins Wave-Format fehlgeschlagen. Möglicherweise hat "
    "Ihr Anmeldekonto keine Schreibberechtigung für den Ordner \"%s\"";
constexpr const char* kPlayer =
    "Quicktime konnte die Datei \"%s\"nicht entschlüsseln. Bitte laden Sie die Datei in den Quicktime-Spieler und "
    "prüfen Sie, dass sie richtig spielt.";
constexpr const char* kSystem = "Kann Datei \"%s\" nicht öffnen, da dieses Format nicht auf OS X unterstützt wird.";
constexpr const char* kPlugIn =
    "Das Plug-in für die Endung \"%s\" wurde nicht gefunden und muss von Hand installiert werden.";
constexpr const char* kNoPlugIn = "Für die Endung \"%s\" scheint es kein Plug-in zu geben.";

// Each "%s" in turn.
std::string With(std::string_view text, const std::string& first, const std::string& second = "") {
  std::string filled;
  for (const std::string* value : {&first, &second}) {
    const auto place = text.find("%s");
    if (place == std::string_view::npos) break;
    filled.append(text.substr(0, place)).append(*value);
    text.remove_prefix(place + 2);
  }
  return filled.append(text);
}

struct About {
  LSoundError error;
  const std::string &path, &tempPath;
};

std::string BaseText(const About& about) {
  if (about.error == lseDamaged) return With(kDamaged, about.path);
  if (about.error == lseCannotOpen) return With(kCannotOpen, about.path);
  return With(kOther, about.path) + kManual;
}

std::string EnglishCodecText(const About& about) {
  return With(kEnglishCodec, about.path, LGetWaveFileCodecName(about.tempPath)) + kManual;
}

std::string WaveText(const About& about) {
  if (about.error != lseCodecMissing) return BaseText(about);
  const std::string codec = LGetWaveFileCodecName(about.path);
  return With(codec == kUnknownCodecName ? kUnknownWaveCodec : kWaveCodec, about.path, codec) + kManual;
}

std::string DictationText(const About& about) {
  if (about.error == lseEncrypted) return With(kEncrypted, about.path) + kManual;
  return about.error == lseCodecMissing ? EnglishCodecText(about) : BaseText(about);
}

std::string DecoderText(const About& about) {
  if (about.error == lseCodecMissing) return EnglishCodecText(about);
  return With(kDecoder, about.path, LFile::FolderFromPath(about.tempPath));
}

template <const char* const& kText>
std::string Always(const About& about) {
  return With(kText, about.path);
}

struct Row {
  const char* extension;
  std::string (*text)(const About& about);
};
constexpr Row kRows[] = {
    {".wav", WaveText},        {".mp3", Always<kMp3>},    {".mid", Always<kMidi>},   {".smf", Always<kMidi>},
    {".dct", DictationText},   {".oga", DecoderText},     {".ogg", DecoderText},     {".flac", DecoderText},
    {".wma", DecoderText},     {".act", DecoderText},     {".rec", DecoderText},     {".rcd", DecoderText},
    {".shn", DecoderText},     {".mpc", DecoderText},     {".aac", Always<kPlayer>}, {".m4a", Always<kPlayer>},
    {".mp4", Always<kPlayer>}, {".amr", Always<kPlayer>}, {".dss", Always<kSystem>}, {".msv", Always<kSystem>},
    {".dvf", Always<kSystem>},
};

}  // namespace

std::string GenSourceErrorText(LSoundError error, const std::string& path, const std::string& tempPath) {
  const About about{error, path, tempPath};
  if (error == lseCannotOpen) return BaseText(about);  // whatever it is called: it is not there
  const std::string extension = LFile::ExtensionFromPath(path);
  for (const Row& row : kRows)
    if (LText::EqualsNoCase(row.extension, extension)) return row.text(about);
  return BaseText(about);
}

LProcessResult ProcessGenSourceGetError(LProcessInterface& process, const LSoundSource& source, const std::string& path,
                                        const std::string& tempPath) {
  process.SetError(GenSourceErrorText(source.GetError(), path, tempPath).c_str());
  return lprDone;
}

std::string GenSourceComponentText(const std::string& extension) {
  const bool named = *LGenSourceGetComponentName(extension) != '\0';
  return With(named ? kPlugIn : kNoPlugIn, extension) + kManual;
}
