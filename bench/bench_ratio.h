// The reporter every benchmark program here uses: the usual console table,
// plus each run's time per iteration kept by name, so the program can print
// its figures as ratios against a baseline measured in the same run.
//
//   RatioReporter reporter;
//   benchmark::RunSpecifiedBenchmarks(&reporter);
//   reporter.PrintAgainst("BM_SnprintfFixed2", 4.0);   // ns/call and x baseline
#ifndef CRVLIB_BENCH_BENCH_RATIO_H_
#define CRVLIB_BENCH_BENCH_RATIO_H_

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  struct Times {
    double real_ns;
    double cpu_ns;
  };

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& r : runs) {
      if (r.run_type == Run::RT_Iteration && r.iterations > 0) {
        times_[r.benchmark_name()] = {r.GetAdjustedRealTime(), r.GetAdjustedCPUTime()};
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  // Every run by its full name ("BM_Append/1000", "BM_IsValid/iterations:1000000").
  const std::map<std::string, Times>& times() const { return times_; }
  const Times* Find(const std::string& name) const {
    auto it = times_.find(name);
    return it == times_.end() ? nullptr : &it->second;
  }

  // Prints every run's CPU ns per call (and calls per second) with its ratio
  // to `baseline`, marking ratios above `budget`. CPU time, because a loaded
  // machine inflates wall time.
  void PrintAgainst(const std::string& baseline, double budget) const {
    const Times* base = Find(baseline);
    if (base == nullptr || base->cpu_ns <= 0) return;
    std::printf("\n%-44s %12s %10s %9s\n", "benchmark", "calls/s", "ns/call", "x base");
    for (const auto& [name, t] : times_) {
      const double ratio = t.cpu_ns / base->cpu_ns;
      std::printf("%-44s %12.0f %10.1f %9.2f%s\n", name.c_str(), 1e9 / t.cpu_ns, t.cpu_ns, ratio,
                  ratio > budget ? "  over budget" : "");
    }
  }

 private:
  std::map<std::string, Times> times_;
};

#endif  // CRVLIB_BENCH_BENCH_RATIO_H_
