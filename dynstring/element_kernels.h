// The search loops under the delimiter search (element_scan.h), in
// interchangeable kernels: the same three answers from plain loops
// ("scalar") or from vector compares ("sse2"). Every kernel gives the same
// answers; only the speed differs.
//
// One kernel serves the whole process, chosen the first time a scan needs
// one: the kernel named by the environment variable CRVLIB_KERNEL, when this
// build has it and the processor runs it; otherwise (unset, unknown or not
// available) the fastest available one. So the scalar loops, which the
// vector kernels leave to the last few units of a text, can be tested on
// their own on the same binary:
//   CRVLIB_KERNEL=scalar build/crvlib_tests --gtest_filter='Element*'
//   ActiveScanKernel().name == "scalar"
#ifndef CRVLIB_DYNSTRING_ELEMENT_KERNELS_H_
#define CRVLIB_DYNSTRING_ELEMENT_KERNELS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "dynstring/element_scan.h"

#if defined(__SSE2__) || defined(_M_X64) || defined(_M_AMD64)
#define CRVLIB_SCAN_SSE2 1
#endif

namespace crvlib::internal {

// A delimiter of `d` "occurs" at p when the units from p equal it; a match is
// an occurrence the left-to-right search keeps. count and collect take only
// delimiters whose occurrences are all matches (one unit, or two that
// differ: UnitDelimiter::overlapping() is false and size() <= 2).
struct ScanKernel {
  std::string_view name;
  // The first occurrence of `d` starting in [from, until), or kNoMatch.
  // until <= text.size() - d.size() + 1, so every candidate lies in the text.
  size_t (*find)(std::u16string_view text, size_t from, size_t until, const UnitDelimiter& d);
  // The number of occurrences starting in [a, b), for b - a at most
  // MatchIndex::kChunk; b <= text.size() - d.size() + 1.
  int64_t (*count)(std::u16string_view text, size_t a, size_t b, const UnitDelimiter& d);
  // Up to `cap` occurrences starting in [from, until), in order, written to
  // `out`; returns how many. until <= text.size() - d.size() + 1.
  size_t (*collect)(std::u16string_view text, size_t from, size_t until, const UnitDelimiter& d,
                    size_t* out, size_t cap);
};

// The kernels this build can run on this processor, fastest first; the
// last is always "scalar".
std::span<const ScanKernel* const> AvailableScanKernels();

// The kernel every scan of this process uses (see above).
const ScanKernel& ActiveScanKernel();

// The plain loops: the scalar kernel, and the tails of the vector ones.
namespace scalar {

inline bool SameUnits(const char16_t* a, const char16_t* b, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

inline size_t Find(std::u16string_view text, size_t from, size_t until, const UnitDelimiter& d) {
  const char16_t* t = text.data();
  const char16_t* du = d.units().data();
  const size_t m = d.size();
  for (size_t i = from; i < until; ++i) {
    if (t[i] == du[0] && SameUnits(t + i + 1, du + 1, m - 1)) return i;
  }
  return kNoMatch;
}

inline int64_t Count(std::u16string_view text, size_t a, size_t b, const UnitDelimiter& d) {
  const char16_t* t = text.data();
  const char16_t c0 = d.units()[0];
  if (d.size() == 1) {
    int64_t n = 0;
    for (size_t i = a; i < b; ++i) n += t[i] == c0;
    return n;
  }
  const char16_t c1 = d.units()[1];
  int64_t n = 0;
  for (size_t i = a; i < b; ++i) n += t[i] == c0 && t[i + 1] == c1;
  return n;
}

inline size_t Collect(std::u16string_view text, size_t from, size_t until, const UnitDelimiter& d,
                      size_t* out, size_t cap) {
  const char16_t* t = text.data();
  const char16_t c0 = d.units()[0];
  const bool pair = d.size() == 2;
  const char16_t c1 = pair ? d.units()[1] : 0;
  size_t k = 0;
  for (size_t i = from; i < until && k < cap; ++i) {
    if (t[i] == c0 && (!pair || t[i + 1] == c1)) out[k++] = i;
  }
  return k;
}

}  // namespace scalar
}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_ELEMENT_KERNELS_H_
