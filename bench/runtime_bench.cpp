// Nanoseconds per call of the runtime layer's hot paths, each with its ratio
// to snprintf("%.2f") on the same value measured in the same run (the
// budget is 4x).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/bench_ratio.h"
#include "core/thread_state.h"
#include "crvlib/locale.h"
#include "runtime/date_parse.h"
#include "runtime/format.h"
#include "runtime/number_parse.h"
#include "runtime/val.h"

namespace crvlib::internal {
namespace {

constexpr double kValue = 1234.5678;

void BM_SnprintfFixed2(benchmark::State& state) {
  char buf[64];
  double v = kValue;
  for (auto _ : state) {
    benchmark::DoNotOptimize(v);
    int n = std::snprintf(buf, sizeof buf, "%.2f", v);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(buf);
  }
}
BENCHMARK(BM_SnprintfFixed2);

void BM_FormatCurrencyMask(benchmark::State& state) {
  Variant v(kValue);
  for (auto _ : state) {
    String s = VarFormat(v, u"$#,##0.00;($#,##0.00)");
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_FormatCurrencyMask);

void BM_FormatDateMask(benchmark::State& state) {
  Variant v(Date{38352.75});
  for (auto _ : state) {
    String s = VarFormat(v, u"dd mmm yyyy");
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_FormatDateMask);

void BM_FormatNamedPercent(benchmark::State& state) {
  Variant v(kValue);
  for (auto _ : state) {
    String s = VarFormat(v, u"Percent");
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_FormatNamedPercent);

void BM_ParseDate(benchmark::State& state) {
  const LocaleSettings& loc = State().locale;
  double out = 0;
  for (auto _ : state) {
    ParseStatus st = TryParseDate(u"12/31/2004 6:00:00 PM", loc, DateParseMode::kDateTime, &out);
    benchmark::DoNotOptimize(st);
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(BM_ParseDate);

void BM_StringToDouble(benchmark::State& state) {
  const LocaleSettings& loc = State().locale;
  double out = 0;
  for (auto _ : state) {
    ParseStatus st = TryParseDouble(u"1,234.5678", loc, &out);
    benchmark::DoNotOptimize(st);
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(BM_StringToDouble);

void BM_Val(benchmark::State& state) {
  for (auto _ : state) {
    double v = Val(u"1234.5678");
    benchmark::DoNotOptimize(v);
  }
}
BENCHMARK(BM_Val);

}  // namespace
}  // namespace crvlib::internal

int main(int argc, char** argv) {
  crvlib::SetThreadLocale("en-US");
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintAgainst("BM_SnprintfFixed2", 4.0);
  benchmark::Shutdown();
  return 0;
}
