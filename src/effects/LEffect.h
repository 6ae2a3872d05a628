// Base of the effects that stand in chains: values as the table of its type describes them, presets, bypass. A change of
// a value never reaches a running source; the console rebuilds the graph.
// Units    values are whole numbers as LSoundProcessParameter has them: decimals in thousandths, times in ms, levels in
//          dB.
// Threads  [main]; the sources that an effect opens hold no reference back.
// Failure  a value outside its range is clamped or refused, as its row says. What is loaded is always clamped.
#pragma once
#include <memory>
#include <span>
#include <vector>

#include "foundation/LSDF.h"
#include "sound/LSoundProcess.h"

struct LEffectParameter {  // in the order of a table's columns. NOLINT(clang-analyzer-optin.performance.Padding)
  const char* name;
  const char* unit;
  LSoundProcessParameter::Type type;
  int low, high, value;  // the value of a new effect
  bool clamps = false;   // a value outside goes to the nearest one inside; else it is refused
};

inline constexpr int kMaxEffectParameters = 7;
inline constexpr int kKeepValue = -0x7fffffff;  // in a preset: leaves the value as it is

struct LEffectPreset {
  const char* name;
  int values[kMaxEffectParameters];  // by parameter
};

class LEffect;

// A row of the table of effects (LEffectTypes.h).
struct LEffectType {  // NOLINT(clang-analyzer-optin.performance.Padding): as above
  int number;         // stored in files; never changes
  const char* name;
  std::span<const LEffectParameter> parameters;
  std::span<const LEffectPreset> presets;
  std::unique_ptr<LEffect> (*create)();
  bool offered;  // in the lists that a user picks from
};

class LEffect : public LSoundProcess {
 public:
  std::string GetName() const override { return type_.name; }
  int GetSoundProcessType() const override { return type_.number; }
  int GetNumParameters() const override { return int(values_.size()); }
  void SetParameterByIndex(int index, int value) override;
  bool GetParameterByIndex(int index, LSoundProcessParameter* parameter) const override;
  int GetNumPresets() const override { return int(type_.presets.size()); }
  std::string GetPresetsName(int index) const override;
  void SetPreset(int index) override;
  int GetIndexInPreset() const override;  // -1: the values are those of no preset

  const LEffectType& Type() const { return type_; }
  bool IsBypassed() const { return bypass_; }
  void SetBypass(bool on) { bypass_ = on; }
  std::unique_ptr<LEffect> Copy() const;
  LSoundProcess* GetNewCopy() const override { return Copy().release(); }
  void LoadValue(int index, int value);  // clamped

  // What stands in a file for this effect: a container 4096 with the bypass, then an int for each value, ids from 8192
  // on. `chunks` walks the effect's container.
  void SaveToSDF(LSDFWriter& writer) const;
  void LoadFromSDF(LSDFReaderChunkIterator chunks);
  const LSDFUnknownChunks& UnknownChunks() const { return unknown_; }  // of the effect's container

 protected:
  // For an effect that stores a value in another form, or under an older id.
  virtual int StoredValue(int index) const { return Value(index); }
  virtual void LoadStoredValue(int index, int stored) { LoadValue(index, stored); }
  virtual int ParameterOfChunk(int id) const { return id - kFirstChunk; }  // outside the parameters: unknown

  static constexpr int kFirstChunk = 8192;
  explicit LEffect(int typeNumber);
  int Value(int index) const { return values_[std::size_t(index)]; }
  double Decimal(int index) const { return Value(index) / 1000.0; }
  double Percent(int index) const { return Value(index) / 100.0; }

 private:
  void LoadBase(LSDFReaderChunkIterator chunks);

  const LEffectType& type_;
  std::vector<int> values_;
  bool bypass_ = false;
  LSDFUnknownChunks unknown_, unknownInBase_;
};
