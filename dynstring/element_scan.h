// The delimiter search behind the element engine, over UTF-16 text read in
// place as code units.
//
// A dynamic string array splits its text at a delimiter matched exactly,
// left to right, never overlapping: after a match the search resumes behind
// it. These routines find one match, skip a number of matches (counting them
// at memory speed for the common delimiters), and keep an optional index of
// checkpoints so that the k-th match can be found again without rescanning
// from the start.
//
//   UnitDelimiter d(u"||");                      d.overlapping() == true
//   FindDelimiter(u"a|||b", 0, d)             == 1
//   SkipDelimiters(u"a|b|c", 0, 99, d1)       == {found 2, last 3, before_last 1}
#ifndef CRVLIB_DYNSTRING_ELEMENT_SCAN_H_
#define CRVLIB_DYNSTRING_ELEMENT_SCAN_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace crvlib::internal {

inline constexpr size_t kNoMatch = static_cast<size_t>(-1);

// A non-empty delimiter prepared for searching.
class UnitDelimiter {
 public:
  explicit UnitDelimiter(std::u16string_view units);

  std::u16string_view units() const { return units_; }
  size_t size() const { return units_.size(); }
  // True when two occurrences can overlap ("||", "aba"): the delimiter has a
  // proper prefix that is also a suffix. Only then does the left-to-right
  // rule decide which occurrences are matches; otherwise every occurrence is.
  bool overlapping() const { return overlapping_; }

 private:
  std::u16string_view units_;
  bool overlapping_ = false;
};

// The first occurrence of `d` starting at or after `from` and lying wholly
// in `text`, or kNoMatch.
size_t FindDelimiter(std::u16string_view text, size_t from, const UnitDelimiter& d);

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
