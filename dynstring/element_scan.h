// The delimiter search behind the element engine, over UTF-16 text read in
// place as code units.
//
// A dynamic string array splits its text at a delimiter matched exactly,
// left to right, never overlapping: after a match the search resumes behind
// it. These routines find one match, skip a number of matches (counting them
// at memory speed for the common delimiters), collect matches in batches
// for walks that visit every element, and keep an optional index of
// checkpoints so that the k-th match can be found again without rescanning
// from the start.
//
//   UnitDelimiter d(u"||");                      d.overlapping() == true
//   FindDelimiter(u"a|||b", 0, d)             == 1
//   SkipDelimiters(u"a|b|c", 0, 99, d1)       == {found 2, last 3, before_last 1}
#ifndef CRVLIB_DYNSTRING_ELEMENT_SCAN_H_
#define CRVLIB_DYNSTRING_ELEMENT_SCAN_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace crvlib::internal {

inline constexpr size_t kNoMatch = static_cast<size_t>(-1);

// A non-empty delimiter prepared for searching.
class UnitDelimiter {
 public:
  explicit UnitDelimiter(std::u16string_view units) : units_(units) {
    // One unit never overlaps itself; two overlap when they are equal.
    if (units.size() == 2) {
      overlapping_ = units[0] == units[1];
    } else if (units.size() > 2) {
      overlapping_ = HasBorder(units);
    }
  }

  std::u16string_view units() const { return units_; }
  size_t size() const { return units_.size(); }
  // True when two occurrences can overlap ("||", "aba"): the delimiter has a
  // proper prefix that is also a suffix. Only then does the left-to-right
  // rule decide which occurrences are matches; otherwise every occurrence is.
  bool overlapping() const { return overlapping_; }

 private:
  static bool HasBorder(std::u16string_view units);

  std::u16string_view units_;
  bool overlapping_ = false;
};

// The first occurrence of `d` starting at or after `from` and lying wholly
// in `text`, or kNoMatch.
size_t FindDelimiter(std::u16string_view text, size_t from, const UnitDelimiter& d);

// Up to `cap` successive matches from `from` (a position where the search
// may start), left to right and never overlapping, written to `out` in
// order; returns how many, 0 only when there are none. Walks that look at
// every element take their boundaries in such batches, asking again from
// behind the last match until the answer is 0.
size_t CollectMatches(std::u16string_view text, size_t from, const UnitDelimiter& d, size_t* out,
                      size_t cap);

// `text` with every match of `d` (left to right, never overlapping)
// replaced by `replacement`: what ChangeAll makes of a whole text, since it
// searches on behind each replacement and never inside it.
//   ReplaceMatches(u"a||b|c", UnitDelimiter(u"|"), u";;") == u"a;;;;b;;c"
std::u16string ReplaceMatches(std::u16string_view text, const UnitDelimiter& d,
                              std::u16string_view replacement);

// The elements of `text` split at `d`, handed to `add` as views in order
// ("" gives one empty element; callers for which it has none check first).
template <class Add>
void ForEachElement(std::u16string_view text, const UnitDelimiter& d, Add&& add) {
  constexpr size_t kBatch = 256;
  size_t ends[kBatch];
  size_t start = 0;
  for (size_t k; (k = CollectMatches(text, start, d, ends, kBatch)) != 0;) {
    for (size_t j = 0; j < k; ++j) {
      add(text.substr(start, ends[j] - start));
      start = ends[j] + d.size();
    }
  }
  add(text.substr(start));
}

// Where LocateElement's search ends, for LocateAnchored.
struct AnchoredHit {
  bool found = false;   // else the fields describe the last element
  bool last = false;    // no match follows the element
  int64_t skipped = 0;  // elements before it, from the one at `from` on
  size_t start = 0;     // the element [start, end)
  size_t end = 0;
  size_t prev_start = kNoMatch;  // the element before it, when that one starts at or
                                 // after `from` (it ends a delimiter before `start`)
};

// LocateElement's search in binary mode from the element that starts at
// `from` (just behind a match) on, for a delimiter whose occurrences cannot
// overlap (one unit, or two different ones), so that every occurrence is a
// match: the first element equal to `find` (match type 0), beginning with
// it (1), ending with it (2) or holding it (3). Instead of looking at every
// element it searches for the two units where such an element can only be
// (the delimiter's last unit and find's first for types 0 and 1, find's
// last and the delimiter's first for 2, find's first two for 3) and checks
// those places; the element's number and its neighbour then come from
// counting the matches before it, or before the end. `find` is not empty.
AnchoredHit LocateAnchored(std::u16string_view text, size_t from, const UnitDelimiter& d,
                           std::u16string_view find, int32_t match_type);

// The matches a walk by single elements will meet next, collected in
// batches: match[next] is the first match at or after `from` and the others
// follow in order, up to count. A step whose search starts at `from` takes
// it instead of searching. The batches grow while the walk goes on, so a
// lone step costs little more than its own search.
struct MatchesAhead {
  static constexpr size_t kMaxBatch = 64;
  size_t match[kMaxBatch];
  size_t next = 0;
  size_t count = 0;
  size_t from = 0;
  size_t batch = 0;  // the size of the next batch

  // The next match at or after `at` (a position the search may start at),
  // or kNoMatch.
  size_t Next(std::u16string_view text, size_t at, const UnitDelimiter& d) {
    if (next < count && from == at) {
      const size_t r = match[next++];
      from = r + d.size();
      return r;
    }
    // A walk that used up its batch continues with a larger one.
    batch = count > 0 && next == count && from == at ? std::min(batch * 2, kMaxBatch) : 4;
    count = CollectMatches(text, at, d, match, batch);
    next = 0;
    if (count == 0) return kNoMatch;
    from = match[0] + d.size();
    next = 1;
    return match[0];
  }
};

// Checkpoints over one text and one delimiter: for every block of kChunk
// code units, how many matches start before it and where the search may
// resume inside it. Built by a full SkipDelimiters pass from the start.
class MatchIndex {
 public:
  static constexpr size_t kChunk = 2048;

  struct Entry {
    int64_t before;  // matches starting before the chunk
    size_t resume;   // the first position in the chunk a match may start at
  };

  int64_t matches() const { return matches_; }
  // The start of match `k` (1-based, 1 <= k <= matches()).
  size_t Match(std::u16string_view text, const UnitDelimiter& d, int64_t k) const;

 private:
  friend class IndexRecorder;
  std::vector<Entry> entries_;
  int64_t matches_ = 0;
};

struct SkipResult {
  int64_t found = 0;              // matches found, at most the limit
  size_t last = kNoMatch;         // the start of the last one found
  size_t before_last = kNoMatch;  // the start of the one before it
};

// Finds up to `limit` successive matches from `from` (a position where the
// search may start: the text's start or just behind a match). When `index`
// is given, `from` is 0 and the limit is not reached, the pass fills it.
SkipResult SkipDelimiters(std::u16string_view text, size_t from, int64_t limit,
                          const UnitDelimiter& d, MatchIndex* index = nullptr);

}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_ELEMENT_SCAN_H_
