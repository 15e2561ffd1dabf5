// Delimiter search over code units.
//
// Finding one match compares eight code units at a time against the
// delimiter's first unit (and its second, for longer delimiters), then
// verifies the rest in place. Marks in dynamic arrays are dense (one every
// dozen characters is usual), so a per-byte memchr loop would restart far too
// often; the vector loop costs about the same whether a hit is near or far.
//
// Skipping many matches counts instead of finding: the text is taken in
// chunks of MatchIndex::kChunk units; each chunk's matches are counted with
// vector compares summed in 16-bit lanes (no per-match work at all), and
// only the chunk in which the wanted match lies is searched match by match.
// Counting is exact for a one-unit delimiter and for a two-unit one whose
// units differ: their occurrences can never overlap, so every occurrence is a
// match. Delimiters whose occurrences can overlap ("||") and longer ones are
// resolved match by match, left to right, which is what decides overlaps.
#include "dynstring/element_scan.h"

#include <algorithm>
#include <bit>

#if defined(__SSE2__) || defined(_M_X64) || defined(_M_AMD64)
#include <emmintrin.h>
#define CRVLIB_ELEMENT_SSE2 1
#endif

namespace crvlib::internal {
namespace {

bool SameUnits(const char16_t* a, const char16_t* b, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

#ifdef CRVLIB_ELEMENT_SSE2
// Compares the eight code units at t + at against a one-unit delimiter, or
// (with `pair`) the units at t + at and t + at + 1 against a two-unit one:
// each 16-bit lane is all ones where an occurrence starts.
class LaneMatcher {
 public:
  LaneMatcher(const char16_t* t, char16_t c0, char16_t c1, bool pair)
      : t_(t),
        k0_(_mm_set1_epi16(static_cast<short>(c0))),
        k1_(_mm_set1_epi16(static_cast<short>(c1))),
        pair_(pair) {}

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
#endif

// The first occurrence of `d` starting in [from, until); `until` is at most
// text.size() - d.size() + 1, so every candidate lies wholly in the text.
size_t FindIn(std::u16string_view text, size_t from, size_t until, const UnitDelimiter& d) {
  const char16_t* t = text.data();
  const char16_t* du = d.units().data();
  const size_t m = d.size();
  size_t i = from;
#ifdef CRVLIB_ELEMENT_SSE2
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
        if (m == 2 || SameUnits(t + j + 2, du + 2, m - 2)) return j;
        mask &= ~(3u << (bit & ~1u));
      }
    }
  }
#endif
  for (; i < until; ++i) {
    if (t[i] == du[0] && SameUnits(t + i + 1, du + 1, m - 1)) return i;
  }
  return kNoMatch;
}

// The number of occurrences starting in [a, b) of a one-unit delimiter, or
// of a two-unit one (then b <= text.size() - 1). At most kChunk units.
int64_t CountIn(std::u16string_view text, size_t a, size_t b, const UnitDelimiter& d) {
  const char16_t* t = text.data();
  const char16_t c0 = d.units()[0];
  const bool pair = d.size() == 2;
  const char16_t c1 = pair ? d.units()[1] : 0;
  int64_t n = 0;
  size_t i = a;
#ifdef CRVLIB_ELEMENT_SSE2
  // Each compare yields -1 per equal lane; subtracting accumulates counts in
  // eight 16-bit lanes, which cannot overflow within one chunk.
  __m128i acc = _mm_setzero_si128();
  const LaneMatcher hits(t, c0, c1, pair);
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
  n = int64_t{lanes[0]} + lanes[1] + lanes[2] + lanes[3];
#endif
  for (; i < b; ++i) n += t[i] == c0 && (!pair || t[i + 1] == c1);
  return n;
}

// The last two occurrences starting in [a, b), found one by one.
void LastTwoIn(std::u16string_view text, size_t a, size_t b, const UnitDelimiter& d, size_t* last,
               size_t* before_last) {
  *last = kNoMatch;
  *before_last = kNoMatch;
  for (size_t r = FindIn(text, a, b, d); r != kNoMatch; r = FindIn(text, r + d.size(), b, d)) {
    *before_last = *last;
    *last = r;
    if (r + d.size() >= b) break;
  }
}

}  // namespace

// Writes the checkpoints of a pass that starts at the text's beginning.
class IndexRecorder {
 public:
  explicit IndexRecorder(MatchIndex* index) : index_(index) {
    if (index_ != nullptr) {
      index_->entries_.clear();
      index_->matches_ = -1;
    }
  }
  // Every chunk starting at or before `pos` has `before` matches before it
  // and no match starting before `floor` that is not counted.
  void Reach(size_t pos, int64_t before, size_t floor) {
    if (index_ == nullptr) return;
    for (size_t c = index_->entries_.size(); c * MatchIndex::kChunk <= pos; ++c) {
      index_->entries_.push_back({before, std::max(c * MatchIndex::kChunk, floor)});
    }
  }
  void Finish(size_t size, int64_t total, size_t floor) {
    if (index_ == nullptr) return;
    Reach(size, total, floor);
    index_->matches_ = total;
  }

