// Turns any sound file into a source, rung by rung: the program's own reader of its type, a decoder program that writes
// a temporary wave, and last the FFmpeg library, which does the same.
// Law      what stands behind the interface decides how a rung runs: in the process of a bigger job, or each in a dialog
//          of its own. Interface is an LProcessInterface with
//            bool IsInteractive()                            may settings be asked for now?
//            bool AskRawSettings(const LRawSection&)         false: cancelled
//            LProcessResult RunStep(const char* title, Job&) runs Process(LProcessInterface&, Job&)
// Threads  as the interface; the sources it opens belong to the one who gets them.
// Failure  lprFailed, and `out` has the error of the rung that knew the type best; the text goes to SetError unless it is
//          to be silent. lprStopped: the user did not want it; no text.
#pragma once
#include <string>

#include "audiofile/LAifFile.h"
#include "audiofile/LAuFile.h"
#include "audiofile/LClosedFormats.h"
#include "audiofile/LExternalDecode.h"
#include "audiofile/LGSMFile.h"
#include "audiofile/LGenSourceErrors.h"
#include "audiofile/LGenSourceTables.h"
#include "audiofile/LPCDartDecode.h"
#include "audiofile/LRawSettingsStore.h"
#include "audiofile/LTempWave.h"
#include "audiofile/LVocFile.h"
#include "audiofile/LWavSourceDeleteWhenClosed.h"
#include "audiofile/LWaveFile.h"
#include "audiofile/ffmpeg/LFFMPEGDecode.h"
#include "audiofile/mp3/LMP3File.h"
#include "foundation/LText.h"

template <class Interface>
class TGenSourceLadder {
 public:
  TGenSourceLadder(LSoundSource& out, const std::string& path, Interface& interface, bool silent,
                   const std::string& tempFolderHint)
      : out_(out),
        path_(path),
        extension_(LText::LowerCase(LFile::ExtensionFromPath(path))),
        interface_(interface),
        silent_(silent),
        hint_(tempFolderHint) {}

  LProcessResult Run() {
    const Rung rung = Climb();
    if (rung == Opened) return lprDone;
    if (rung == Stopped) return lprStopped;
    if (!silent_) ProcessGenSourceGetError(interface_, out_, path_, wave_);
    return lprFailed;
  }

 private:
  enum Rung { GoOn, Opened, Stopped, GiveUp };
  struct Row {
    const char* extension;
    Rung (TGenSourceLadder::*open)();
  };

  Rung Climb() {
    out_ = LSoundSource(path_.empty() ? lseNoSource : LFile::IsReadableFile(path_) ? lseLaterStage : lseCannotOpen);
    if (out_.GetError() != lseLaterStage) return GiveUp;
    if (const Rung rung = Try(kReaders); rung != GoOn) return rung;
    const LTempWave temporary(hint_);
    wave_ = temporary.Path();
    if (wave_.empty()) return GiveUp;
    if (const Rung rung = Try(kDecoders); rung != GoOn) return rung;
    return OpenWithLibrary();
  }

  template <class Rows>
  Rung Try(const Rows& rows) {
    for (const Row& row : rows)
      if (row.extension == extension_) return (this->*row.open)();
    return GoOn;
  }

  // A source that opened, or the error that tells more than the one so far.
  Rung Take(const LSoundSource& source) {
    if (source.IsOk() || out_.GetError() == lseLaterStage) out_ = source;
    return source.IsOk() ? Opened : GoOn;
  }

  template <LSoundSource (*kOpen)(const std::string&)>
  Rung Read() {
    return Take(kOpen(path_));
  }

  Rung ReadWave() {
    if (Take(LWaveFile::OpenSource(path_)) == Opened) return Opened;
    return out_.GetError() == lseLaterStage ? GoOn : Take(LMP3File::OpenSource(path_, false));
  }
  Rung ReadMp3() { return Take(LMP3File::OpenSource(path_, false)); }
  Rung ReadVox() { return ReadRaw(kVoxAudioSection); }
  Rung ReadRawAudio() { return ReadRaw(kRawAudioSection); }
  Rung ReadRaw(const LRawSection& section) {
    if (interface_.IsInteractive() && !interface_.AskRawSettings(section)) return Stopped;
    return Take(LRawFile::OpenSource(path_, GetRawSettings(section)));
  }
  Rung ReadVoc() {
    if (Take(LVocFile::OpenSource(path_)) == Opened) return Opened;
    if (out_.GetError() != lseCodecMissing) return GoOn;
    return DecodeCopy("VOC-Datei wird geladen", {"devoc", "-w", ".voc", "RCA-VOC-Datei wird entschlüsselt", path_, ""});
  }
  Rung ReadQcp() {
    return DecodeCopy("QCP-Datei wird geladen", {"qcpdec", "", "", "QCP-Datei wird entschlüsselt", path_, ""});
  }

