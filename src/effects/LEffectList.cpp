#include "effects/LEffectList.h"

#include <algorithm>

#include "effects/LEffectTypes.h"

namespace {

// Chunks of a list file's root, for each effect in this order.
constexpr std::uint16_t kFlagsContainer = 4096, kTypeChunk = 12288, kEffectContainer = 8192;
constexpr std::uint16_t kContentVersion = 16;

constexpr LEffectFileResult kUnreadable{"Lesefehler", "Konnte Datei nicht öffnen, um Effekte zu laden."};
constexpr LEffectFileResult kTooNew{"Nicht unterstützte Effektliste",
                                    "Diese Effektlistendatei wird von dieser Version von Tavi nicht unterstützt."};

constexpr LEffectFileFormat kDeckFile{
    12, true, {"Lesefehler", "Die bereitgestellte Liste ist keine Liste mit Deck-Effekten."}};
constexpr LEffectFileFormat kMasterFile{
    11, false, {"Lesefehler", "Die geladene Datei ist nicht der Liste der Master-Effekte."}};

void ReadFlags(LSDFReaderChunkIterator chunks, std::array<bool, LEffectList::kDecks>& applied) {
  for (; chunks.IsValid(); chunks.Next())
    if (chunks->id < applied.size() && chunks->type == lsdfBool) applied[chunks->id] = chunks.Bool();
}

}  // namespace

void LEffectList::Add(std::unique_ptr<LEffect> effect) {
  if (effect) items_.push_back({std::move(effect)});
}

void LEffectList::Remove(int index) {
  if (IsIndex(index)) items_.erase(items_.begin() + index);
}

void LEffectList::Reorder(int from, int to) {
  if (!IsIndex(from) || !IsIndex(to)) return;
  const auto first = items_.begin() + std::min(from, to), last = items_.begin() + std::max(from, to) + 1;
  std::rotate(first, from < to ? first + 1 : last - 1, last);
}

void LEffectList::Clear() {
  items_.clear();
  unknown_.clear();
}

std::string LEffectList::Save(const LEffectFileFormat& format) const {
  LSDFWriter writer(format.kind, kContentVersion, unknown_);
  int order = 0;
  for (const Item& item : items_) {
    if (format.hasFlags) {
      writer.StartContainer(kFlagsContainer, ++order);
      for (std::size_t deck = 0; deck < item.applied.size(); ++deck)
        writer.WriteBool(std::uint16_t(deck), item.applied[deck], int(deck) + 1);
      writer.EndContainer();
    }
    writer.WriteInt(kTypeChunk, item.effect->GetSoundProcessType(), ++order);
    writer.StartContainer(kEffectContainer, ++order, item.effect->UnknownChunks());
    item.effect->SaveToSDF(writer);
    writer.EndContainer();
  }
  return writer.Finish();
}

LEffectFileResult LEffectList::Load(std::string_view bytes, const LEffectFileFormat& format,
                                    LProcessInterface& process) {
  LSDFReader reader;
  const LSDFOpen opened = reader.Open(bytes, format.kind);
  if (opened == LSDFOpen::OtherKind) return format.otherKind;
  if (opened != LSDFOpen::Good) return kUnreadable;
  if (reader.GetContentVersion() > kContentVersion) return kTooNew;
  Item item;
  int type = 0;
  LEffectFileResult result;
  for (LSDFReaderChunkIterator chunks(reader); chunks.IsValid() && !process.IsToStop(); chunks.Next()) {
    process.SetProgress(double(chunks->start) / double(bytes.size()));
    if (chunks->id == kFlagsContainer && format.hasFlags) {
      ReadFlags(chunks.Inside(), item.applied);
    } else if (chunks->id == kTypeChunk) {
      type = chunks.Int();
    } else if (chunks->id == kEffectContainer) {
      item.effect = Count() < kMostEffects ? CreateSoundProcessByType(type) : nullptr;
      if (!item.effect) continue;
      item.effect->LoadFromSDF(chunks.Inside());
      items_.push_back({std::move(item.effect), item.applied});
      ++result.count;
    } else {
      chunks.KeepUnknown(unknown_);
      continue;
    }
    chunks.CountKnown();
  }
  return result;
}

// The chain of the decks

void TSoundProcessChain::AddProcess(std::unique_ptr<LEffect> effect, bool onA, bool onB) {
  if (effect) items_.push_back({std::move(effect), {onA, onB}});
}

bool TSoundProcessChain::IsDeckEffectMuted(int deck, int index) const {
  return !IsIndex(index) || deck < 0 || deck >= kDecks || !items_[std::size_t(index)].applied[std::size_t(deck)];
}

void TSoundProcessChain::SetAppliedDeckPosition(int index, int deck, bool applied) {
  if (!IsIndex(index)) return;
  for (int each = 0; each < kDecks; ++each)
    if (deck == each || deck == kBothDecks) items_[std::size_t(index)].applied[std::size_t(each)] = applied;
}

LSoundSource TSoundProcessChain::OpenSource(int deck, LSoundSource source) const {
  if (deck < 0 || deck >= kDecks) return source;
  for (const Item& item : items_)
    if (!item.effect->IsBypassed() && item.applied[std::size_t(deck)]) source = item.effect->OpenSource(source);
  return source;
}

std::string TSoundProcessChain::SaveToSDF() const { return Save(kDeckFile); }

LEffectFileResult TSoundProcessChain::LoadFromSDF(std::string_view bytes, LProcessInterface& process) {
  return Load(bytes, kDeckFile, process);
}

void TSoundProcessChain::Append(TSoundProcessChain&& other) {
  const int before = Count() * kDeckFile.ChunksPerEffect();
  for (Item& item : other.items_)
    if (Count() < kMostEffects) items_.push_back(std::move(item));
  for (LSDFUnknownChunk& chunk : other.unknown_) {
    chunk.order += before;
    unknown_.push_back(std::move(chunk));
  }
  other.Clear();
}

// Behind the mix

LSoundSource LMasterEffects::OpenSource(LSoundSource source) const {
  for (const Item& item : items_)
    if (!item.effect->IsBypassed()) source = item.effect->OpenSource(source);
  return source;
}

std::string LMasterEffects::SaveToSDF() const { return Save(kMasterFile); }

LEffectFileResult LMasterEffects::LoadFromSDF(std::string_view bytes, LProcessInterface& process) {
  LMasterEffects loaded;
  const LEffectFileResult result = loaded.Load(bytes, kMasterFile, process);
  if (result.IsOk()) *this = std::move(loaded);
  return result;
}