 private:
  MatchIndex* index_;
};

bool UnitDelimiter::HasBorder(std::u16string_view units) {
  for (size_t k = 1; k < units.size(); ++k) {
    if (units.substr(0, k) == units.substr(units.size() - k)) return true;
  }
  return false;
}

size_t FindDelimiter(std::u16string_view text, size_t from, const UnitDelimiter& d) {
  if (text.size() < d.size() || from > text.size() - d.size()) return kNoMatch;
  return FindIn(text, from, text.size() - d.size() + 1, d);
}

size_t CollectMatches(std::u16string_view text, size_t from, const UnitDelimiter& d, size_t* out,
                      size_t cap) {
  const size_t m = d.size();
  if (cap == 0 || text.size() < m || from > text.size() - m) return 0;
  const size_t until = text.size() - m + 1;  // bound on match starts
  size_t k = 0;
  if (d.overlapping() || m > 2) {
    for (size_t r = FindIn(text, from, until, d); r != kNoMatch;
         r = FindIn(text, r + m, until, d)) {
      out[k++] = r;
      if (k == cap) break;
    }
    return k;
  }
  // Every occurrence is a match: take them from a bitmask, one bit per unit.
  const char16_t* t = text.data();
  const char16_t c0 = d.units()[0];
  const bool pair = m == 2;
  const char16_t c1 = pair ? d.units()[1] : 0;
  size_t i = from;
#ifdef CRVLIB_ELEMENT_SSE2
  const LaneMatcher hits(t, c0, c1, pair);
  // With a pair, i + 16 <= until = size - 1 keeps the load at i + 9 inside.
  for (; i + 16 <= until; i += 16) {
    unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(hits(i), hits(i + 8))));
    while (mask != 0) {
      out[k++] = i + static_cast<size_t>(std::countr_zero(mask));
      if (k == cap) return k;
      mask &= mask - 1;
    }
  }
#endif
  for (; i < until && k < cap; ++i) {
    if (t[i] == c0 && (!pair || t[i + 1] == c1)) out[k++] = i;
  }
  return k;
}

std::u16string ReplaceMatches(std::u16string_view text, const UnitDelimiter& d,
                              std::u16string_view replacement) {
  // Count first, so the result is allocated once at its size.
  const size_t matches = static_cast<size_t>(SkipDelimiters(text, 0, INT64_MAX, d).found);
  std::u16string out;
  out.reserve(text.size() - matches * d.size() + matches * replacement.size());
  constexpr size_t kBatch = 256;
  size_t ends[kBatch];
  size_t start = 0;
  for (size_t k; (k = CollectMatches(text, start, d, ends, kBatch)) != 0;) {
    for (size_t j = 0; j < k; ++j) {
      out.append(text.substr(start, ends[j] - start)).append(replacement);
      start = ends[j] + d.size();
    }
  }
  out.append(text.substr(start));
  return out;
}

AnchoredHit LocateAnchored(std::u16string_view text, size_t from, const UnitDelimiter& d,
                           std::u16string_view find, int32_t match_type) {
  const size_t m = d.size();
  const size_t n = find.size();
  const size_t size = text.size();
  auto delimiter_at = [&](size_t p) { return p + m <= size && text.substr(p, m) == d.units(); };
  // The first occurrence of the delimiter at or after p, or the end.
  auto next_match = [&](size_t p) {
    const size_t r = FindDelimiter(text, p, d);
    return r == kNoMatch ? size : r;
  };
  // Settles on the element starting at `start`, with the matches from
  // `from` up to it.
  auto settle = [&](size_t start, const SkipResult& before, bool found) {
    AnchoredHit hit;
    hit.found = found;
    hit.start = start;
    const size_t r = FindDelimiter(text, start, d);
    hit.last = r == kNoMatch;
    hit.end = hit.last ? size : r;
    hit.skipped = before.found;
    if (before.found == 1) hit.prev_start = from;
    if (before.found >= 2) hit.prev_start = before.before_last + m;
    return hit;
  };
  auto settle_found = [&](size_t start) {
    return settle(start, SkipDelimiters(text.substr(0, start), from, INT64_MAX, d), true);
  };
  // The start of the element holding position q, which lies in no match.
  auto start_of = [&](size_t q) {
    for (size_t r = q; r >= from + m; --r) {
      if (delimiter_at(r - m)) return r;
    }
    return from;
  };

  if (match_type == 0 || match_type == 1) {
    // Elements start behind a match: the delimiter's last unit, then find's
    // first. The element at `from` itself is found the same way.
    const char16_t pair[2] = {d.units()[m - 1], find[0]};
    const UnitDelimiter anchor(std::u16string_view(pair, 2));
    for (size_t p = FindDelimiter(text, from - 1, anchor); p != kNoMatch;
         p = FindDelimiter(text, p + 1, anchor)) {
      const size_t q = p + 1;
      if (q != from && (q < from + m || !delimiter_at(q - m))) continue;
      const size_t end = next_match(q);
      const bool fits = match_type == 0 ? end - q == n : end - q >= n;
      if (fits && text.substr(q, n) == find) return settle_found(q);
    }
  } else if (match_type == 2) {
    // Elements end before a match: find's last unit, then the delimiter's
    // first; the last element ends at the end instead.
    const char16_t pair[2] = {find[n - 1], d.units()[0]};
    const UnitDelimiter anchor(std::u16string_view(pair, 2));
    for (size_t p = from + n > 0 ? FindDelimiter(text, from + n - 1, anchor) : kNoMatch;
         p != kNoMatch; p = FindDelimiter(text, p + 1, anchor)) {
      const size_t end = p + 1;
      const size_t q = end - n;
      if (!delimiter_at(end) || text.substr(q, n) != find) continue;
      // No match may start inside the candidate (nor cover its first unit).
      if (next_match(q >= from + m - 1 ? q - (m - 1) : from) != end) continue;
      return settle_found(start_of(q));
    }
  } else {
    // Find's first two units (its only one), then the whole of it lying
    // inside one element.
    const UnitDelimiter anchor(find.substr(0, 2));
    for (size_t p = FindDelimiter(text, from, anchor); p != kNoMatch;
         p = FindDelimiter(text, p + 1, anchor)) {
      if (text.substr(p, n) != find) continue;
      if (next_match(p >= from + m - 1 ? p - (m - 1) : from) < p + n) continue;
      return settle_found(start_of(p));
    }
  }
  // No element before the last one matched: settle on the last, which may
  // still end with find.
  const SkipResult all = SkipDelimiters(text, from, INT64_MAX, d);
  const size_t last_start = all.found > 0 ? all.last + m : from;
  AnchoredHit hit = settle(last_start, all, false);
  if (match_type == 2 && size - last_start >= n && text.substr(size - n) == find) hit.found = true;
  return hit;
}

