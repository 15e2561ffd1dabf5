// A deliberately naive element engine for checking the real one: the array
// is re-split from scratch for every question, the sorted insertion is the
// literal binary search with its probe counter, and SortElements inserts the
// elements one by one into a growing string. Quadratic and worse on purpose;
// only for small inputs. Strings of whole code units, no byte mode.
#ifndef CRVLIB_TESTS_TESTING_NAIVE_ELEMENTS_H_
#define CRVLIB_TESTS_TESTING_NAIVE_ELEMENTS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace crvlib::testing {

// The elements of `text` at `delim` (matched left to right, never
// overlapping); none for "".
std::vector<std::u16string> NaiveSplit(std::u16string_view text, std::u16string_view delim);

// LocateElement: the first element at or after `position` (0 taken as 1)
// whose candidate matches FindValue: the whole element, its first or last
// find.size() units, or (substring) any place in it; case_type 1 compares
// code units, 0 the locale's text order (case-folded units for substrings).
int32_t NaiveLocate(std::u16string_view text, std::u16string_view delim, std::u16string_view find,
                    int32_t position, int32_t match_type, int32_t case_type);

// InsertElementSorted on a string: returns the position, updates `text`.
// Shared with the engine, so not checked by this twin: the step-limited
// binary search (it gives up after n probes and the last comparison picks
// the side) is the engine's rule restated, not derived anew, and element
// comparison is the library's own CompareElementValues. What the twin does
// check is everything around them: re-splitting, placement and insertion.
int32_t NaiveInsertSorted(std::u16string& text, std::u16string_view delim,
                          std::u16string_view value, int32_t order, int32_t justification,
                          int32_t case_type, int32_t allow_duplicates);

// SortElements: the elements inserted in turn into an empty string.
std::u16string NaiveSort(std::u16string_view text, std::u16string_view delim, int32_t order,
                         int32_t justification, int32_t case_type);

}  // namespace crvlib::testing

#endif  // CRVLIB_TESTS_TESTING_NAIVE_ELEMENTS_H_
