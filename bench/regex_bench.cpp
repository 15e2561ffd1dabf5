// IsValid in a loop over rows, against PCRE2 called directly with the pattern
// compiled once: the per-call work of IsValid (a fresh RegExp, the cache
// lookup, the error frame) should cost less than the match itself. The run
// ends with the throughput ratio of the two.
//
//   build-release/bench/regex_bench
//   build-release/bench/regex_bench --benchmark_filter=Rotating
#include <benchmark/benchmark.h>

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/bench_ratio.h"
#include "crvlib/string.h"
#include "crvlib/validations.h"

namespace {

constexpr int64_t kCalls = 1'000'000;

// A telephone-number check, as a form would make it, in both dialects.
const crvlib::String kPattern = u"^\\(?\\d{3}\\)?[- ]?\\d{3}-\\d{4}$";
const std::u16string kPcre2Pattern = u"^\\(?\\d{3}\\)?[- ]?\\d{3}-\\d{4}\\z";

// 1024 values, some valid and some not, of the lengths forms hold.
const std::vector<crvlib::String>& Values() {
  static const std::vector<crvlib::String> values = [] {
    std::vector<crvlib::String> v;
    uint32_t seed = 12345;
    auto next = [&seed] { return seed = seed * 1103515245u + 12345u; };
    for (int i = 0; i < 1024; ++i) {
      std::u16string s;
      switch (next() % 4) {
        case 0:
          s = u"(555) 123-4567";
          break;
        case 1:
          s = u"555-123-4567";
          break;
        case 2:
          s = u"555 1234 567";
          break;
        default:
          s = u"call me at 555 123 4567 after six";
          break;
      }
      for (char16_t& c : s) {
        if (c >= u'0' && c <= u'9') c = static_cast<char16_t>(u'0' + next() % 10);
      }
      v.emplace_back(std::u16string_view(s));
    }
    return v;
  }();
  return values;
}

void BM_IsValid(benchmark::State& state) {
  const auto& values = Values();
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(crvlib::Validations::IsValid(values[i++ & 1023], kPattern));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_IsValid)->Iterations(kCalls);

// `jit_fast_path` calls pcre2_jit_match, which skips pcre2_match's argument
// checks, as IsValid does internally.
void Pcre2Direct(benchmark::State& state, bool jit_fast_path) {
  int error = 0;
  PCRE2_SIZE offset = 0;
  pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(kPcre2Pattern.data()),
                                   kPcre2Pattern.size(), 0, &error, &offset, nullptr);
  pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
  pcre2_match_data* data = pcre2_match_data_create(1, nullptr);
  auto match = jit_fast_path ? pcre2_jit_match : pcre2_match;
  const auto& values = Values();
  size_t i = 0;
  for (auto _ : state) {
    const crvlib::String& v = values[i++ & 1023];
    benchmark::DoNotOptimize(match(code, reinterpret_cast<PCRE2_SPTR>(v.data()),
                                   static_cast<size_t>(v.Len()), 0, 0, data, nullptr) >= 0);
  }
  state.SetItemsProcessed(state.iterations());
  pcre2_match_data_free(data);
  pcre2_code_free(code);
}
void BM_Pcre2Direct(benchmark::State& state) {
  Pcre2Direct(state, false);
}
void BM_Pcre2DirectJitMatch(benchmark::State& state) {
  Pcre2Direct(state, true);
}
BENCHMARK(BM_Pcre2Direct)->Iterations(kCalls);
BENCHMARK(BM_Pcre2DirectJitMatch)->Iterations(kCalls);

void BM_IsValidIgnoreCase(benchmark::State& state) {
  const auto& values = Values();
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(crvlib::Validations::IsValid(values[i++ & 1023], u"AT \\d{3} \\d{4}",
                                                          crvlib::vxIgnoreCase));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_IsValidIgnoreCase);

// Several patterns in turn: cache hits that are not the previous call's.
// Past the cache's 64 entries every call compiles.
void BM_IsValidRotating(benchmark::State& state) {
  std::vector<crvlib::String> patterns;
  for (int64_t p = 0; p < state.range(0); ++p) {
    std::u16string pattern = u"^\\(?\\d{3}\\)?[- ]?\\d{3}-\\d{";
    pattern += static_cast<char16_t>(u'0' + p % 10);
    pattern += u'}';
    pattern.append(static_cast<size_t>(p / 10), u'x');
    pattern += u'$';
    patterns.emplace_back(std::u16string_view(pattern));
  }
  const auto& values = Values();
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        crvlib::Validations::IsValid(values[i & 1023], patterns[i % patterns.size()]));
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_IsValidRotating)->Arg(8)->Arg(64)->Arg(100);

void BM_Matches(benchmark::State& state) {
  const auto& values = Values();
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(crvlib::Validations::Matches(values[i++ & 1023], u"3N'-'3N'-'4N"));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Matches);

// Keeps the time per call of each run for the closing ratio. Both the wall
// and the CPU time are kept: on a busy machine the CPU time is the steadier.
// IsValid's throughput against PCRE2 called directly, wall and CPU time.
void PrintRatio(const RatioReporter& reporter) {
  const RatioReporter::Times* v = reporter.Find("BM_IsValid/iterations:1000000");
  const RatioReporter::Times* d = reporter.Find("BM_Pcre2Direct/iterations:1000000");
  if (v == nullptr || d == nullptr) return;
  std::printf(
      "\nIsValid       %6.1f ns/call wall (%5.2f M calls/s), %6.1f ns/call CPU (%5.2f M "
      "calls/s)\n"
      "PCRE2 direct  %6.1f ns/call wall (%5.2f M calls/s), %6.1f ns/call CPU (%5.2f M calls/s)\n"
      "throughput ratio IsValid / direct: %.2f wall, %.2f CPU (target >= 0.50)\n",
      v->real_ns, 1e3 / v->real_ns, v->cpu_ns, 1e3 / v->cpu_ns, d->real_ns, 1e3 / d->real_ns,
      d->cpu_ns, 1e3 / d->cpu_ns, d->real_ns / v->real_ns, d->cpu_ns / v->cpu_ns);
  if (const RatioReporter::Times* jit =
          reporter.Find("BM_Pcre2DirectJitMatch/iterations:1000000")) {
    std::printf("against pcre2_jit_match called directly: %.2f wall, %.2f CPU\n",
                jit->real_ns / v->real_ns, jit->cpu_ns / v->cpu_ns);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  PrintRatio(reporter);
  benchmark::Shutdown();
  return 0;
}
