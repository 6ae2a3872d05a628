#include "shell/TEffectCommands.h"

#include <cmath>

#include "console/DJConsole.h"
#include "effects/DJEqualizerLaw.h"
#include "effects/LEffectTypes.h"
#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"
#include "toolkit/LFileDialog.h"
#include "toolkit/LProcessDialog.h"

namespace {

constexpr const char* kLibraryFolder = "Library";
constexpr const char* kChainFile = "EffectChain.sdf";
constexpr const char* kMasterFile = "MasterEffects.sdf";
constexpr const char* kDefaultFolder = "Effektketten";
constexpr int kThousandths = 1000;

struct FileWords {
  const char* loadTitle;
  const char* saveTitle;
  LFileFilter filter;
  const char* extension;
  const TSettingString& folder;
};

const FileWords& ChainWords() {
  static const FileWords words{"Effektkette laden",
                               "Effektkette speichern",
                               {"Effektkettendatei (*.ecf)", {"*.ecf", "*.sdf"}},
                               ".ecf",
                               TSettings::kMultiEffectsFolder};
  return words;
}

const FileWords& MasterWords() {
  static const FileWords words{"Master-Effekte laden",
                               "Master-Effekte speichern",
                               {"Master-Effekte (*.mcf)", {"*.mcf", "*.sdf"}},
                               ".mcf",
                               TSettings::kMasterEffectsFolder};
  return words;
}

// "": cancelled.
std::string AskForFile(const FileWords& words, LFileDialog::Kind kind, LWindow* parent) {
  LFileDialog dialog(kind, kind == LFileDialog::Kind::Save ? words.saveTitle : words.loadTitle);
  dialog.folder = words.folder.Get();
  if (dialog.folder.empty()) dialog.folder = LPlatform::Folders().GetUserDataFolderAppSubFolder(kDefaultFolder);
  dialog.filters = {words.filter};
  dialog.extension = words.extension;
  if (!dialog.Run(parent)) return "";
  words.folder.Set(LFile::FolderFromPath(dialog.Path()));
  return dialog.Path();
}

std::string LibraryPath(const char* name) {
  return LFile::MakePath(LPlatform::Folders().GetUserDataFolderAppSubFolder(kLibraryFolder), name);
}

// A list of the job's own, since the lists in use may be read by a rebuild meanwhile.
template <class Effects>
struct ListToLoad {
  Effects& list;
  std::string path;
  LEffectFileResult result{};
};

template <class Effects>
LProcessResult Process(LProcessInterface& process, ListToLoad<Effects>& job) {
  process.SetStatusF(0, "Effektliste wird geladen: %s", LFile::TitleFromPath(job.path).c_str());
  const auto bytes = LFile::ReadAll(job.path);
  job.result = job.list.LoadFromSDF(bytes.value_or(""), process);
  return job.result.IsOk() ? lprDone : lprFailed;
}

}  // namespace

TEffectCommands::TEffectCommands(DJConsole& console, TEffectCommandsHost& host) : console_(console), host_(host) {
  for (Rack& rack : racks_) rack.fill(kFlat);
}

LEffectList& TEffectCommands::List(bool master) {
  if (master) return console_.GetMasterEffects();
  return chain_;
}

void TEffectCommands::Changed(bool master) {
  master ? console_.djntfProcessMasterFxChainUpdate() : console_.djntfProcessChainUpdate();
}

// Editing

void TEffectCommands::Do(const TEffectAction& action) {
  using Kind = TEffectAction::Kind;
  if (action.kind == Kind::Save) {
    action.master ? ExportMasterFxChain(action.path) : SaveEffectChainTo(action.path);
  } else if (action.kind == Kind::Load) {
    action.master ? ImportMasterFxChain(action.path) : LoadEffectChainFrom(action.path);
  } else if (Edit(action, List(action.master))) {
    Changed(action.master);
  } else {
    host_.ShowEffectError("Effekte", LText::Format("Effekt %d hat diesen Wert nicht.", action.index + 1));
  }
}

bool TEffectCommands::Edit(const TEffectAction& action, LEffectList& list) {
  using Kind = TEffectAction::Kind;
  if (action.kind == Kind::Add) {
    if (list.Count() >= LEffectList::kMostEffects) return false;
    list.Add(CreateSoundProcessByType(action.type));
    return true;
  }
  if (action.kind == Kind::Clear) {
    list.Clear();
    return true;
  }
  if (!list.IsIndex(action.index)) return false;
  LEffect& effect = list.At(action.index);
  switch (action.kind) {
    case Kind::Remove:
      list.Remove(action.index);
      return true;
    case Kind::Move:
      if (!list.IsIndex(action.second)) return false;
      list.Reorder(action.index, action.second);
      return true;
    case Kind::Set:
      return SetValue(effect, action.second, action.value);
    case Kind::Preset:
      effect.SetPreset(action.second);
      return action.second < effect.GetNumPresets();
    case Kind::Apply:
      chain_.SetAppliedDeckPosition(action.index, action.second, action.on);
      return true;
    case Kind::Bypass:
      effect.SetBypass(action.on);
      return true;
    default:
      return false;
  }
}

