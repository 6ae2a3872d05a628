// Effects as the user knows them: the chain of the decks, the effects behind the mix, their files, and the decks'
// equalisers.
// Units    effects and values count from 0; equaliser sliders 0 (top) to 100, 50 is flat.
// Threads  [main]
// Failure  files that cannot be read or written are told; a wrong index or value too, and changes nothing.
#pragma once
#include <array>
#include <string>

#include "console/DJDeckPosition.h"
#include "effects/LEffectList.h"
#include "effects/TEqualizer.h"
#include "shell/TEffectAction.h"

class DJConsole;
class LWindow;

class TEffectCommandsHost {
 public:
  virtual void ShowEffectError(const std::string& title, const std::string& text) = 0;
  virtual void ShowEffectMessage(const std::string& text) = 0;
  virtual LWindow* EffectDialogParent() = 0;

 protected:
  ~TEffectCommandsHost() = default;
};

class TEffectCommands {
 public:
  static constexpr int kFlat = 50, kKilled = 51;  // -24 dB

  TEffectCommands(DJConsole& console, TEffectCommandsHost& host);

  const TSoundProcessChain& Chain() const { return chain_; }
  void Do(const TEffectAction& action);

  void LoadEffectChain();  // asks for the file
  void SaveEffectChain();
  bool LoadEffectChainFrom(const std::string& path);
  bool SaveEffectChainTo(const std::string& path);
  void CmImportEffectList();
  void CmExportEffectList();
  bool ImportMasterFxChain(const std::string& path);
  bool ExportMasterFxChain(const std::string& path);

  // The lists that stay from one run to the next. A file that is not there is no error.
  void LoadDefaults();
  void SaveDefaults();

  void DeckUpdateEQRack(DJDeckPosition deck, int band, int position);
  void ResetEQRack(DJDeckPosition deck);
  int EQPosition(DJDeckPosition deck, int band) const { return racks_[std::size_t(deck)][std::size_t(band)]; }

 private:
  using Rack = std::array<int, TEqualizer::kBands>;

  LEffectList& List(bool master);
  void Changed(bool master);
  bool Edit(const TEffectAction& action, LEffectList& list);
  static bool SetValue(LEffect& effect, int index, double value);
  void ApplyRack(DJDeckPosition deck);
  template <class Effects>
  bool LoadFrom(const std::string& path, Effects& loaded);
  bool SaveTo(const std::string& path, const std::string& bytes);

  DJConsole& console_;
  TEffectCommandsHost& host_;
  TSoundProcessChain chain_;
  std::array<Rack, kDeckCount> racks_;
};
