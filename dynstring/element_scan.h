// The delimiter search behind the element engine, over UTF-16 text read in
// place as code units.
//
// A dynamic string array splits its text at a delimiter matched exactly,
// left to right, never overlapping: after a match the search resumes behind
// it. These routines find one match, skip a number of matches (counting them
// at memory speed for the common delimiters), hand out the elements one by
// one from matches collected in batches (ElementCursor, for every walk that
// visits each element), and keep an optional index of checkpoints so that
// the k-th match can be found again without rescanning from the start. The
// loops over code units are the kernels of element_kernels.h.
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
// order; returns how many, fewer than `cap` only when no more follow.
size_t CollectMatches(std::u16string_view text, size_t from, const UnitDelimiter& d, size_t* out,
                      size_t cap);

// Successive matches from a position on, collected in batches that grow
// while the stream is read, so a lone read costs little more than its own
// search and a long one little more than the batches. The text is passed
// to every read: it may have moved in memory in between, never changed.
class MatchStream {
 public:
  static constexpr size_t kFirstBatch = 4;
  static constexpr size_t kMaxBatch = 64;

  // The next read starts its search at `from`.
  void Restart(size_t from) {
    from_ = from;
    next_ = count_ = batch_ = 0;
  }
  // Where the search goes on: behind the last match read.
  size_t from() const { return from_; }
  // The next match, or kNoMatch once there are none.
  size_t Next(std::u16string_view text, const UnitDelimiter& d) {
    if (next_ == count_) {
      if (count_ < batch_) return kNoMatch;  // a short batch was the last
      batch_ = batch_ == 0 ? kFirstBatch : std::min(batch_ * 2, kMaxBatch);
      count_ = CollectMatches(text, from_, d, match_, batch_);
      next_ = 0;
      if (count_ == 0) return kNoMatch;
    }
    const size_t r = match_[next_++];
    from_ = r + d.size();
    return r;
  }

 private:
  size_t match_[kMaxBatch];
  size_t from_ = 0;
  size_t next_ = 0;
  size_t count_ = 0;
  size_t batch_ = 0;  // the size of the last batch, 0 before the first
};

// The elements of `text` one at a time, from the one that starts at `from`
// (the text's start or just behind a match) to the last, which ends at the
// text's end. Every walk that looks at each element takes them from here.
//   ElementCursor c(u"a|bc", UnitDelimiter(u"|"));
//   c.element() == u"a", c.last() == false
//   c.Next() == true, c.element() == u"bc", c.last() == true
//   c.Next() == false
class ElementCursor {
 public:
  ElementCursor(std::u16string_view text, const UnitDelimiter& d, size_t from = 0)
      : text_(text), d_(d), start_(from) {
    matches_.Restart(from);
    FindEnd();
  }

  // The element is [start, end); a match or the text's end follows it.
  size_t start() const { return start_; }
  size_t end() const { return end_; }
  bool last() const { return last_; }
  std::u16string_view element() const { return text_.substr(start_, end_ - start_); }

  // Moves on to the next element; false, staying put, on the last.
  bool Next() {
    if (last_) return false;
    start_ = end_ + d_.size();
    FindEnd();
    return true;
  }

 private:
  void FindEnd() {
    const size_t r = matches_.Next(text_, d_);
    last_ = r == kNoMatch;
    end_ = last_ ? text_.size() : r;
  }

  std::u16string_view text_;
  UnitDelimiter d_;
  MatchStream matches_;
  size_t start_;
  size_t end_ = 0;
  bool last_ = false;
};

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
  ElementCursor c(text, d);
  do {
    add(c.element());
  } while (c.Next());
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

// The matches a walk by single elements will meet next. A step whose
// search starts where the previous step's match ended reads on in the
// stream instead of searching; any other step starts the stream again.
struct MatchesAhead {
  MatchStream stream;
  bool live = false;

  // The next match at or after `at` (a position the search may start at),
  // or kNoMatch.
  size_t Next(std::u16string_view text, size_t at, const UnitDelimiter& d) {
    if (!live || stream.from() != at) {
      stream.Restart(at);
      live = true;
    }
    return stream.Next(text, d);
  }
  // For a changed text or another delimiter.
  void Forget() { live = false; }
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
