// The element engine's speed, as ratios against baselines measured in the
// same run (CPU time, best of several runs):
//   count    CountElements / CountDelimiters over 64 MiB of text against a
//            memcpy of the same bytes (one-unit mark every ~13 characters,
//            and a two-unit delimiter)
//   walk     elements 1..n of one DynamicString (n = 10^6) against one
//            CountElements pass: the engine's scan step (what ExtractElement
//            runs before it makes its view), LocateElement of a missing
//            value, and the public ExtractElement walk with its views
//   insert   Functions.InsertSorted into 10^6 elements against one
//            CountElements pass, and against that pass plus the floor of
//            the edit: into a caller's string that has room (floor: one
//            memcpy of the result), and into a fresh copy of exactly the
//            array's size (floor: new storage for the result, filled by one
//            copy with no scan)
//   sort     Functions.SortElements of 10^6 random 8-16 character elements
//            (binary, text and numeric) against Python 3's
//            '|'.join(sorted(s.split('|'))) on the same data, run in the
//            same process tree by bench/peer_python.py
//   convert  DynArrayToArray, ArrayToDynArray and ChangeDelimiter per
//            element at 10^5 and 10^6 elements (equal figures: linear)
//
//   build-release/bench/elements_bench [count|walk|insert|sort|convert ...]
//   build-release/bench/elements_bench --write-data FILE
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "crvlib/dynamic_string.h"
#include "crvlib/functions.h"
#include "dynstring/dynamic_string_impl.h"
#include "dynstring/element_engine.h"

namespace {

using crvlib::DynamicString;
using crvlib::Functions;
using crvlib::String;
using crvlib::StringArray;

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

// The process's CPU time in seconds (the bench runs on one thread; glibc
// reads it to the microsecond). The machines these run on are shared, and CPU
// time (user and system, page faults included) does not count the time other
// processes hold the core.
double CpuSeconds() {
  return double(std::clock()) / CLOCKS_PER_SEC;
}

template <class Fn>
double Best(int reps, Fn&& fn) {
  double best = 1e30;
  for (int r = 0; r < reps; ++r) {
    const double t0 = CpuSeconds();
    fn();
    best = std::min(best, CpuSeconds() - t0);
  }
  return best;
}

volatile int64_t sink;

bool Wanted(int argc, char** argv, const char* section) {
  if (argc <= 1) return true;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], section) == 0) return true;
  }
  return false;
}

void WriteData(const char* path, const String& text) {
  const std::string utf8 = text.ToUtf8();
  std::FILE* f = std::fopen(path, "wb");
  if (f == nullptr) return;
  std::fwrite(utf8.data(), 1, utf8.size(), f);
  std::fclose(f);
}

void Count() {
  // 64 MiB of text (32 Mi code units), a mark every ~13 characters.
  const String big(RandomElements(32u << 20 >> 4, u'\u00fe', false));
  std::u16string pair_text;
  const std::u16string pair_delim = u"\u00fe\u00fd";
  pair_text.reserve(big.view().size() * 2);
  for (char16_t c : big.view()) {
    if (c == u'\u00fe') {
      pair_text += pair_delim;
    } else {
      pair_text += c;
    }
  }
  pair_text.resize(big.view().size());
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
  std::printf("count 64 MiB: memcpy %.2f GB/s                       target\n",
              bytes / t_memcpy / 1e9);
  std::printf("  CountElements   one-unit mark  %5.2f GB/s  %5.2fx memcpy  >= 0.5x\n",
              bytes / t_count / 1e9, t_memcpy / t_count);
  std::printf("  CountDelimiters one-unit mark  %5.2f GB/s  %5.2fx memcpy  >= 0.5x\n",
              bytes / t_delims / 1e9, t_memcpy / t_delims);
  std::printf("  CountElements   two-unit delim %5.2f GB/s  %5.2fx memcpy  >= 0.3x\n",
              bytes / t_count2 / 1e9, t_memcpy / t_count2);
}

