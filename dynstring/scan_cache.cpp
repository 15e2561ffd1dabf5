// The scan cache's reset and edit rule, and the lifetime of the speed-ups
// kept beside it.
#include "dynstring/scan_cache.h"

#include "dynstring/element_scan.h"

namespace crvlib::internal {

void ScanCache::Reset(int32_t LengthB) {
  Set(0, 0, 0, LengthB == 0);
  SetPrev(0, 0, 0);
}

void ScanCache::BackUp(int32_t LengthB) {
  // The element before the previous one is not known: a second edit at the
  // same start must not back up onto the element it has just changed.
  Set(ScanPrevElement, ScanPrevStart, ScanPrevLength, LengthB == 0);
  SetPrev(0, 0, 0);
}

void ScanCache::AdjustForEdit(int32_t EditStart, int32_t LengthB) {
  if (ScanElement == 0) {
    Reset(LengthB);
  } else if (EditStart == ScanStart) {
    BackUp(LengthB);
  } else if (int64_t{EditStart} < int64_t{ScanStart} + ScanLength + ScanDelimiter.LenB()) {
    Reset(LengthB);
  }
}

ScanIndexSlot::ScanIndexSlot() = default;
ScanIndexSlot::~ScanIndexSlot() = default;
ScanIndexSlot::ScanIndexSlot(ScanIndexSlot&&) noexcept = default;
ScanIndexSlot& ScanIndexSlot::operator=(ScanIndexSlot&&) noexcept = default;

void ScanIndexSlot::Forget() {
  index.reset();
  ForgetAhead();
}

void ScanIndexSlot::ForgetAhead() {
  if (ahead) ahead->Forget();
}

}  // namespace crvlib::internal
