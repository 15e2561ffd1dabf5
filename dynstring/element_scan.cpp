// Delimiter search over code units.
//
// The loops that compare code units are the kernels of element_kernels.h
// (plain or vector); this file decides what to ask them. Finding one match
// is one kernel search. Skipping many matches counts instead of finding: the
// text is taken in chunks of MatchIndex::kChunk units, each chunk's matches
// are counted, and only the chunk in which the wanted match lies is searched
// match by match. Counting is exact for a one-unit delimiter and for a
// two-unit one whose units differ: their occurrences can never overlap, so
// every occurrence is a match. Delimiters whose occurrences can overlap
// ("||") and longer ones are resolved match by match, left to right, which
// is what decides overlaps.
#include "dynstring/element_scan.h"

#include <algorithm>

#include "dynstring/element_kernels.h"

namespace crvlib::internal {
namespace {

// The last two occurrences starting in [a, b), found one by one.
void LastTwoIn(const ScanKernel& k, std::u16string_view text, size_t a, size_t b,
               const UnitDelimiter& d, size_t* last, size_t* before_last) {
  *last = kNoMatch;
  *before_last = kNoMatch;
  for (size_t r = k.find(text, a, b, d); r != kNoMatch; r = k.find(text, r + d.size(), b, d)) {
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
  return ActiveScanKernel().find(text, from, text.size() - d.size() + 1, d);
}

size_t CollectMatches(std::u16string_view text, size_t from, const UnitDelimiter& d, size_t* out,
                      size_t cap) {
  const size_t m = d.size();
  if (cap == 0 || text.size() < m || from > text.size() - m) return 0;
  const size_t until = text.size() - m + 1;  // bound on match starts
  const ScanKernel& kernel = ActiveScanKernel();
  if (!d.overlapping() && m <= 2) return kernel.collect(text, from, until, d, out, cap);
  size_t k = 0;
  for (size_t r = kernel.find(text, from, until, d); r != kNoMatch;
       r = kernel.find(text, r + m, until, d)) {
    out[k++] = r;
    if (k == cap) break;
  }
  return k;
}

std::u16string ReplaceMatches(std::u16string_view text, const UnitDelimiter& d,
                              std::u16string_view replacement) {
  // Count first, so the result is allocated once at its size.
  const size_t matches = static_cast<size_t>(SkipDelimiters(text, 0, INT64_MAX, d).found);
  std::u16string out;
  out.reserve(text.size() - matches * d.size() + matches * replacement.size());
  ElementCursor c(text, d);
  for (;;) {
    out.append(c.element());
    if (!c.Next()) break;
    out.append(replacement);
  }
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
  const ScanKernel& kernel = ActiveScanKernel();
  size_t p = e.resume;
  for (int64_t j = e.before;;) {
    const size_t r = kernel.find(text, p, until, d);
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
  const ScanKernel& kernel = ActiveScanKernel();

  if (d.overlapping() || m > 2) {
    size_t pos = from;
    while (out.found < limit) {
      const size_t r = kernel.find(text, pos, until, d);
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
    const int64_t count = kernel.count(text, pos, end, d);
    if (out.found + count >= limit) {
      // The wanted match lies in this chunk: walk to it.
      size_t r = kNoMatch, before = kNoMatch, p = pos;
      for (int64_t j = out.found; j < limit; ++j) {
        before = r;
        r = kernel.find(text, p, end, d);
        p = r + m;
      }
      if (limit - out.found < 2 && out.found > 0) {
        size_t ignored;
        LastTwoIn(kernel, text, last_hit.a, last_hit.b, d, &before, &ignored);
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
    LastTwoIn(kernel, text, last_hit.a, last_hit.b, d, &out.last, &out.before_last);
    if (last_hit.count == 1 && out.found > 1) {
      size_t ignored;
      LastTwoIn(kernel, text, prior_hit.a, prior_hit.b, d, &out.before_last, &ignored);
    }
  }
  rec.Finish(text.size(), out.found, pos);
  return out;
}

}  // namespace crvlib::internal
