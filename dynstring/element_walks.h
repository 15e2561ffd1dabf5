// The walks behind the element scan: how the cache gets from the element it
// holds to a later one. Each leaves the cache exactly as the literal forward
// loop (AdvanceLiteral: one byte-wise search per element) would; they
// differ only in speed:
//
//   AdvanceLiteral   the loop itself, for byte mode and odd offsets
//   StepOne          the next element, its match read from a stream
//                    collected ahead (a walk 1, 2, 3, …)
//   JumpTo           a far element, read from the checkpoints
//   Advance          any later element: the literal loop, a jump, or a run
//                    of delimiters counted at memory speed
//   LocateOnwards    LocateElement's walk, testing elements in place
//   LocateSearching  the same in binary mode, searching only the places
//                    where a matching element can be
//
// Positions inside the text are code units here; the cache counts bytes.
#ifndef CRVLIB_DYNSTRING_ELEMENT_WALKS_H_
#define CRVLIB_DYNSTRING_ELEMENT_WALKS_H_

#include <cstdint>
#include <memory>
#include <string_view>

#include "core/checked.h"
#include "crvlib/enums.h"
#include "crvlib/string.h"
#include "dynstring/element_scan.h"
#include "dynstring/scan_cache.h"
#include "platform/collation.h"

namespace crvlib::internal {

// The scan's target for "the last element": the largest it can reach.
inline constexpr int32_t kScanToEnd = 2147483646;
// Walks of up to this many elements search match by match; longer ones count.
inline constexpr int64_t kShortWalk = 16;

namespace element {

// A position or length in code units as the cache's bytes, and back.
inline int32_t ToBytes(size_t units) {
  return static_cast<int32_t>(units * 2);
}
inline size_t ToUnits(int32_t bytes) {
  return static_cast<size_t>(bytes) / 2;
}

template <class Text>
MatchIndex* ReadyIndex(Text& t, const String& Delimiter) {
  ScanIndexSlot& slot = t.IndexSlot();
  if (slot.index && slot.index->matches() >= 0 && slot.delimiter == Delimiter) {
    return slot.index.get();
  }
  return nullptr;
}

template <class Text>
MatchIndex* FreshIndex(Text& t, const String& Delimiter) {
  ScanIndexSlot& slot = t.IndexSlot();
  if (!slot.index) slot.index = std::make_unique<MatchIndex>();
  slot.delimiter = Delimiter;
  return slot.index.get();
}

// The literal forward loop, one byte-wise search per element. The cache
// must not be at the end.
template <class Text>
void AdvanceLiteral(Text& t, const String& Delimiter, int32_t target) {
  ScanCache& s = t.Cache();
  while (s.ScanElement < target) {
    s.ShiftToPrev();
    const int32_t start = s.ScanElement > 0
                              ? CheckedAdd(CheckedAdd(s.ScanStart, s.ScanLength), Delimiter.LenB())
                              : s.ScanStart;
    const int32_t r = t.FindBytesFrom(Delimiter, start);
    if (r < 0) return s.Set(s.ScanElement + 1, start, t.LengthB() - start, true);
    s.Set(s.ScanElement + 1, start, r - start, false);
  }
}

// One turn of the forward loop: the element after the cached one, which is
// not the last. Takes the match from the stream collected ahead when the
// text can be read in place as code units without rearranging the buffer;
// otherwise the literal byte-wise search. The next start cannot overflow:
// a delimiter follows the cached element, so it is at most LengthB.
template <class Text>
void StepOne(Text& t, const String& Delimiter) {
  std::u16string_view text;
  if (!t.UnitsInPlace(Delimiter, &text)) {
    return AdvanceLiteral(t, Delimiter, t.Cache().ScanElement + 1);
  }
  ScanCache& s = t.Cache();
  const int32_t start = s.ScanStart + s.ScanLength + Delimiter.LenB();
  ScanIndexSlot& slot = t.IndexSlot();
  if (!slot.ahead) slot.ahead = std::make_unique<MatchesAhead>();
  const size_t r = slot.ahead->Next(text, ToUnits(start), UnitDelimiter(Delimiter.view()));
  const bool last = r == kNoMatch;
  s.ShiftToPrev();
  s.Set(s.ScanElement + 1, start, ToBytes(last ? text.size() : r) - start, last);
}

// Bytes equal, the common one-unit case without a library call.
inline bool SameDelimiter(const String& a, const String& b) {
  if (a.LenB() != b.LenB()) return false;
  const size_t units = static_cast<size_t>(a.LenB() + 1) / 2;
  for (size_t i = 0; i < units; ++i) {
    if (a.data()[i] != b.data()[i]) return false;
  }
  return true;
}

// Sets the cache to element min(target, count) as the forward loop leaves
// it, reading element boundaries from the checkpoints.
inline void JumpTo(ScanCache& s, std::u16string_view text, const UnitDelimiter& d,
                   const MatchIndex& index, int64_t target) {
  const int64_t count = index.matches() + 1;
  const size_t m = d.size();
  auto start_of = [&](int64_t j) -> size_t { return j == 1 ? 0 : index.Match(text, d, j - 1) + m; };
  auto end_of = [&](int64_t j) -> size_t {
    return j == count ? text.size() : index.Match(text, d, j);
  };
  const int64_t e = target < count ? target : count;
  const size_t start = start_of(e);
  s.Set(static_cast<int32_t>(e), ToBytes(start), ToBytes(end_of(e) - start), e == count);
  if (e == 1) return s.SetPrev(0, 0, 0);
  const size_t prev = start_of(e - 1);
  s.SetPrev(static_cast<int32_t>(e - 1), ToBytes(prev), ToBytes(start - m - prev));
}

// The forward loop from the cached element towards `target`, taken in runs.
// The cache must not be at the end. `may_index`: a far step backwards, for
// which checkpoints are laid first.
template <class Text>
void Advance(Text& t, const String& Delimiter, int32_t target, bool may_index) {
  ScanCache& s = t.Cache();
  const int64_t steps = int64_t{target} - s.ScanElement;
  if (!t.UnitMode(Delimiter) || (steps <= kShortWalk && !t.Contiguous())) {
    return AdvanceLiteral(t, Delimiter, target);
  }
  const UnitDelimiter d(Delimiter.view());
  MatchIndex* index = ReadyIndex(t, Delimiter);
  if (index == nullptr && may_index && steps > kShortWalk) {
    // A far step backwards: first lay checkpoints over the whole text, so
    // that later ones (a binary search's probes) cost a chunk each.
    index = FreshIndex(t, Delimiter);
    SkipDelimiters(t.Units(), 0, INT64_MAX, d, index);
  }
  if (index != nullptr && steps > kShortWalk) {
    return JumpTo(s, t.Units(), d, *index, target);
  }

  const std::u16string_view text = t.Units();
  const size_t m = d.size();
  const size_t from =
      s.ScanElement > 0 ? (size_t{0} + s.ScanStart + s.ScanLength) / 2 + m : size_t{0};
  // A full pass from the first element lays checkpoints on the way.
  MatchIndex* record =
      s.ScanElement == 0 && target == kScanToEnd ? FreshIndex(t, Delimiter) : nullptr;
  // The last three matches of the walk, newest first: r1, r2, r3.
  size_t r1 = kNoMatch, r2 = kNoMatch, r3 = kNoMatch;
  int64_t found = 0;
  if (steps == 1) {
    r1 = FindDelimiter(text, from, d);
    found = r1 == kNoMatch ? 0 : 1;
  } else {
    const SkipResult run = SkipDelimiters(text, from, steps - 1, d, record);
    found = run.found;
    r1 = run.last;
    r2 = run.before_last;
    if (found == steps - 1) {
      const size_t next = FindDelimiter(text, found > 0 ? r1 + m : from, d);
      if (next != kNoMatch) {
        r3 = r2;
        r2 = r1;
        r1 = next;
        found = steps;
      }
    }
  }
  if (record != nullptr && record->matches() < 0) t.IndexSlot().index.reset();

  // Element e + j starts at `from` for j = 1, else right behind match j - 1.
  auto after = [&](size_t r) { return r == kNoMatch ? from : r + m; };
  // The walk ends at `element`, [start, end); the one before it ended at the
  // match `prev_end` (kNoMatch: it is the element the walk began at) and
  // began behind `before_prev`.
  auto settle = [&](int64_t element, size_t start, size_t end, bool last, size_t prev_end,
                    size_t before_prev) {
    if (prev_end == kNoMatch) {
      s.ShiftToPrev();
    } else {
      const size_t prev = after(before_prev);
      s.SetPrev(static_cast<int32_t>(element - 1), ToBytes(prev), ToBytes(prev_end - prev));
    }
    s.Set(static_cast<int32_t>(element), ToBytes(start), ToBytes(end - start), last);
  };
  const int64_t e = s.ScanElement;
  if (found == steps) {
    // Every match was there: the target element ends at r1.
    return settle(target, after(r2), r1, false, steps >= 2 ? r2 : kNoMatch, r3);
  }
  // The end came first: the text after the last match is the last element.
  settle(e + found + 1, after(r1), text.size(), true, found >= 1 ? r1 : kNoMatch, r2);
}

// LocateElement's test of one element, on code units read in place: the
// candidate narrowed by the match type and compared in the mode given, or
// the search of a substring match (FindB's rules: an empty element holds
// nothing, an empty value is in every other element; text mode compares
// case-folded code units).
class ElementMatch {
 public:
  ElementMatch(std::u16string_view find, int32_t match_type, bool text_mode)
      : find_(find), type_(match_type), text_(text_mode) {}

