#include "effects/LEffect.h"

#include <algorithm>

#include "effects/LEffectTypes.h"

namespace {
constexpr std::uint16_t kBaseContainer = 4096, kBypassChunk = 8192;
}

LEffect::LEffect(int typeNumber) : type_(FindEffectType(typeNumber)) {
  for (const LEffectParameter& parameter : type_.parameters) values_.push_back(parameter.value);
}

void LEffect::SetParameterByIndex(int index, int value) {
  if (index < 0 || index >= GetNumParameters()) return;
  const LEffectParameter& row = type_.parameters[std::size_t(index)];
  if (row.clamps || (value >= row.low && value <= row.high)) LoadValue(index, value);
}

void LEffect::LoadValue(int index, int value) {
  if (index < 0 || index >= GetNumParameters()) return;
  const LEffectParameter& row = type_.parameters[std::size_t(index)];
  values_[std::size_t(index)] = std::clamp(value, row.low, row.high);
}

bool LEffect::GetParameterByIndex(int index, LSoundProcessParameter* parameter) const {
  if (index < 0 || index >= GetNumParameters()) return false;
  const LEffectParameter& row = type_.parameters[std::size_t(index)];
  *parameter = {row.name, row.unit, row.type, Value(index), row.low, row.high};
  return true;
}

std::string LEffect::GetPresetsName(int index) const {
  return index >= 0 && index < GetNumPresets() ? type_.presets[std::size_t(index)].name : "";
}

void LEffect::SetPreset(int index) {
  if (index < 0 || index >= GetNumPresets()) return;
  for (int i = 0; i < GetNumParameters(); ++i) {
    const int value = type_.presets[std::size_t(index)].values[i];
    if (value != kKeepValue) LoadValue(i, value);
  }
}

int LEffect::GetIndexInPreset() const {
  for (int preset = 0; preset < GetNumPresets(); ++preset) {
    bool same = true;
    for (int i = 0; i < GetNumParameters(); ++i) {
      const int value = type_.presets[std::size_t(preset)].values[i];
      same = same && (value == kKeepValue || value == Value(i));
    }
    if (same) return preset;
  }
  return -1;
}

std::unique_ptr<LEffect> LEffect::Copy() const {
  std::unique_ptr<LEffect> copy = type_.create();
  copy->values_ = values_;
  copy->bypass_ = bypass_;
  copy->unknown_ = unknown_;
  copy->unknownInBase_ = unknownInBase_;
  return copy;
}

// Files

void LEffect::SaveToSDF(LSDFWriter& writer) const {
  writer.StartContainer(kBaseContainer, 1, unknownInBase_);
  writer.WriteBool(kBypassChunk, bypass_, 1);
  writer.EndContainer();
  for (int i = 0; i < GetNumParameters(); ++i) writer.WriteInt(std::uint16_t(kFirstChunk + i), StoredValue(i), i + 2);
}

void LEffect::LoadFromSDF(LSDFReaderChunkIterator chunks) {
  for (; chunks.IsValid(); chunks.Next()) {
    const int parameter = chunks->type == lsdfInt ? ParameterOfChunk(chunks->id) : -1;
    const bool isBase = chunks->id == kBaseContainer && chunks->type == lsdfContainer;
    if (isBase) LoadBase(chunks.Inside());
    if (parameter >= 0 && parameter < GetNumParameters()) LoadStoredValue(parameter, chunks.Int());
    if (isBase || (parameter >= 0 && parameter < GetNumParameters()))
      chunks.CountKnown();
    else
      chunks.KeepUnknown(unknown_);
  }
}

void LEffect::LoadBase(LSDFReaderChunkIterator chunks) {
  for (; chunks.IsValid(); chunks.Next()) {
    if (chunks->id != kBypassChunk || chunks->type != lsdfBool) {
      chunks.KeepUnknown(unknownInBase_);
      continue;
    }
    bypass_ = chunks.Bool();
    chunks.CountKnown();
  }
}