void Walk(const String& million) {
  constexpr int32_t kN = 1000000;
  const String bar = u"|";
  DynamicString d;
  d.SetValue(million);
  // Every run starts from a fresh scan cache and no checkpoints, as after an
  // assignment, without copying the text again.
  auto fresh = [&] {
    d.impl().ResetScan();
    d.impl().scan_index().index.reset();
  };
  const double count_pass = Best(7, [&] {
    fresh();
    sink = d.CountElements(bar);
  });
  const double t_step = Best(5, [&] {
    fresh();
    crvlib::internal::ObjectText t(d.impl());
    int64_t n = 0;
    for (int32_t i = 1; i <= kN; ++i) n += crvlib::internal::ExtractElement(t, bar, i).Length;
    sink = n;
  });
  auto locate = [&](const char16_t* value, crvlib::vxMatchingEnum type) {
    return Best(5, [&] {
      fresh();
      sink = d.LocateElement(value, bar, 1, type);
    });
  };
  const double t_exact = locate(u"#", crvlib::vxExactMatch);
  const double t_first = locate(u"#", crvlib::vxFirstCharMatch);
  const double t_last = locate(u"#", crvlib::vxLastCharMatch);
  const double t_sub = locate(u"#", crvlib::vxSubStringMatch);
  const double t_views = Best(3, [&] {
    fresh();
    int64_t n = 0;
    for (int32_t i = 1; i <= kN; ++i) n += d.ExtractElement(bar, i).LengthB();
    sink = n;
  });
  std::printf("walk 1..10^6 on one DynamicString; one CountElements pass %.2f ms      target\n",
              count_pass * 1e3);
  auto row = [&](const char* what, double t, const char* target) {
    std::printf("  %-38s %8.2f ms %6.1f ns/elt %6.2fx  %s\n", what, t * 1e3, t * 1e9 / kN,
                t / count_pass, target);
  };
  row("engine scan step (ExtractElement span)", t_step, "<= 3x");
  row("LocateElement exact, missing", t_exact, "<= 3x");
  row("LocateElement first-char, missing", t_first, "<= 3x");
  row("LocateElement last-char, missing", t_last, "<= 3x");
  row("LocateElement substring, missing", t_sub, "<= 3x");
  row("ExtractElement views (public)", t_views, "(reported)");
}

void Insert(const String& million) {
  const String bar = u"|";
  const double t_count = Best(7, [&] { sink = Functions::CountElements(million, bar); });
  // A fresh copy of exactly the array's size each time, so the insertion
  // has to grow it; the copy itself is timed apart and taken off.
  String copy;
  const double t_copy = Best(7, [&] {
    copy = String(million.view());
    sink = copy.LenB();
  });
  const double t_fresh = Best(7,
                              [&] {
                                copy = String(million.view());
                                sink = Functions::InsertSorted(copy, bar, u"mmmm");
                              }) -
                         t_copy;
  // Its floor: the same fresh copy replaced by new storage holding it and
  // one more element, made by one copy with no scan at all.
  const double t_grow = Best(7,
                             [&] {
                               copy = String(million.view());
                               std::u16string out;
                               const size_t size = copy.units().size() + 5;
                               out.reserve(size + size / 8);
                               out.append(copy.view()).append(u"|mmmm");
                               copy.units().swap(out);
                               sink = copy.LenB();
                             }) -
                        t_copy;
  // A caller that keeps inserting into its array: after a growth the string
  // has room and takes the new element in place.
  String growing = million;
  growing.units().reserve(million.view().size() + 64 * 1024);
  int k = 0;
  const double t_room = Best(7, [&] {
    const std::u16string v = u"m" + std::u16string(1, char16_t(u'a' + k++ % 26));
    sink = Functions::InsertSorted(growing, bar, v);
  });
  const double t_count_room = Best(7, [&] { sink = Functions::CountElements(growing, bar); });
  // Its floor: one memcpy of the result into storage already there.
  std::u16string target(million.view().size() + 64 * 1024, u' ');
  const double t_memcpy = Best(7, [&] {
    std::memcpy(target.data(), growing.data(), size_t(growing.LenB()));
    sink = target[target.size() / 2];
  });
  std::printf(
      "InsertSorted into 10^6 elements, against one CountElements pass over the same string\n");
  std::printf(
      "  into a string with room   %7.2f ms  %5.2fx count (%.2f ms)  %5.2fx count + memcpy (%.2f "
      "ms)  "
      "<= 3x\n",
      t_room * 1e3, t_room / t_count_room, t_count_room * 1e3, t_room / (t_count_room + t_memcpy),
      (t_count_room + t_memcpy) * 1e3);
  std::printf(
      "  into a fresh copy (grows) %7.2f ms  %5.2fx count (%.2f ms)  %5.2fx count + new copy (%.2f "
      "ms)  <= 3x\n",
      t_fresh * 1e3, t_fresh / t_count, t_count * 1e3, t_fresh / (t_count + t_grow),
      (t_count + t_grow) * 1e3);
}

// Runs bench/peer_python.py on `path` and returns its sorted() time in
// seconds, or 0 when Python is not there.
double PythonSort(const char* path) {
  std::string script = __FILE__;
  script = script.substr(0, script.find_last_of('/') + 1) + "peer_python.py";
  const std::string cmd = "python3 '" + script + "' --sort-only '" + path + "' 2>/dev/null";
  std::FILE* p = popen(cmd.c_str(), "r");
  if (p == nullptr) return 0;
  double ms = 0;
  if (std::fscanf(p, "sorted %lf", &ms) != 1) ms = 0;
  pclose(p);
  return ms / 1e3;
}

