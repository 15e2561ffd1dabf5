// The gap buffer. Every edit first brings the gap to the edit point with one
// block move (MoveGap), then writes into the gap; appends compact to the front
// and prefixes to the back, so runs of either never move text twice. Growth
// allocates a larger array once and copies the text into its front.
//
// Searches run over the two text pieces in place. A match can straddle the
// gap, so when the searched range crosses it the first n bytes of the back
// piece are copied into the gap right after the front piece (the gap is
// garbage, so this costs nothing but the copy); when the gap or either piece
// is too small for that, the text is compacted instead. The inner step is a
// memchr for one byte of the first code unit, then a memcmp to verify.
//
// Operations that can fail (overflow, memory, a bad comparison mode) do so
// before anything changes, so a failed call leaves the buffer as it was.
#include "dynstring/dyn_string_buf.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/checked.h"
#include "core/error_frame.h"
#include "platform/collation.h"
#include "runtime/compare.h"

namespace crvlib::internal {
namespace {

// memmove and memcpy with a zero count are no-ops even on null pointers.
void MoveBlock(uint8_t* to, const uint8_t* from, int32_t n) {
  if (n > 0) std::memmove(to, from, static_cast<size_t>(n));
}

bool IsOdd(int32_t v) {
  return (v & 1) != 0;
}

// Case folding of bytes read as Latin-1 characters, for case-insensitive
// searches while the text is in byte mode.
const std::array<char16_t, 256>& ByteFolds() {
  static const std::array<char16_t, 256> folds = [] {
    std::array<char16_t, 256> t{};
    for (int b = 0; b < 256; ++b) t[b] = platform::FoldCase(static_cast<char16_t>(b));
    return t;
  }();
  return folds;
}

char16_t LoadUnit(const uint8_t* p) {
  char16_t u;
  std::memcpy(&u, p, sizeof u);
  return u;
}

}  // namespace

int32_t DynStringBuf::GrownCapacity(int32_t Required, int32_t step) {
  if (Required > kMaxCapacity) Raise(kOverflow);
  const int64_t factor = step <= 0 ? 110 : step == 1 ? 125 : 150;
  int64_t size = static_cast<int64_t>(Required) * factor / 100;
  size = std::clamp<int64_t>(size, kMinCapacity, kMaxCapacity);
  return static_cast<int32_t>(size / 2 * 2);
}

void DynStringBuf::Clear() {
  Length_ = 0;
  FrontLength_ = 0;
  BackOffset_ = 0;
  GrowthStep_ = 0;
  Layout_ = 0;
  Binary_ = false;
}

void DynStringBuf::SetBinary(bool Value) {
  if (!Value && (IsOdd(Length_) || IsOdd(FrontLength_) || IsOdd(BackOffset_))) {
    Raise(kInvalidPropertyValue);
  }
  Binary_ = Value;
}

void DynStringBuf::CopyText(int32_t start, int32_t n, uint8_t* out) const {
  int32_t front = 0;
  if (start < FrontLength_) {
    front = std::min(n, FrontLength_ - start);
    std::memcpy(out, Buffer_.get() + start, static_cast<size_t>(front));
  }
  if (n > front) {
    std::memcpy(out + front, Buffer_.get() + BackOffset_ + (start + front - FrontLength_),
                static_cast<size_t>(n - front));
  }
}

String DynStringBuf::ReadBytes(int32_t Start, int32_t Count) {
  if (Start < 0) Start = 0;
  if (Start >= Length_ || Count <= 0) return String();
  Count = std::min(Count, Length_ - Start);
  if (IsOdd(Start) || IsOdd(Count)) Binary_ = true;

  const bool in_front = Start + Count <= FrontLength_;
  const bool in_back = Start >= FrontLength_;
  if (in_front || in_back) {
    const uint8_t* p =
        in_front ? Buffer_.get() + Start : Buffer_.get() + BackOffset_ + (Start - FrontLength_);
    return String::FromBytes(p, static_cast<size_t>(Count));
  }
  if (!IsOdd(Count)) {
    String s;
    s.units().resize(static_cast<size_t>(Count / 2));
    CopyText(Start, Count, reinterpret_cast<uint8_t*>(s.units().data()));
    return s;
  }
  auto bytes = std::make_unique_for_overwrite<uint8_t[]>(static_cast<size_t>(Count));
  CopyText(Start, Count, bytes.get());
  return String::FromBytes(bytes.get(), static_cast<size_t>(Count));
}

void DynStringBuf::MoveGap(int32_t Position) {
  uint8_t* buf = Buffer_.get();
  const int32_t len = Length_;
  switch (Layout_) {
    case 0:
      // Position 0 is tested first so that an empty text also ends up at the
      // back, where a following prefix expects it.
      if (Position == 0) {
        MoveBlock(buf + Capacity_ - len, buf, len);
        Layout_ = 1;
        FrontLength_ = 0;
        BackOffset_ = Capacity_ - len;
      } else if (Position > 0 && Position < len) {
        MoveBlock(buf + Capacity_ - (len - Position), buf + Position, len - Position);
        Layout_ = 2;
        FrontLength_ = Position;
        BackOffset_ = Capacity_ - len + Position;
      }
      return;
    case 1:
      if (Position == 0) return;
      if (Position < 0 || Position >= len) {
        MoveBlock(buf, buf + BackOffset_, len);
        Layout_ = 0;
        FrontLength_ = len;
        BackOffset_ = 0;
      } else {
        MoveBlock(buf, buf + BackOffset_, Position);
        Layout_ = 2;
        FrontLength_ = Position;
        BackOffset_ = Capacity_ - len + Position;
      }
      return;
    default:
      if (Position == 0) {
        MoveBlock(buf + BackOffset_ - FrontLength_, buf, FrontLength_);
        Layout_ = 1;
        BackOffset_ -= FrontLength_;
        FrontLength_ = 0;
        return;
      }
      if (Position < 0 || Position >= len) {
        MoveBlock(buf + FrontLength_, buf + BackOffset_, len - FrontLength_);
        Layout_ = 0;
        FrontLength_ = len;
        BackOffset_ = 0;
        return;
      }
      if (Position == FrontLength_) return;
      if (Position > FrontLength_) {
        MoveBlock(buf + FrontLength_, buf + BackOffset_, Position - FrontLength_);
      } else {
        const int32_t k = FrontLength_ - Position;
        MoveBlock(buf + BackOffset_ - k, buf + Position, k);
      }
      Layout_ = 2;
      FrontLength_ = Position;
      BackOffset_ = Capacity_ - len + Position;
      return;
  }
}

void DynStringBuf::Adopt(std::unique_ptr<uint8_t[]> storage, int32_t capacity, int32_t step) {
  CopyText(0, Length_, storage.get());
  Buffer_.swap(storage);
  Capacity_ = capacity;
  Layout_ = 0;
  FrontLength_ = Length_;
  BackOffset_ = 0;
  GrowthStep_ = std::min(step + 1, 3);
}

void DynStringBuf::Grow(int32_t Required) {
  Required = std::max(Required, Length_);
  const int32_t capacity = GrownCapacity(Required, GrowthStep_);
  // Also for an empty text: the new storage starts in layout 0, so no offset
  // into the old storage survives the swap.
  Adopt(std::make_unique<uint8_t[]>(static_cast<size_t>(capacity)), capacity, GrowthStep_);
}

void DynStringBuf::AppendBytes(const String& Value) {
  const int32_t n = Value.LenB();
  const int32_t need = CheckedAdd(Length_, n);
  if (Capacity_ < need) Grow(need);
  if (IsOdd(n)) Binary_ = true;
  Compact();
  MoveBlock(Buffer_.get() + FrontLength_, Value.bytes(), n);
  Length_ += n;
  FrontLength_ += n;
}

void DynStringBuf::PrefixBytes(const String& Value) {
  const int32_t n = Value.LenB();
  const int32_t need = CheckedAdd(Length_, n);
  if (Capacity_ < need) Grow(need);
  if (IsOdd(n)) Binary_ = true;
  MoveGap(0);
  MoveBlock(Buffer_.get() + BackOffset_ - n, Value.bytes(), n);
  BackOffset_ -= n;
  Length_ += n;
}

void DynStringBuf::InsertBytes(const String& Value, int32_t Position) {
  if (Position <= 0) return PrefixBytes(Value);
  if (Position >= Length_) return AppendBytes(Value);
  const int32_t n = Value.LenB();
  const int32_t need = CheckedAdd(Length_, n);
  if (Capacity_ < need) Grow(need);
  // An odd insertion point misaligns the code units after it just as an odd
  // count does.
  if (IsOdd(n) || IsOdd(Position)) Binary_ = true;
  MoveGap(Position);
  MoveBlock(Buffer_.get() + FrontLength_, Value.bytes(), n);
  FrontLength_ += n;
  Length_ += n;
}

void DynStringBuf::DeleteBytes(int32_t Start, int32_t Count) {
  if (Start < 0) Start = 0;
  if (Start >= Length_ || Count < 1) return;
  Count = std::min(Count, Length_ - Start);
  if (IsOdd(Start) || IsOdd(Count)) Binary_ = true;
  if (Start == 0 && Count == Length_) return Clear();
  MoveGap(Start);
  BackOffset_ += Count;
  Length_ -= Count;
}

void DynStringBuf::ReplaceBytes(const String& Value, int32_t Start, int32_t Count) {
  if (Start < 0) Start = 0;
  if (Start >= Length_) return AppendBytes(Value);
  Count = Count > 0 ? std::min(Count, Length_ - Start) : 0;

  // The insertion after the delete may need to grow. Allocate now, with the
  // growth step the delete leaves behind, so that running out of space or
  // memory fails before the delete rather than between the two halves.
  const int32_t need = CheckedAdd(Length_ - Count, Value.LenB());
  std::unique_ptr<uint8_t[]> storage;
  int32_t capacity = 0;
  const int32_t step = Start == 0 && Count == Length_ ? 0 : GrowthStep_;
  if (Capacity_ < need) {
    capacity = GrownCapacity(need, step);
    storage = std::make_unique<uint8_t[]>(static_cast<size_t>(capacity));
  }

  if (IsOdd(Start) || IsOdd(Count)) Binary_ = true;
  if (Count > 0) DeleteBytes(Start, Count);
  if (storage) Adopt(std::move(storage), capacity, step);
  InsertBytes(Value, Start);
}

int32_t DynStringBuf::MatchBytes(const String&, int32_t, int32_t, int32_t) const {
  return -1;
}

int32_t DynStringBuf::SearchIn(const uint8_t* base, int32_t first, int32_t last,
                               const String& needle, int32_t stride, bool fold) const {
  if (last < first) return -1;
  const uint8_t* nd = needle.bytes();
  const int32_t n = needle.LenB();

  if (!fold) {
    // Scan for the first non-zero byte of the needle (zero high bytes are
    // everywhere in Latin text), then verify the whole needle in place.
    int32_t j = 0;
    while (j + 1 < n && j < 2 && nd[j] == 0) ++j;
    const uint8_t key = nd[j];
    const uint8_t* p = base + first + j;
    const uint8_t* end = base + last + j + 1;
    while (p < end) {
      const auto* hit = static_cast<const uint8_t*>(std::memchr(p, key, size_t(end - p)));
      if (hit == nullptr) return -1;
      const int32_t r = static_cast<int32_t>(hit - j - base);
      if ((r - first) % stride == 0 && std::memcmp(base + r, nd, size_t(n)) == 0) return r;
      p = hit + 1;
    }
    return -1;
  }

  if (stride == 1) {
    const auto& folds = ByteFolds();
    for (int32_t r = first; r <= last; ++r) {
      int32_t k = 0;
      while (k < n && folds[base[r + k]] == folds[nd[k]]) ++k;
      if (k == n) return r;
    }
    return -1;
  }

  // Code-unit mode: the needle has whole units.
  const int32_t units = n / 2;
  std::u16string folded(static_cast<size_t>(units), u'\0');
  for (int32_t k = 0; k < units; ++k) folded[size_t(k)] = platform::FoldCase(LoadUnit(nd + 2 * k));
  for (int32_t r = first; r <= last; r += 2) {
    int32_t k = 0;
    while (k < units && platform::FoldCase(LoadUnit(base + r + 2 * k)) == folded[size_t(k)]) ++k;
    if (k == units) return r;
  }
  return -1;
}

int32_t DynStringBuf::FindBytes(const String& Value, int32_t Start, int32_t Count,
                                int32_t CaseType) {
  const int32_t n = Value.LenB();
  if (Start >= 0 && Start > Length_ - n) return -1;
  if (Start < 0) Start = 0;
  if (n == 0) return Start;
  if (Count < 1 || n > Count) return -1;
  Count = std::min(Count, Length_ - Start);

  const int32_t mode = ModeOfCase(CaseType);
  if (mode != kBinaryCompare && mode != kTextCompare) Raise(kInvalidProcedureCall);
  if (IsOdd(n) || IsOdd(Start) || IsOdd(Count)) Binary_ = true;
  const bool fold = mode == kTextCompare;
  const int32_t stride = Binary_ ? 1 : 2;
  const int32_t end = Start + Count;  // the range is [Start, end)
  const int32_t last = end - n;       // the last start a match may have

  if (Layout_ == 2 && Start < FrontLength_ && FrontLength_ < end) {
    if (Capacity_ - Length_ - n >= 0 && FrontLength_ >= n && Capacity_ - BackOffset_ >= n) {
      // Make the gap continue the front piece, so matches straddling it are
      // found by the front search.
      if (n > 1) std::memcpy(Buffer_.get() + FrontLength_, Buffer_.get() + BackOffset_, size_t(n));
    } else {
      Compact();
    }
  }

  const uint8_t* buf = Buffer_.get();
  if (Layout_ == 0) return SearchIn(buf, Start, last, Value, stride, fold);
  if (Layout_ == 1) return SearchIn(buf + BackOffset_, Start, last, Value, stride, fold);

  int32_t r = -1;
  if (Start < FrontLength_) {
    r = SearchIn(buf, Start, std::min(last, FrontLength_ - 1), Value, stride, fold);
  }
  if (r < 0 && end > FrontLength_) {
    int32_t first = std::max(Start, FrontLength_);
    if ((first - Start) % stride != 0) ++first;
    // Text offset t of the back piece lies at buffer offset BackOffset + t - FrontLength.
    r = SearchIn(buf + (BackOffset_ - FrontLength_), first, last, Value, stride, fold);
  }
  return r;
}

}  // namespace crvlib::internal
