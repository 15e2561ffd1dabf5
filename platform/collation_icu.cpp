// The ICU collator of the thread's locale, opened once per thread and kept as
// a slot of the thread state. ASCII strings that differ only where ICU's
// order agrees with folded code units could be short-cut, but the collator's
// own Latin fast path already handles them; keep one path.
#include <unicode/uchar.h>
#include <unicode/ucol.h>

#include <memory>

#include "core/thread_state.h"
#include "platform/collation.h"

namespace crvlib::platform {
namespace {

struct CollatorSlot {
  struct Close {
    void operator()(UCollator* c) const { ucol_close(c); }
  };
  std::unique_ptr<UCollator, Close> collator;
};

UCollator* ThreadCollator() {
  auto& slot = internal::State().Slot<CollatorSlot>();
  if (!slot.collator) {
    UErrorCode status = U_ZERO_ERROR;
    UCollator* c = ucol_open(internal::State().locale.name.c_str(), &status);
    if (U_FAILURE(status)) {
      status = U_ZERO_ERROR;
      c = ucol_open("", &status);  // the root collation
    }
    ucol_setStrength(c, UCOL_SECONDARY);
    slot.collator.reset(c);
  }
  return slot.collator.get();
}

}  // namespace

int TextCompare(std::u16string_view a, std::u16string_view b) {
  UCollationResult r = ucol_strcoll(ThreadCollator(), a.data(), static_cast<int32_t>(a.size()),
                                    b.data(), static_cast<int32_t>(b.size()));
  return r == UCOL_LESS ? -1 : r == UCOL_GREATER ? 1 : 0;
}

char16_t FoldCase(char16_t c) {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  UChar32 f = u_foldCase(c, U_FOLD_CASE_DEFAULT);
  return f <= 0xFFFF ? static_cast<char16_t>(f) : c;
}

}  // namespace crvlib::platform
