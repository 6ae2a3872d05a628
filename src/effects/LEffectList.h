// Effects in a row, and the files they are kept in: the chain of the decks, each effect with a switch per deck, and the
// list behind the mix.
// Units    decks 0 and 1; indices by place in the list
// Threads  [main]: edited here, and read only while the graph is rebuilt.
// Failure  loading says what is wrong in the user's words and leaves the list as it was; what a damaged file still holds
//          is taken. At most kMostEffects effects a file.
#pragma once
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "effects/LEffect.h"
#include "foundation/LProcessInterface.h"

struct LEffectFileResult {
  const char* title = nullptr;
  const char* error = nullptr;  // null: loaded
  int count = 0;                // of effects that were added
  bool IsOk() const { return error == nullptr; }
};

struct LEffectFileFormat {
  std::uint32_t kind;
  bool hasFlags;  // of the decks
  LEffectFileResult otherKind;
  int ChunksPerEffect() const { return hasFlags ? 3 : 2; }
};

// What both lists share: an order of effects, and the chunks of a file that were not understood.
class LEffectList {
 public:
  static constexpr int kMostEffects = 256;
  static constexpr int kDecks = 2;

  struct Item {
    std::unique_ptr<LEffect> effect;
    std::array<bool, kDecks> applied{true, true};  // of no meaning behind the mix
  };

  int Count() const { return int(items_.size()); }
  bool IsIndex(int index) const { return index >= 0 && index < Count(); }
  LEffect& At(int index) { return *items_[std::size_t(index)].effect; }
  const LEffect& At(int index) const { return *items_[std::size_t(index)].effect; }
  void Add(std::unique_ptr<LEffect> effect);  // null is ignored
  void Remove(int index);
  void Reorder(int from, int to);
  void Clear();

 protected:
  LEffectList() = default;
  LEffectList(LEffectList&&) = default;
  LEffectList& operator=(LEffectList&&) = default;
  ~LEffectList() = default;
  std::string Save(const LEffectFileFormat& format) const;
  LEffectFileResult Load(std::string_view bytes, const LEffectFileFormat& format, LProcessInterface& process);

  std::vector<Item> items_;
  LSDFUnknownChunks unknown_;  // of the file's root
};

class TSoundProcessChain final : public LEffectList {
 public:
  static constexpr int kBothDecks = 7;

  void AddProcess(std::unique_ptr<LEffect> effect, bool onA, bool onB);
  bool IsDeckEffectMuted(int deck, int index) const;
  void SetAppliedDeckPosition(int index, int deck, bool applied);  // kBothDecks takes both
  LSoundSource OpenSource(int deck, LSoundSource source) const;    // another deck: the source itself

  std::string SaveToSDF() const;
  LEffectFileResult LoadFromSDF(std::string_view bytes, LProcessInterface& process);  // appends
  void Append(TSoundProcessChain&& other);                                            // as far as there is room
};

class LMasterEffects final : public LEffectList {
 public:
  LSoundSource OpenSource(LSoundSource source) const;
  std::string SaveToSDF() const;
  LEffectFileResult LoadFromSDF(std::string_view bytes, LProcessInterface& process);  // replaces, once it is proved
};
