// What adding tracks asks of the world: files, and the program around the library.
// Threads  that of the adding job; who answers in a window brings the question to the main thread.
#pragma once
#include <string>

#include "foundation/LProcessInterface.h"

class LHttpFetcher;

struct TTrackFacts {
  int endSample = 0, sampleRate = 0;          // frames, Hz
  std::string title, artist, album, comment;  // empty: the tags say nothing
};

class TTrackReader {
 public:
  virtual ~TTrackReader() = default;
  virtual bool IsSupported(const std::string& path) = 0;
  virtual bool NeedConvert(const std::string& path) = 0;
  virtual std::string CachedPath(const std::string& path) = 0;
  virtual bool Open(LProcessInterface& process, const std::string& path, TTrackFacts& facts) = 0;  // sets the numbers
  virtual void ReadTags(const std::string& path, TTrackFacts& facts) = 0;                          // sets the texts
};

// The real ones.
class TFileTrackReader final : public TTrackReader {
 public:
  bool IsSupported(const std::string& path) override;
  bool NeedConvert(const std::string& path) override;
  std::string CachedPath(const std::string& path) override;
  bool Open(LProcessInterface& process, const std::string& path, TTrackFacts& facts) override;
  void ReadTags(const std::string& path, TTrackFacts& facts) override;
};

struct TTrackTempo {
  double bpm = 0;
  int beatOffset = 0;  // frames of the track's rate
};

class TLibraryHost {
 public:
  virtual ~TLibraryHost() = default;
  // Decodes into the cache. lprFailed: it cannot be played; any result but lprDone leaves the track out.
  virtual LProcessResult Convert(LProcessInterface& process, const std::string& path) = 0;
  virtual bool FindTempo(const std::string& /*path*/, int /*sampleRate*/, TTrackTempo&) { return false; }
  virtual void TellDuplicate(const std::string& /*path*/) {}
  virtual void TellNotLoaded(const std::string& /*path*/) {}
  virtual void TellNoTracks(const std::string& /*listPath*/) {}
  virtual LHttpFetcher* HttpFetcher() { return nullptr; }
};

// What the program tells about tracks, lists and the library.
namespace TLibraryTexts {
inline constexpr const char* kListIsEmpty =
    "Durch Klicken der \"+ Hinzufügen\"-Schaltfläche unten wird Musik zur Liste hinzugefügt";
inline constexpr const char* kLoadingLibrary = "Audiobibliothek wird geladen...";
inline constexpr const char* kAdding = "Wird hinzugefügt: %s";
inline constexpr const char* kAddingFiles = "Dateien werden hinzufügt...";
inline constexpr const char* kCounting = "Hinzuzufügende Dateien werden berechnet. Bitte warten...";
inline constexpr const char* kNotLoadedTitle = "Datei laden";
inline constexpr const char* kNotLoaded =
    "Tavi konnte %s nicht laden. Kann in einem nicht unterstützten Format oder eine beschädigte Datei sein.";
inline constexpr const char* kDuplicateTitle = "Datei ist ein Duplikat";
inline constexpr const char* kDuplicate = "Die Datei \"%s\" ist bereits in der Wiedergabeliste.";
inline constexpr const char* kDoNotWarn = "Bitte nicht mehr warnen.";
inline constexpr const char* kNoTracks =
    "In der gewählten Datei wurden keine Titel gefunden. Die Datei war entweder leer oder keine gültige "
    "Wiedergabelisten-Datei.";
inline constexpr const char* kResolveTitle = "Neuen Dateipfad für die Datei wählen: %s";
}  // namespace TLibraryTexts