void Sort(const String& million) {
  const String bar = u"|";
  const char* path = "/tmp/crvlib_elements_bench.txt";
  WriteData(path, million);
  const double t_python = PythonSort(path);
  std::remove(path);
  const double t_sort = Best(5, [&] { sink = Functions::SortElements(million, bar).LenB(); });
  const double t_desc =
      Best(3, [&] { sink = Functions::SortElements(million, bar, crvlib::vxDescending).LenB(); });
  const double t_text = Best(3, [&] {
    sink = Functions::SortElements(million, bar, crvlib::vxAscending, crvlib::vxLeftJustify,
                                   crvlib::vxCaseNotSensitive)
               .LenB();
  });
  const String numbers(RandomElements(1000000, u'|', true));
  const double t_num = Best(3, [&] {
    sink =
        Functions::SortElements(numbers, bar, crvlib::vxAscending, crvlib::vxRightJustify).LenB();
  });
  const String doubled = Functions::ChangeDelimiter(million, bar, u"||");
  const double t_overlap = Best(3, [&] { sink = Functions::SortElements(doubled, u"||").LenB(); });
  std::printf("SortElements 10^6 random 8-16 char elements; Python sorted() %.1f ms  target\n",
              t_python * 1e3);
  auto row = [&](const char* what, double t, const char* target) {
    if (t_python > 0) {
      std::printf("  %-28s %8.1f ms  %5.2fx faster than Python  %s\n", what, t * 1e3, t_python / t,
                  target);
    } else {
      std::printf("  %-28s %8.1f ms  %s\n", what, t * 1e3, target);
    }
  };
  row("binary", t_sort, ">= 2x");
  row("binary, descending", t_desc, "(reported)");
  row("text (case-insensitive)", t_text, "(reported)");
  row("numeric (digits)", t_num, "(reported)");
  row("binary, delimiter \"||\"", t_overlap, "(reported)");
  // Byte mode (a one-byte delimiter): the insertion replayed probe by probe,
  // O(n log^2 n); the literal one took 4.6 s for 10^4 elements.
  for (size_t n : {size_t{100000}, size_t{1000000}}) {
    const std::string utf8 = String(RandomElements(n, u'|', false)).ToUtf8();
    const String bytes = String::FromBytes(utf8.data(), utf8.size());
    const double t_bytes =
        Best(1, [&] { sink = Functions::SortElements(bytes, String::FromBytes("|", 1)).LenB(); });
    std::printf("  byte mode, 10^%d elements   %8.1f ms  %6.0f ns/element\n", n == 100000 ? 5 : 6,
                t_bytes * 1e3, t_bytes * 1e9 / double(n));
  }
}

void Convert() {
  std::printf("conversions, per element (equal at both sizes: linear)\n");
  std::printf("  %-28s %12s %12s\n", "", "10^5", "10^6");
  double dyn[2], arr[2], change[2];
  for (int s = 0; s < 2; ++s) {
    const size_t n = s == 0 ? 100000 : 1000000;
    const String text(RandomElements(n, u'|', false));
    StringArray a;
    dyn[s] = Best(3, [&] { sink = Functions::DynArrayToArray(text, u"|", a, crvlib::vxOneBased); });
    arr[s] = Best(3, [&] { sink = Functions::ArrayToDynArray(a, u"|").LenB(); });
    change[s] = Best(3, [&] { sink = Functions::ChangeDelimiter(text, u"|", u";;").LenB(); });
    dyn[s] /= double(n);
    arr[s] /= double(n);
    change[s] /= double(n);
  }
  std::printf("  %-28s %9.1f ns %9.1f ns\n", "DynArrayToArray (one-based)", dyn[0] * 1e9,
              dyn[1] * 1e9);
  std::printf("  %-28s %9.1f ns %9.1f ns\n", "ArrayToDynArray", arr[0] * 1e9, arr[1] * 1e9);
  std::printf("  %-28s %9.1f ns %9.1f ns\n", "ChangeDelimiter \"|\" -> \";;\"", change[0] * 1e9,
              change[1] * 1e9);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--write-data") == 0) {
    WriteData(argv[2], String(RandomElements(1000000, u'|', false)));
    return 0;
  }
  const String million(RandomElements(1000000, u'|', false));
  if (Wanted(argc, argv, "count")) Count();
  if (Wanted(argc, argv, "walk")) Walk(million);
  if (Wanted(argc, argv, "insert")) Insert(million);
  if (Wanted(argc, argv, "sort")) Sort(million);
  if (Wanted(argc, argv, "convert")) Convert();
  return 0;
}
