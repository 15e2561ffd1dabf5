// The element engine's speed, as ratios against baselines measured in the
// same run:
//   count    CountElements / CountDelimiters over 64 MiB of text against a
//            memcpy of the same bytes (one-unit mark every ~13 characters,
//            and a two-unit delimiter)
//   walk     the scan stepping through elements 1..n of one DynamicString
//            (LocateElement of a missing value) and the public
//            ExtractElement walk, against one CountElements pass
//   insert   Functions.InsertSorted into 10^6 elements against one
//            Functions.CountElements pass over the same string
//   sort     Functions.SortElements of 10^6 random 8-16 character elements
//            (binary, text and numeric); bench/peer_python.py sorts the same
//            data, written by `elements_bench --write-data FILE`.
//
//   build-release/bench/elements_bench
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "crvlib/dynamic_string.h"
#include "crvlib/functions.h"

namespace {

using crvlib::DynamicString;
using crvlib::Functions;
using crvlib::String;
using Clock = std::chrono::steady_clock;

// A 64-bit LCG shared with peer_python.py, so both sort the same data.
struct Lcg {
  uint64_t state = 12345;
  uint32_t Next() {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<uint32_t>(state >> 33);
  }
};

std::u16string RandomElements(size_t n, char16_t delim, bool digits) {
  Lcg rng;
  std::u16string s;
  s.reserve(n * 13);
  for (size_t i = 0; i < n; ++i) {
    if (i > 0) s += delim;
    const uint32_t len = 8 + rng.Next() % 9;
    for (uint32_t k = 0; k < len; ++k) {
      s += digits ? char16_t(u'0' + rng.Next() % 10) : char16_t(u'a' + rng.Next() % 26);
    }
  }
  return s;
}

template <class Fn>
double Best(int reps, Fn&& fn) {
  double best = 1e30;
  for (int r = 0; r < reps; ++r) {
    const auto t0 = Clock::now();
    fn();
    best = std::min(best, std::chrono::duration<double>(Clock::now() - t0).count());
  }
  return best;
}

volatile int64_t sink;

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--write-data") == 0) {
    const std::string utf8 = String(RandomElements(1000000, u'|', false)).ToUtf8();
    std::FILE* f = std::fopen(argv[2], "wb");
    if (f == nullptr) return 1;
    std::fwrite(utf8.data(), 1, utf8.size(), f);
    std::fclose(f);
    return 0;
  }

  // Count: 64 MiB of text (32 Mi code units), a mark every ~13 characters.
  const String big(RandomElements(32u << 20 >> 4, u'\u00fe', false));
  std::u16string pair_text = big.ToU16();
  std::u16string pair_delim = u"\u00fe\u00fd";
  {
    std::u16string t;
    t.reserve(pair_text.size() * 2);
    for (char16_t c : pair_text) {
      if (c == u'\u00fe') {
        t += pair_delim;
      } else {
        t += c;
      }
    }
    pair_text = t.substr(0, pair_text.size());
  }
  const String pair(pair_text);
  std::vector<char16_t> copy(big.view().size());
  const double bytes = double(big.LenB());
  const double t_memcpy = Best(5, [&] {
    std::memcpy(copy.data(), big.data(), size_t(big.LenB()));
    sink = copy[copy.size() / 2];
  });
  const double t_count = Best(5, [&] { sink = Functions::CountElements(big, u"\u00fe"); });
  const double t_delims = Best(5, [&] { sink = Functions::CountDelimiters(big, u"\u00fe"); });
  const double t_count2 = Best(5, [&] { sink = Functions::CountElements(pair, pair_delim); });
  std::printf("count 64 MiB: memcpy %.2f GB/s\n", bytes / t_memcpy / 1e9);
  std::printf("  CountElements   one-unit mark  %.2f GB/s  ratio %.2fx memcpy\n",
              bytes / t_count / 1e9, t_memcpy / t_count);
  std::printf("  CountDelimiters one-unit mark  %.2f GB/s  ratio %.2fx memcpy\n",
              bytes / t_delims / 1e9, t_memcpy / t_delims);
  std::printf("  CountElements   two-unit delim %.2f GB/s  ratio %.2fx memcpy\n",
              bytes / t_count2 / 1e9, t_memcpy / t_count2);

  // Walk and sorted insertion over 10^6 elements.
  const String million(RandomElements(1000000, u'|', false));
  DynamicString d;
  d.SetValue(million);
  const double t_pass = Best(5, [&] {
    d.SetValue(million);  // a fresh cache (the copy is timed apart below)
    sink = d.CountElements(u"|");
  });
  const double t_set = Best(5, [&] { d.SetValue(million); });
  const double t_walk = Best(3, [&] {
    d.SetValue(million);
    sink = d.LocateElement(u"#", u"|", 1);
  });
  const double t_extract = Best(3, [&] {
    d.SetValue(million);
    int64_t n = 0;
    for (int32_t i = 1; i <= 1000000; ++i) n += d.ExtractElement(u"|", i).LengthB();
    sink = n;
  });
  const double count_pass = t_pass - t_set;
  std::printf("walk 10^6 elements (one CountElements pass %.2f ms):\n", count_pass * 1e3);
  std::printf("  scan walk 1..n (LocateElement)   %.2f ms  ratio %.2fx\n", (t_walk - t_set) * 1e3,
              (t_walk - t_set) / count_pass);
  std::printf("  ExtractElement views 1..n        %.2f ms  ratio %.2fx\n",
              (t_extract - t_set) * 1e3, (t_extract - t_set) / count_pass);

  const double t_fcount = Best(5, [&] { sink = Functions::CountElements(million, u"|"); });
  const double t_insert = Best(5, [&] {
    String s = million;
    sink = Functions::InsertSorted(s, u"|", u"mmmm");
  });
  const double t_copy = Best(5, [&] {
    String s = million;
    sink = s.LenB();
  });
  std::printf(
      "InsertSorted into 10^6 elements: %.2f ms (incl. %.2f ms copying the argument), "
      "CountElements %.2f ms, ratio %.2fx\n",
      t_insert * 1e3, t_copy * 1e3, t_fcount * 1e3, (t_insert - t_copy) / t_fcount);

  // Sorts.
  const double t_sort = Best(3, [&] { sink = Functions::SortElements(million, u"|").LenB(); });
  const double t_sort_text = Best(1, [&] {
    sink = Functions::SortElements(million, u"|", crvlib::vxAscending, crvlib::vxLeftJustify,
                                   crvlib::vxCaseNotSensitive)
               .LenB();
  });
  const String numbers(RandomElements(1000000, u'|', true));
  const double t_sort_num = Best(3, [&] {
    sink =
        Functions::SortElements(numbers, u"|", crvlib::vxAscending, crvlib::vxRightJustify).LenB();
  });
  std::printf("SortElements 10^6 random 8-16 char elements:\n");
  std::printf("  binary  %.1f ms\n  text    %.1f ms\n  numeric %.1f ms\n", t_sort * 1e3,
              t_sort_text * 1e3, t_sort_num * 1e3);
  std::printf("  (compare with: python3 bench/peer_python.py, same data)\n");
  return 0;
}
