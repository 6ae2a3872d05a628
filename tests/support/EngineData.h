// Reads the independently computed inputs and outputs in tests/data/engine (its README says what the rows are).
// Failure  a missing case, array or file ends the test program: the data belongs to the tree.
#pragma once
#include <map>
#include <string>
#include <utility>
#include <vector>

std::string TestDataPath(const std::string& name);  // below tests/data

struct EngineStep {
  std::string word;
  std::vector<std::string> arguments;
  int Int(std::size_t index) const { return std::stoi(arguments.at(index)); }
};

class EngineCase {
 public:
  std::string id, operation;

  int Int(const std::string& key, int fallback = 0) const;
  std::string Text(const std::string& key) const;
  std::vector<EngineStep> Steps() const;
  double Decimal(const std::string& key) const;  // 0: not given
  // How far an output of floating point may lie off: "abs", "rel" or "rms" (of the difference, relative), and the bound.
  std::pair<std::string, double> Tolerance(const std::string& name) const;
  bool HasOut(const std::string& name) const { return outputs_.count(name) > 0; }
  template <class T = int>
  std::vector<T> In(const std::string& name) const;  // stored, or made by its recipe
  template <class T = int>
  std::vector<T> Out(const std::string& name) const;

 private:
  friend class EngineData;
  struct Array {
    std::string type, file, recipe, tolerance;
    std::size_t count = 0, offset = 0;
  };
  template <class T>
  static std::vector<T> Load(const Array& array);

  std::map<std::string, std::string> params_;
  std::string script_;
  std::map<std::string, Array> inputs_, outputs_;
};

namespace Engine {
const EngineCase& Case(const std::string& id);
std::vector<const EngineCase*> CasesBelow(const std::string& prefix);           // "rate/convert/"
std::vector<int> Noise(unsigned seed, long long amplitude, std::size_t count);  // the "lcg" recipe
}  // namespace Engine
