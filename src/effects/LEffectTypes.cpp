#include "effects/LEffectTypes.h"

#include <algorithm>

#include "effects/LSPEcho.h"
#include "foundation/LText.h"

namespace {

constexpr bool kOffered = true;

template <class Effect>
std::unique_ptr<LEffect> Create() {
  return std::make_unique<Effect>();
}

constexpr LEffectType kRows[] = {
    {LSPEcho::kType, "Echo", LSPEcho::kParameters, LSPEcho::kPresets, Create<LSPEcho>, kOffered},
};

template <class Matches>
const LEffectType* Find(Matches matches) {
  const auto* row = std::find_if(std::begin(kRows), std::end(kRows), matches);
  return row == std::end(kRows) ? nullptr : row;
}

}  // namespace

std::span<const LEffectType> LEffectTypes::Rows() { return kRows; }

const LEffectType& FindEffectType(int number) {
  return *Find([&](const LEffectType& row) { return row.number == number; });
}

std::unique_ptr<LEffect> CreateSoundProcessByType(int number) {
  const LEffectType* row = Find([&](const LEffectType& r) { return r.number == number && r.offered; });
  return row ? row->create() : nullptr;
}

const LEffectType* FindEffectTypeByName(std::string_view name) {
  return Find([&](const LEffectType& row) { return row.offered && LText::EqualsNoCase(row.name, name); });
}
