#include "support/EngineData.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

std::string TestDataPath(const std::string& name) { return std::string(TAVI_TEST_DATA) + "/" + name; }

namespace {

const std::string kFolder = TestDataPath("engine/");

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "engine data: %s\n", what.c_str());
  std::abort();
}

const std::string& FileBytes(const std::string& name) {
  static std::map<std::string, std::string> files;
  std::string& bytes = files[name];
  if (!bytes.empty()) return bytes;
  std::ifstream file(kFolder + name, std::ios::binary);
  std::stringstream all;
  all << file.rdbuf();
  bytes = all.str();
  if (bytes.empty()) Fail("cannot read " + name);
  return bytes;
}

std::vector<std::string> SplitAt(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::stringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

template <class Stored, class T>
std::vector<T> Convert(const char* at, std::size_t count) {
  std::vector<T> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    Stored value;
    std::memcpy(&value, at + i * sizeof value, sizeof value);
    values[i] = T(value);
  }
  return values;
}

std::vector<int> Make(const std::string& recipe) {
  const std::vector<std::string> words = SplitAt(recipe, ' ');
  std::map<std::string, long long> values;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const auto equals = words[i].find('=');
    values[words[i].substr(0, equals)] = std::stoll(words[i].substr(equals + 1));
  }
  const auto frames = std::size_t(values["frames"]), channels = std::size_t(values["ch"]);
  if (words[0] == "lcg") return Engine::Noise(unsigned(values["seed"]), values["amp"], frames * channels);
  if (words[0] == "index") {
    std::vector<int> samples;
    for (int frame = 0; frame < int(frames); ++frame) samples.insert(samples.end(), {frame, -frame - 1});
    return samples;
  }
  if (words[0] == "impulse") {
    std::vector<int> samples(frames * 2);
    samples[0] = int(values["left"]);
    samples[1] = int(values["right"]);
    return samples;
  }
  if (words[0] == "silence") return std::vector<int>(frames * channels);
  if (words[0] != "silence_lcg") Fail("unknown recipe " + recipe);
  const auto lead = std::size_t(values["lead"]);
  std::vector<int> samples(lead * channels);
  const std::vector<int> noise = Engine::Noise(unsigned(values["seed"]), values["amp"], (frames - lead) * channels);
  samples.insert(samples.end(), noise.begin(), noise.end());
  return samples;
}

}  // namespace

class EngineData {
 public:
  EngineData() {
    for (const std::string& line : SplitAt(FileBytes("manifest.tsv"), '\n'))
      if (line[0] != '#') AddRow(SplitAt(line, '\t'));
  }
  std::map<std::string, EngineCase> cases;

 private:
  void AddRow(const std::vector<std::string>& row) {
    EngineCase& data = cases[row[1]];
    if (row[0] == "case") {
      data.id = row[1];
      data.operation = row[2];
    } else if (row[0] == "param") {
      data.params_[row[2]] = row[3];
    } else if (row[0] == "script") {
      data.script_ = row[2];
    } else if (row[0] == "recipe") {
      data.inputs_[row[2]].recipe = row[3];
    } else {
      auto& arrays = row[0] == "in" ? data.inputs_ : data.outputs_;
      arrays[row[2]] = {row[3], row[5], "", row.size() > 7 ? row[7] : "abs 0", std::stoul(row[4]), std::stoul(row[6])};
    }
  }
};

namespace {
const EngineData& Data() {
  static const EngineData data;
  return data;
}
}  // namespace

const EngineCase& Engine::Case(const std::string& id) {
  const auto found = Data().cases.find(id);
  if (found == Data().cases.end()) Fail("no case " + id);
  return found->second;
}

std::vector<const EngineCase*> Engine::CasesBelow(const std::string& prefix) {
  std::vector<const EngineCase*> found;
  for (const auto& [id, data] : Data().cases)
    if (id.starts_with(prefix)) found.push_back(&data);
  if (found.empty()) Fail("no cases below " + prefix);
  return found;
}

std::vector<int> Engine::Noise(unsigned seed, long long amplitude, std::size_t count) {
  std::vector<int> samples(count);
  for (int& sample : samples) {
    seed = seed * 1664525U + 1013904223U;
    sample = int((std::int64_t(std::int32_t(seed)) * amplitude) >> 31);
  }
  return samples;
}

int EngineCase::Int(const std::string& key, int fallback) const {
  const auto found = params_.find(key);
  return found == params_.end() ? fallback : std::stoi(found->second);
}

double EngineCase::Decimal(const std::string& key) const {
  const auto found = params_.find(key);
  return found == params_.end() ? 0 : std::stod(found->second);
}

std::pair<std::string, double> EngineCase::Tolerance(const std::string& name) const {
  const std::vector<std::string> words = SplitAt(outputs_.at(name).tolerance, ' ');
  return {words.at(0), std::stod(words.at(1))};
}

std::string EngineCase::Text(const std::string& key) const {
  const auto found = params_.find(key);
  return found == params_.end() ? "" : found->second;
}

std::vector<EngineStep> EngineCase::Steps() const {
  std::vector<EngineStep> steps;
  for (const std::string& part : SplitAt(script_, ';')) {
    EngineStep step;
    std::stringstream words(part);
    words >> step.word;
    for (std::string word; words >> word;) step.arguments.push_back(word);
    steps.push_back(step);
  }
  return steps;
}

template <class T>
std::vector<T> EngineCase::Load(const Array& array) {
  if (!array.recipe.empty()) {
    const std::vector<int> made = Make(array.recipe);
    return {made.begin(), made.end()};
  }
  const char* at = FileBytes(array.file).data() + array.offset;
  if (array.type == "i32") return Convert<std::int32_t, T>(at, array.count);
  if (array.type == "i64") return Convert<std::int64_t, T>(at, array.count);
  if (array.type == "f64") return Convert<double, T>(at, array.count);
  return Convert<unsigned char, T>(at, array.count);
}

template <class T>
std::vector<T> EngineCase::In(const std::string& name) const {
  if (inputs_.count(name) == 0) Fail(id + ": no input " + name);
  return Load<T>(inputs_.at(name));
}

template <class T>
std::vector<T> EngineCase::Out(const std::string& name) const {
  if (!HasOut(name)) Fail(id + ": no output " + name);
  return Load<T>(outputs_.at(name));
}

template std::vector<int> EngineCase::In(const std::string&) const;
template std::vector<long long> EngineCase::In(const std::string&) const;
template std::vector<double> EngineCase::In(const std::string&) const;
template std::vector<unsigned char> EngineCase::In(const std::string&) const;
template std::vector<int> EngineCase::Out(const std::string&) const;
template std::vector<long long> EngineCase::Out(const std::string&) const;
template std::vector<double> EngineCase::Out(const std::string&) const;
template std::vector<unsigned char> EngineCase::Out(const std::string&) const;
