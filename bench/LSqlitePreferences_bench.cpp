// Settings. Claim: a read takes under 10 us. A set takes what the disk needs to have it for good.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>

#include "platform/sqlite/LSqlitePreferences.h"

namespace {

class Store {
 public:
  Store() : folder_("/tmp/tavi-settings-" + std::to_string(::getpid())) {
    std::filesystem::create_directory(folder_);
    preferences.emplace(LSqlitePreferences::PathIn(folder_));
    for (int i = 0; i < 300; ++i) preferences->Set("Settings/Key" + std::to_string(i), "Wert");
  }
  ~Store() {
    preferences.reset();
    std::filesystem::remove_all(folder_);
  }
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  std::optional<LSqlitePreferences> preferences;

 private:
  std::string folder_;
};

void SettingGet(benchmark::State& state) {
  Store store;
  for (auto _ : state) benchmark::DoNotOptimize(store.preferences->Get("Settings/Key77"));
}

void SettingSet(benchmark::State& state) {
  Store store;
  int value = 0;
  for (auto _ : state) store.preferences->Set("Settings/Key77", std::to_string(++value));
}

BENCHMARK(SettingGet);
BENCHMARK(SettingSet)->Iterations(200)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
