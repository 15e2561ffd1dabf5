// What a view remembers of its last element scan. ScanCache holds the
// element a scan reached and the one before it, in bytes within the view,
// and its methods are the only moves the engine makes on it: a reset, the
// forward loop's turn (ShiftToPrev, then Set), a jump (SetPrev and Set), and
// the edit rule (AdjustForEdit, which may BackUp by one element).
// ScanIndexSlot holds what speeds a scan up without changing its answers:
// checkpoints over the text and the matches collected ahead of a walk.
#ifndef CRVLIB_DYNSTRING_SCAN_CACHE_H_
#define CRVLIB_DYNSTRING_SCAN_CACHE_H_

#include <cstdint>
#include <memory>

#include "crvlib/string.h"

namespace crvlib::internal {

// The element-scan cache of a view. The element engine owns its use; edits
// keep it, back it up or reset it (AdjustForEdit).
struct ScanCache {
  String ScanDelimiter;
  bool ScanAtEnd = false;
  int32_t ScanElement = 0;  // 1-based number of the cached element, 0 for none
  int32_t ScanStart = 0;
  int32_t ScanLength = 0;
  int32_t ScanPrevElement = 0;
  int32_t ScanPrevStart = 0;
  int32_t ScanPrevLength = 0;

  // Forgets the cached element and the one before it; ScanAtEnd becomes
  // (LengthB == 0). The delimiter is kept.
  void Reset(int32_t LengthB);
  // The cached element becomes the previous one: the first move of each
  // turn of the forward loop, before the next element is Set.
  void ShiftToPrev() {
    ScanPrevElement = ScanElement;
    ScanPrevStart = ScanStart;
    ScanPrevLength = ScanLength;
  }
  // The cached element and whether it is the last.
  void Set(int32_t element, int32_t start, int32_t length, bool at_end) {
    ScanElement = element;
    ScanStart = start;
    ScanLength = length;
    ScanAtEnd = at_end;
  }
  // The element before the cached one; (0, 0, 0) when none is known.
  void SetPrev(int32_t element, int32_t start, int32_t length) {
    ScanPrevElement = element;
    ScanPrevStart = start;
    ScanPrevLength = length;
  }
  // One element back: the previous element becomes the cached one, and the
  // one before it is not known. ScanAtEnd becomes (LengthB == 0).
  void BackUp(int32_t LengthB);
  // The cache's part of an edit of its view at EditStart, the view now being
  // LengthB bytes long: with no cached element, a reset; at the cached
  // element's start, BackUp, so a loop that edits the current element keeps
  // its place; before the end of the cached element's delimiter, a reset;
  // after it, nothing.
  void AdjustForEdit(int32_t EditStart, int32_t LengthB);

  friend bool operator==(const ScanCache&, const ScanCache&) = default;
};

class MatchIndex;
struct MatchesAhead;
// What the element scan keeps about one view's current text, beyond the
// cache: checkpoints for one delimiter, and the matches found ahead of a
// walk by single steps. Forgotten by every edit of the view. They never
// change what a scan answers, only how fast it gets there.
struct ScanIndexSlot {
  ScanIndexSlot();
  ~ScanIndexSlot();
  ScanIndexSlot(ScanIndexSlot&&) noexcept;
  ScanIndexSlot& operator=(ScanIndexSlot&&) noexcept;

  // Drops the checkpoints and the matches collected ahead.
  void Forget();
  // Drops the matches collected ahead only (they belong to one delimiter).
  void ForgetAhead();

  String delimiter;
  std::unique_ptr<MatchIndex> index;  // complete when index->matches() >= 0
  std::unique_ptr<MatchesAhead> ahead;
};

}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_SCAN_CACHE_H_