size_t MatchIndex::Match(std::u16string_view text, const UnitDelimiter& d, int64_t k) const {
  auto it = std::partition_point(entries_.begin(), entries_.end(),
                                 [k](const Entry& e) { return e.before < k; });
  const Entry& e = *(it - 1);
  const size_t until = text.size() - d.size() + 1;
  size_t p = e.resume;
  for (int64_t j = e.before;;) {
    const size_t r = FindIn(text, p, until, d);
    if (++j == k || r == kNoMatch) return r;
    p = r + d.size();
  }
}

SkipResult SkipDelimiters(std::u16string_view text, size_t from, int64_t limit,
                          const UnitDelimiter& d, MatchIndex* index) {
  IndexRecorder rec(from == 0 ? index : nullptr);
  SkipResult out;
  const size_t m = d.size();
  if (text.size() < m || from > text.size() - m) {
    rec.Finish(text.size(), 0, from);
    return out;
  }
  const size_t until = text.size() - m + 1;  // bound on match starts

  if (d.overlapping() || m > 2) {
    size_t pos = from;
    while (out.found < limit) {
      const size_t r = FindIn(text, pos, until, d);
      if (r == kNoMatch) break;
      rec.Reach(r, out.found, pos);
      out.before_last = out.last;
      out.last = r;
      ++out.found;
      pos = r + m;
    }
    if (out.found < limit) rec.Finish(text.size(), out.found, pos);
    return out;
  }

  struct Range {
    size_t a = 0, b = 0;
    int64_t count = 0;
  };
  Range last_hit, prior_hit;  // the last two chunks that held matches
  size_t pos = from;
  while (pos < until) {
    const size_t end = std::min((pos / MatchIndex::kChunk + 1) * MatchIndex::kChunk, until);
    rec.Reach(pos, out.found, pos);
    const int64_t count = CountIn(text, pos, end, d);
    if (out.found + count >= limit) {
      // The wanted match lies in this chunk: walk to it.
      size_t r = kNoMatch, before = kNoMatch, p = pos;
      for (int64_t j = out.found; j < limit; ++j) {
        before = r;
        r = FindIn(text, p, end, d);
        p = r + m;
      }
      if (limit - out.found < 2 && out.found > 0) {
        size_t ignored;
        LastTwoIn(text, last_hit.a, last_hit.b, d, &before, &ignored);
      }
      out.found = limit;
      out.last = r;
      out.before_last = before;
      return out;
    }
    if (count > 0) {
      prior_hit = last_hit;
      last_hit = {pos, end, count};
    }
    out.found += count;
    pos = end;
  }
  if (out.found > 0) {
    LastTwoIn(text, last_hit.a, last_hit.b, d, &out.last, &out.before_last);
    if (last_hit.count == 1 && out.found > 1) {
      size_t ignored;
      LastTwoIn(text, prior_hit.a, prior_hit.b, d, &out.before_last, &ignored);
    }
  }
  rec.Finish(text.size(), out.found, pos);
  return out;
}

}  // namespace crvlib::internal
