// The table of effects: number, name, values, presets and creation of each, from which chains, files, panels and scripts
// work.
// Threads  [any]
// Failure  an unknown number creates nothing.
#pragma once
#include "effects/LEffect.h"

namespace LEffectTypes {
std::span<const LEffectType> Rows();
}

// The row of a number that is in the table.
const LEffectType& FindEffectType(int number);
// Effects that a user can pick, by number; null for any other.
std::unique_ptr<LEffect> CreateSoundProcessByType(int number);
// By the name shown, the case ignored; null: no such effect is offered.
const LEffectType* FindEffectTypeByName(std::string_view name);