  Rung DecodeCopy(const char* title, LCopiedDecode job) {
    return After(interface_.RunStep(title, job),
                 [&job] { return LWaveFile::OpenSourceDeletingFileWhenClosed(job.output); });
  }
  Rung DecodeByProgram() {
    LCmdLineConvertToWav job{path_, wave_};
    return OpenDecoded("Datei wird geladen", job);
  }
  Rung DecodeDart() {
    LPCDartDecode job{path_, wave_};
    const LProcessResult result = interface_.RunStep("PC Dart-Datei wird geladen", job);
    if (result == lprFailed) return GiveUp;
    return After(result, [this] { return LWaveFile::OpenSourceDeletingFileWhenClosed(wave_); });
  }
  Rung DecodeAmr() {
    constexpr LRawSettings kAmr{8000, 1, 3};
    LAmrDecode job{path_, wave_};
    return After(interface_.RunStep("AMR-Datei wird geladen", job), [this, kAmr] {
      return LSoundSource::Make<LWavSourceDeleteWhenClosed>(LRawFile::OpenSource(wave_, kAmr), wave_);
    });
  }
  Rung OpenWithLibrary() {
    if (extension_ == ".mpdp") return GiveUp;
    LFFMPEGDecode job{path_, wave_};
    const Rung rung = OpenDecoded("Audio verarbeiten", job);
    return rung == GoOn ? GiveUp : rung;
  }

  template <class Job>
  Rung OpenDecoded(const char* title, Job& job) {
    return After(interface_.RunStep(title, job), [this] { return LWaveFile::OpenSourceDeletingFileWhenClosed(wave_); });
  }
  template <class Open>
  Rung After(LProcessResult result, const Open& open) {
    if (result == lprStopped) return Stopped;
    return result == lprDone ? Take(open()) : GoOn;
  }

  static constexpr Row kReaders[] = {
      {".wav", &TGenSourceLadder::ReadWave},
      {".mp3", &TGenSourceLadder::ReadMp3},
      {".aif", &TGenSourceLadder::Read<LAifFile::OpenSource>},
      {".aiff", &TGenSourceLadder::Read<LAifFile::OpenSource>},
      {".aifc", &TGenSourceLadder::Read<LAifFile::OpenSource>},
      {".au", &TGenSourceLadder::Read<LAuFile::OpenSource>},
      {".gsm", &TGenSourceLadder::Read<LGSMFile::OpenSource>},
      {".vox", &TGenSourceLadder::ReadVox},
      {".qcp", &TGenSourceLadder::ReadQcp},
      {".voc", &TGenSourceLadder::ReadVoc},
      {".raw", &TGenSourceLadder::ReadRawAudio},
      {".snd", &TGenSourceLadder::ReadRawAudio},
      {".moh", &TGenSourceLadder::Read<LMOHSource::OpenSource>},
      {".mid", &TGenSourceLadder::Read<LMIDIFile::OpenSource>},
      {".smf", &TGenSourceLadder::Read<LMIDIFile::OpenSource>},
  };
  static constexpr Row kDecoders[] = {
      {".dct", &TGenSourceLadder::Read<LDCTSoundSource::OpenSource>},
      {".dart", &TGenSourceLadder::DecodeDart},
      {".oga", &TGenSourceLadder::DecodeByProgram},
      {".ogg", &TGenSourceLadder::DecodeByProgram},
      {".flac", &TGenSourceLadder::DecodeByProgram},
      {".wma", &TGenSourceLadder::DecodeByProgram},
      {".aac", &TGenSourceLadder::DecodeByProgram},
      {".m4a", &TGenSourceLadder::DecodeByProgram},
      {".m4r", &TGenSourceLadder::DecodeByProgram},
      {".mp4", &TGenSourceLadder::DecodeByProgram},
      {".rec", &TGenSourceLadder::DecodeByProgram},
      {".rcd", &TGenSourceLadder::DecodeByProgram},
      {".mpc", &TGenSourceLadder::DecodeByProgram},
      {".sd2", &TGenSourceLadder::DecodeByProgram},
      {".spx", &TGenSourceLadder::DecodeByProgram},
      {".amr", &TGenSourceLadder::DecodeAmr},
  };

  LSoundSource& out_;
  const std::string& path_;
  std::string extension_;
  Interface& interface_;
  bool silent_;
  const std::string& hint_;
  std::string wave_;  // the temporary one, once it is reserved
};

template <class Interface>
LProcessResult ProcessGenSourceOpenSource(LSoundSource& out, const std::string& path, Interface& interface, bool silent,
                                          const std::string& tempFolderHint) {
  return TGenSourceLadder<Interface>(out, path, interface, silent, tempFolderHint).Run();
}

// The rungs as parts of a bigger job, on its thread. Without somebody to ask it never asks.
class LGenSourceOpenInterfaceProcess final : public LProcessInterfaceForward {
 public:
  explicit LGenSourceOpenInterfaceProcess(LProcessInterface& process, LRawSettingsAsker* asker = nullptr)
      : LProcessInterfaceForward(process), asker_(asker) {}
  bool IsInteractive() const { return asker_ != nullptr; }
  bool AskRawSettings(const LRawSection& section) { return asker_->AskRawSettings(section); }
  template <class Job>
  LProcessResult RunStep(const char* title, Job& job) {
    SetStatus(title, 0);
    LProcessInterfaceForward step(outer_, DropErrors);  // a later rung may succeed
    return Process(step, job);
  }

 private:
  LRawSettingsAsker* asker_;  // outlives this, or null
};