  bool operator()(std::u16string_view element) const {
    const size_t n = find_.size();
    switch (type_) {
      case vxExactMatch:
        return Same(element);
      case vxFirstCharMatch:
        return Same(element.size() < n ? std::u16string_view() : element.substr(0, n));
      case vxLastCharMatch:
        return element.size() >= n && Same(element.substr(element.size() - n));
      default:
        return element.size() >= n && !element.empty() && (n == 0 || Contains(element));
    }
  }

 private:
  bool Same(std::u16string_view candidate) const {
    if (!text_) return candidate == find_;
    return platform::TextCompare(candidate, find_) == 0;
  }
  bool Contains(std::u16string_view element) const {
    if (!text_) return element.find(find_) != std::u16string_view::npos;
    for (size_t r = 0; r + find_.size() <= element.size(); ++r) {
      size_t k = 0;
      while (k < find_.size() &&
             platform::FoldCase(element[r + k]) == platform::FoldCase(find_[k])) {
        ++k;
      }
      if (k == find_.size()) return true;
    }
    return false;
  }

  std::u16string_view find_;
  int32_t type_;
  bool text_;
};

// LocateElement's walk on from the cached element, which was tested and is
// not the last: the following elements are tested in place as the cursor
// meets them. The cache ends where the one-step walk leaves it: at the
// element that matched, or at the last element.
template <class Text>
int32_t LocateOnwards(Text& t, const String& Delimiter, const ElementMatch& match) {
  ScanCache& s = t.Cache();
  const UnitDelimiter d(Delimiter.view());
  size_t prev_start = ToUnits(s.ScanStart);
  size_t prev_length = ToUnits(s.ScanLength);
  int32_t e = s.ScanElement;
  ElementCursor c(t.Units(), d, prev_start + prev_length + d.size());
  for (;; c.Next()) {
    ++e;
    const bool hit = match(c.element());
    if (hit || c.last()) {
      s.SetPrev(e - 1, ToBytes(prev_start), ToBytes(prev_length));
      s.Set(e, ToBytes(c.start()), ToBytes(c.end() - c.start()), c.last());
      return hit ? e : 0;
    }
    prev_start = c.start();
    prev_length = c.end() - c.start();
  }
}

// LocateOnwards in binary mode for a delimiter whose occurrences cannot
// overlap: the places where a matching element can only be are searched
// for (LocateAnchored) instead of every element being looked at. The cache
// ends as the one-step walk leaves it.
template <class Text>
int32_t LocateSearching(Text& t, const UnitDelimiter& d, std::u16string_view find,
                        int32_t MatchType) {
  ScanCache& s = t.Cache();
  const std::u16string_view text = t.Units();
  const size_t from = (size_t{0} + s.ScanStart + s.ScanLength) / 2 + d.size();
  const AnchoredHit hit = LocateAnchored(text, from, d, find, MatchType);
  const int32_t e = static_cast<int32_t>(s.ScanElement + 1 + hit.skipped);
  if (hit.prev_start == kNoMatch) {
    s.ShiftToPrev();
  } else {
    s.SetPrev(e - 1, ToBytes(hit.prev_start), ToBytes(hit.start - d.size() - hit.prev_start));
  }
  s.Set(e, ToBytes(hit.start), ToBytes(hit.end - hit.start), hit.last);
  return hit.found ? e : 0;
}

}  // namespace element
}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_ELEMENT_WALKS_H_
