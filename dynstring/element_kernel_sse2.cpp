// The "sse2" scan kernel: eight code units per compare.
//
// Finding compares eight units at a time against the delimiter's first unit
// (and its second, for longer delimiters), then verifies the rest in place.
// Marks in dynamic arrays are dense (one every dozen characters is usual),
// so a per-byte memchr loop would restart far too often; the vector loop
// costs about the same whether a hit is near or far. Counting sums the
// compares in 16-bit lanes with no per-match work at all; collecting takes
// the matches from a bitmask, one bit per unit. The last few units of a
// range go to the plain loops.
#include "dynstring/element_kernels.h"

#ifdef CRVLIB_SCAN_SSE2

#include <emmintrin.h>

#include <bit>

namespace crvlib::internal {
namespace {

// Compares the eight code units at t + at against a one-unit delimiter, or
// (with `pair`) the units at t + at and t + at + 1 against a two-unit one:
// each 16-bit lane is all ones where an occurrence starts.
class LaneMatcher {
 public:
  LaneMatcher(const char16_t* t, const UnitDelimiter& d)
      : t_(t),
        k0_(_mm_set1_epi16(static_cast<short>(d.units()[0]))),
        k1_(_mm_set1_epi16(static_cast<short>(d.size() > 1 ? d.units()[1] : 0))),
        pair_(d.size() > 1) {}

  __m128i operator()(size_t at) const {
    const __m128i eq0 = _mm_cmpeq_epi16(Load(at), k0_);
    return pair_ ? _mm_and_si128(eq0, _mm_cmpeq_epi16(Load(at + 1), k1_)) : eq0;
  }

 private:
  __m128i Load(size_t at) const {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(t_ + at));
  }

  const char16_t* t_;
  __m128i k0_, k1_;
  bool pair_;
};

size_t Find(std::u16string_view text, size_t from, size_t until, const UnitDelimiter& d) {
  const char16_t* t = text.data();
  const char16_t* du = d.units().data();
  const size_t m = d.size();
  size_t i = from;
  const __m128i k0 = _mm_set1_epi16(static_cast<short>(du[0]));
  if (m == 1) {
    for (; i + 8 <= until; i += 8) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(t + i));
      const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(v, k0)));
      if (mask != 0) return i + static_cast<size_t>(std::countr_zero(mask)) / 2;
    }
  } else {
    // i + 8 <= until <= size - 1 keeps the load at i + 1 inside the text.
    const __m128i k1 = _mm_set1_epi16(static_cast<short>(du[1]));
    for (; i + 8 <= until; i += 8) {
      const __m128i v0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(t + i));
      const __m128i v1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(t + i + 1));
      unsigned mask = static_cast<unsigned>(
          _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi16(v0, k0), _mm_cmpeq_epi16(v1, k1))));
      while (mask != 0) {
        const unsigned bit = static_cast<unsigned>(std::countr_zero(mask));
        const size_t j = i + bit / 2;
        if (m == 2 || scalar::SameUnits(t + j + 2, du + 2, m - 2)) return j;
        mask &= ~(3u << (bit & ~1u));
      }
    }
  }
  return scalar::Find(text, i, until, d);
}

int64_t Count(std::u16string_view text, size_t a, size_t b, const UnitDelimiter& d) {
  // Each compare yields -1 per equal lane; subtracting accumulates counts in
  // eight 16-bit lanes, which cannot overflow within one chunk.
  const LaneMatcher hits(text.data(), d);
  __m128i acc = _mm_setzero_si128();
  size_t i = a;
  for (; i + 32 <= b; i += 32) {
    acc = _mm_sub_epi16(acc, hits(i));
    acc = _mm_sub_epi16(acc, hits(i + 8));
    acc = _mm_sub_epi16(acc, hits(i + 16));
    acc = _mm_sub_epi16(acc, hits(i + 24));
  }
  for (; i + 8 <= b; i += 8) acc = _mm_sub_epi16(acc, hits(i));
  const __m128i sums = _mm_madd_epi16(acc, _mm_set1_epi16(1));
  alignas(16) int32_t lanes[4];
  _mm_store_si128(reinterpret_cast<__m128i*>(lanes), sums);
  return int64_t{lanes[0]} + lanes[1] + lanes[2] + lanes[3] + scalar::Count(text, i, b, d);
}

size_t Collect(std::u16string_view text, size_t from, size_t until, const UnitDelimiter& d,
               size_t* out, size_t cap) {
  const LaneMatcher hits(text.data(), d);
  size_t k = 0;
  size_t i = from;
  // With a pair, i + 16 <= until = size - 1 keeps the load at i + 9 inside.
  for (; i + 16 <= until; i += 16) {
    unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(hits(i), hits(i + 8))));
    while (mask != 0) {
      out[k++] = i + static_cast<size_t>(std::countr_zero(mask));
      if (k == cap) return k;
      mask &= mask - 1;
    }
  }
  return k + scalar::Collect(text, i, until, d, out + k, cap - k);
}

}  // namespace

extern const ScanKernel kSse2ScanKernel = {"sse2", Find, Count, Collect};

}  // namespace crvlib::internal

#endif  // CRVLIB_SCAN_SSE2
