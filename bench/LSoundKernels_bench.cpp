// Every kernel in every form that this machine can run; items are samples (filters: frames).
#include <benchmark/benchmark.h>

#include <vector>

#include "sound/LRateRows.h"
#include "sound/kernels/LSoundKernels.h"

namespace {

constexpr int kCount = 8192;

std::vector<int> Samples() {
  std::vector<int> samples;
  for (int i = 0; i < kCount; ++i) samples.push_back(int(unsigned(i) * 2654435761U) >> 12);
  return samples;
}

template <class Body>
void Add(const char* kernel, const LSoundKernels& form, Body body) {
  benchmark::RegisterBenchmark((std::string(kernel) + "/" + form.name).c_str(), [body, &form](benchmark::State& state) {
    const std::vector<int> in = Samples();
    std::vector<int> out = Samples();
    for (auto _ : state) {
      body(form, out.data(), in.data());
      benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kCount);
  });
}

void AddForm(const LSoundKernels& form) {
  Add("mixChannel", form, [](const LSoundKernels& k, int* out, const int* in) {
    k.mixChannel(out, 2, in, 2, kCount / 2, 0x7fffff);
    k.mixChannel(out + 1, 2, in + 1, 2, kCount / 2, 0x6fffff);
  });
  Add("mixFrames", form, [](const LSoundKernels& k, int* out, const int* in) {
    k.mixFrames(out, in, kCount / 2, {2, 2, {0, 1}, {0x7fffff, 0x6fffff}});
  });
  Add("gainQuick", form, [](const LSoundKernels& k, int* out, const int*) { k.gainQuick(out, kCount, 511); });
  Add("peak", form, [](const LSoundKernels& k, int*, const int* in) { benchmark::DoNotOptimize(k.peak(in, kCount)); });
  Add("squares", form, [](const LSoundKernels& k, int*, const int* in) {
    std::uint64_t high = 0, low = 0;
    k.squares(in, kCount, 1, high, low);
    benchmark::DoNotOptimize(high + low);
  });
  Add("toDevice", form, [](const LSoundKernels& k, int* out, const int* in) { k.toDevice(out, in, kCount); });
}

class RateTable final : public LConvertRateBase {
 public:
  RateTable() : LConvertRateBase(44100, 48000, kRateTaps, false, false, Rows::OnRequest) {}
};

void BM_Filter(benchmark::State& state, const LRateKernels* kernels, bool stereo) {
  const RateTable table;
  LRateRows rows(table);
  const std::vector<std::int16_t> plane(kCount + kRateRowTaps, 1234);
  std::vector<int> out(kCount * 2);
  for (auto _ : state) {
    const LRateRun run{&rows, table.Phases(), table.Step(), kCount, 11};
    LRateCursor cursor{0, 0, 0};
    if (stereo)
      kernels->stereo(run, cursor, plane.data(), plane.data(), out.data(), kCount);
    else
      kernels->mono(run, cursor, plane.data(), out.data(), 1, kCount);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

}  // namespace

int main(int argc, char** argv) {
  for (const LSoundKernels* form : UsableKernels()) {
    AddForm(*form);
    for (const bool stereo : {false, true}) {
      const std::string name = std::string(stereo ? "filterStereo/" : "filterMono/") + form->name;
      benchmark::RegisterBenchmark(name.c_str(), BM_Filter, form->rate, stereo);
    }
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
