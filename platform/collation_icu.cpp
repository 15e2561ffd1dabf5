// The ICU collator of the thread's locale, opened once per thread and kept as
// a slot of the thread state. ASCII strings that differ only where ICU's
// order agrees with folded code units could be short-cut, but the collator's
// own Latin fast path already handles them; keep one path.
#include <unicode/uchar.h>
#include <unicode/ucol.h>

#include <memory>
#include <new>

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

void AppendSortKey(std::u16string_view s, std::string* out) {
  UCollator* c = ThreadCollator();
  const size_t at = out->size();
  // Keys are about as long as their strings at secondary strength; one
  // more call when the guess was short.
  size_t room = s.size() * 2 + 16;
  for (;;) {
    out->resize(at + room);
    const int32_t n =
        ucol_getSortKey(c, s.data(), static_cast<int32_t>(s.size()),
                        reinterpret_cast<uint8_t*>(out->data() + at), static_cast<int32_t>(room));
    if (n <= 0) throw std::bad_alloc();  // ICU reports no other failure here
    if (static_cast<size_t>(n) <= room) {
      out->resize(at + static_cast<size_t>(n));
      return;
    }
    room = static_cast<size_t>(n);
  }
}

char16_t FoldCase(char16_t c) {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  UChar32 f = u_foldCase(c, U_FOLD_CASE_DEFAULT);
  return f <= 0xFFFF ? static_cast<char16_t>(f) : c;
}

}  // namespace crvlib::platform
