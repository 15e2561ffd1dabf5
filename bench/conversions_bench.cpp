// Conversions per second of Convert for one code of each family — a date
// ("D2/"), a time ("MTHS"), a numeric mask ("MD2,$") and title case
// ("MCT") — each over the same 10^6 varied inputs, against as many
// snprintf("%.2f") calls measured in the same run. The budget is 5x the
// baseline's time per call.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/bench_ratio.h"
#include "crvlib/conversions.h"
#include "crvlib/locale.h"

namespace crvlib {
namespace {

constexpr int kInputs = 1000000;

// A cheap deterministic sequence, so every run sees the same inputs.
uint32_t Mix(uint32_t i) {
  i ^= i >> 16;
  i *= 0x7feb352dU;
  i ^= i >> 15;
  i *= 0x846ca68bU;
  return i ^ (i >> 16);
}

std::vector<String> Numbers(uint32_t modulus, int64_t offset) {
  std::vector<String> v;
  v.reserve(kInputs);
  for (int i = 0; i < kInputs; ++i) {
    const std::string s = std::to_string(static_cast<int64_t>(Mix(i) % modulus) + offset);
    const std::u16string u(s.begin(), s.end());
    v.emplace_back(std::u16string_view(u));
  }
  return v;
}

std::vector<String> Phrases() {
  static constexpr const char16_t* kWords[] = {u"the",  u"QUICK", u"brown", u"fox",     u"o'neil",
                                               u"jr.",  u"42nd",  u"Main",  u"street",  u"a",
                                               u"lazy", u"DOG",   u"x",     u"mcdonald"};
  std::vector<String> v;
  v.reserve(kInputs);
  for (int i = 0; i < kInputs; ++i) {
    std::u16string s;
    for (uint32_t r = Mix(i), n = 2 + r % 4; n; --n, r /= 14) {
      if (!s.empty()) s += u' ';
      s += kWords[(r >> 3) % 14];
    }
    v.emplace_back(std::u16string_view(s));
  }
  return v;
}

void BM_SnprintfFixed2(benchmark::State& state) {
  std::vector<double> values(kInputs);
  for (int i = 0; i < kInputs; ++i)
    values[i] = (static_cast<int64_t>(Mix(i) % 2000000000) - 1e9) / 100;
  char buf[64];
  size_t i = 0;
  for (auto _ : state) {
    int n = std::snprintf(buf, sizeof buf, "%.2f", values[i++]);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(buf);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SnprintfFixed2)->Iterations(kInputs);

void RunConvert(benchmark::State& state, const std::vector<String>& inputs, const String& code) {
  size_t i = 0;
  for (auto _ : state) {
    String s = Conversions::Convert(inputs[i++], code);
    benchmark::DoNotOptimize(s);
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_ConvertDate(benchmark::State& state) {
  static const std::vector<String> inputs = Numbers(60000, -10000);  // 1940 to 2104
  RunConvert(state, inputs, u"D2/");
}
BENCHMARK(BM_ConvertDate)->Iterations(kInputs);

void BM_ConvertTime(benchmark::State& state) {
  static const std::vector<String> inputs = Numbers(86400, 0);
  RunConvert(state, inputs, u"MTHS");
}
BENCHMARK(BM_ConvertTime)->Iterations(kInputs);

void BM_ConvertMask(benchmark::State& state) {
  static const std::vector<String> inputs = Numbers(2000000000, -1000000000);
  RunConvert(state, inputs, u"MD2,$");
}
BENCHMARK(BM_ConvertMask)->Iterations(kInputs);

void BM_ConvertTitleCase(benchmark::State& state) {
  static const std::vector<String> inputs = Phrases();
  RunConvert(state, inputs, u"MCT");
}
BENCHMARK(BM_ConvertTitleCase)->Iterations(kInputs);

}  // namespace
}  // namespace crvlib

int main(int argc, char** argv) {
  crvlib::SetThreadLocale("en-US");
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintAgainst("BM_SnprintfFixed2/iterations:1000000", 5.0);
  benchmark::Shutdown();
  return 0;
}
