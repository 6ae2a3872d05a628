#include "effects/LEffect.h"

#include <algorithm>

#include "effects/LEffectTypes.h"

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
  return copy;
}