bool TEffectCommands::SetValue(LEffect& effect, int index, double value) {
  LSoundProcessParameter parameter;
  if (!effect.GetParameterByIndex(index, &parameter)) return false;
  const int wanted = int(std::lround(parameter.type == LSoundProcessParameter::Decimal ? value * kThousandths : value));
  effect.SetParameterByIndex(index, wanted);
  effect.GetParameterByIndex(index, &parameter);
  return parameter.value == wanted || effect.Type().parameters[std::size_t(index)].clamps;
}

// Files

template <class Effects>
bool TEffectCommands::LoadFrom(const std::string& path, Effects& loaded) {
  ListToLoad<Effects> job{loaded, path};
  LProcessDialog<ListToLoad<Effects>> dialog("Effektliste wird geladen", job);
  dialog.Open(host_.EffectDialogParent());
  if (!job.result.IsOk())
    host_.ShowEffectError(job.result.title, job.result.error);
  else
    host_.ShowEffectMessage(LText::Format("%d Effekte wurden hinzugefügt.", job.result.count));
  return job.result.IsOk();
}

bool TEffectCommands::SaveTo(const std::string& path, const std::string& bytes) {
  const bool saved = LFile::WriteReplacing(path, bytes);
  if (!saved) host_.ShowEffectError("Schreibfehler", "Konnte Datei nicht öffnen, um Effekte zu speichern.");
  return saved;
}

bool TEffectCommands::LoadEffectChainFrom(const std::string& path) {
  TSoundProcessChain loaded;
  if (!LoadFrom(path, loaded)) return false;
  chain_.Append(std::move(loaded));
  Changed(false);
  return true;
}

bool TEffectCommands::ImportMasterFxChain(const std::string& path) {
  LMasterEffects loaded;
  if (!LoadFrom(path, loaded)) return false;
  console_.GetMasterEffects() = std::move(loaded);
  Changed(true);
  return true;
}

bool TEffectCommands::SaveEffectChainTo(const std::string& path) { return SaveTo(path, chain_.SaveToSDF()); }

bool TEffectCommands::ExportMasterFxChain(const std::string& path) {
  return SaveTo(path, console_.GetMasterEffects().SaveToSDF());
}

void TEffectCommands::LoadEffectChain() {
  const std::string path = AskForFile(ChainWords(), LFileDialog::Kind::OpenFile, host_.EffectDialogParent());
  if (!path.empty()) LoadEffectChainFrom(path);
}

void TEffectCommands::SaveEffectChain() {
  const std::string path = AskForFile(ChainWords(), LFileDialog::Kind::Save, host_.EffectDialogParent());
  if (!path.empty()) SaveEffectChainTo(path);
}

void TEffectCommands::CmImportEffectList() {
  const std::string path = AskForFile(MasterWords(), LFileDialog::Kind::OpenFile, host_.EffectDialogParent());
  if (!path.empty()) ImportMasterFxChain(path);
}

void TEffectCommands::CmExportEffectList() {
  const std::string path = AskForFile(MasterWords(), LFileDialog::Kind::Save, host_.EffectDialogParent());
  if (!path.empty()) ExportMasterFxChain(path);
}

void TEffectCommands::LoadDefaults() {
  LProcessInterfaceVoid nobody;
  if (const auto bytes = LFile::ReadAll(LibraryPath(kChainFile))) chain_.LoadFromSDF(*bytes, nobody);
  if (const auto bytes = LFile::ReadAll(LibraryPath(kMasterFile)))
    console_.GetMasterEffects().LoadFromSDF(*bytes, nobody);
}

void TEffectCommands::SaveDefaults() {
  SaveEffectChainTo(LibraryPath(kChainFile));
  ExportMasterFxChain(LibraryPath(kMasterFile));
}

// The equalisers

void TEffectCommands::DeckUpdateEQRack(DJDeckPosition deck, int band, int position) {
  racks_[std::size_t(deck)].at(std::size_t(band)) = position;
  ApplyRack(deck);
}

void TEffectCommands::ResetEQRack(DJDeckPosition deck) {
  racks_[std::size_t(deck)].fill(kFlat);
  ApplyRack(deck);
}

void TEffectCommands::ApplyRack(DJDeckPosition position) {
  std::array<LLevel, TEqualizer::kBands> levels{};
  for (std::size_t band = 0; band < levels.size(); ++band)
    levels[band] = EqualizerDbFromSlider(racks_[std::size_t(position)][band]);
  console_.CmDeckUpdateEQ(*console_.GetDeck(position), levels);
}
