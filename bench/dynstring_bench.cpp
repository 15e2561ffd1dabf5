// Edit cost of DynamicString against text size. Appends and edits that stay
// near the previous edit point should cost the same at 10^3 and 10^7
// characters (the gap moves only as far as the point moved); edits that jump
// between the two ends of the text are the control and grow with the size.
//
// After the usual table the program prints, for each benchmark, its ns per
// edit at each size divided by its figure at 10^3 measured in the same run.
//
//   build/bench/dynstring_bench                       # all of it, about 10 s
//   build/bench/dynstring_bench --benchmark_filter=Append
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/bench_ratio.h"
#include "crvlib/dynamic_string.h"

namespace {

using crvlib::DynamicString;
using crvlib::String;

constexpr int64_t kSizes[] = {1000, 100000, 10000000};

DynamicString TextOf(int64_t chars) {
  DynamicString d;
  d.SetValue(String::Repeat(static_cast<size_t>(chars), u'a'));
  return d;
}

// One append per iteration; every 1000 appends the appended tail is deleted
// again (inside the timing), so the text stays near its nominal size.
void BM_Append(benchmark::State& state) {
  const int32_t size = static_cast<int32_t>(state.range(0));
  DynamicString d = TextOf(size);
  const String x = u"x";
  int n = 0;
  for (auto _ : state) {
    d.Append(x);
    if (++n == 1000) {
      d.Delete(size, n);
      n = 0;
    }
  }
}

// Edits alternate: insert two characters at the point, then delete two a
// little further on and move the point forward by five, wrapping to the start
// at the end of the text.
void BM_EditNearMovingPoint(benchmark::State& state) {
  const int32_t size = static_cast<int32_t>(state.range(0));
  DynamicString d = TextOf(size);
  const String xy = u"xy";
  int32_t p = size / 2;
  bool insert = true;
  for (auto _ : state) {
    if (insert) {
      d.Insert(xy, p);
    } else {
      d.Delete(p + 3, 2);
      p += 5;
      if (p > size - 8) p = 0;
    }
    insert = !insert;
  }
}

// The control: each edit is at the other end of the text from the last, so
// the gap crosses the whole text every time.
void BM_EditAlternatingEnds(benchmark::State& state) {
  const int32_t size = static_cast<int32_t>(state.range(0));
  DynamicString d = TextOf(size);
  const String x = u"x";
  bool front = false;
  for (auto _ : state) {
    d.Replace(x, front ? 1 : size - 2, 1);
    front = !front;
  }
}

// Keeps the console table and records ns per iteration by benchmark and size.
// ns per edit at each size and its ratio to the 10^3 figure of the same run
// (wall time: these benchmarks are single-threaded and memory-bound).
void PrintRatios(const RatioReporter& reporter) {
  std::map<std::string, std::map<int64_t, double>> by_name;
  for (const auto& [name, t] : reporter.times()) {
    const size_t slash = name.find('/');
    if (slash == std::string::npos) continue;
    by_name[name.substr(0, slash)][std::stoll(name.substr(slash + 1))] = t.real_ns;
  }
  std::printf("\nns per edit, and its ratio to the 10^3 figure of the same run:\n");
  for (const auto& [name, by_size] : by_name) {
    auto base = by_size.find(kSizes[0]);
    std::printf("  %-24s", name.c_str());
    for (const auto& [size, ns] : by_size) {
      std::printf("  %9lld: %9.1f ns", static_cast<long long>(size), ns);
      if (base != by_size.end() && base->second > 0) std::printf(" (x%.2f)", ns / base->second);
    }
    std::printf("\n");
  }
}

}  // namespace

int main(int argc, char** argv) {
  for (auto* b : {benchmark::RegisterBenchmark("Append", BM_Append),
                  benchmark::RegisterBenchmark("EditNearMovingPoint", BM_EditNearMovingPoint),
                  benchmark::RegisterBenchmark("EditAlternatingEnds", BM_EditAlternatingEnds)}) {
    for (int64_t size : kSizes) b->Arg(size);
    b->MinTime(0.5);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  PrintRatios(reporter);
  benchmark::Shutdown();
  return 0;
}
