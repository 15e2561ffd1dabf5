// DynStringBuf: the gap buffer that holds the text of one DynamicString
// family. It counts everything in bytes: the text is UTF-16LE code units kept
// in one byte array, and every position and length crossing its interface is
// a 0-based byte offset or a byte count. Character-based callers double their
// arguments first.
//
// The text lies in one of three layouts inside the array of `Capacity` bytes:
//   0  all at the front:  [0, Length)
//   1  all at the back:   [BackOffset, Capacity), BackOffset == Capacity - Length
//   2  split by a gap:    [0, FrontLength) then [BackOffset, Capacity)
// The gap moves lazily, only when an edit needs it elsewhere, so edits near
// the previous edit cost only the bytes between the two points.
//
//   DynStringBuf b;
//   b.AppendBytes(u"abc");         // Capacity() == 50, GrowthStep() == 1
//   b.InsertBytes(u"X", 2);        // layout 2, gap after "a"; text "aXbc"
//   b.FindBytes(u"Xb", 0, 8, 1)  == 2
//   b.DeleteBytes(1, 2);           // odd offset: Binary() becomes true
//
// Nothing here reports a bad position: out-of-range starts and counts are
// clamped or ignored. The only errors are 6 (a size beyond 2,147,483,646
// bytes), 5 (a comparison mode other than binary or text), 380 (clearing
// Binary while an odd offset is recorded) and 7 (memory).
#ifndef CRVLIB_DYNSTRING_DYN_STRING_BUF_H_
#define CRVLIB_DYNSTRING_DYN_STRING_BUF_H_

#include <cstdint>
#include <memory>
#include <span>

#include "crvlib/string.h"

namespace crvlib::internal {

class DynStringBuf {
 public:
  // The smallest capacity a growth allocates, in bytes.
  static constexpr int32_t kMinCapacity = 50;
  // The largest byte count a buffer may hold (the automation string limit).
  static constexpr int32_t kMaxCapacity = String::kMaxBytes;

  // An empty buffer with no storage.
  DynStringBuf() = default;
  DynStringBuf(const DynStringBuf&) = delete;
  DynStringBuf& operator=(const DynStringBuf&) = delete;

  // A copy of `Count` bytes of text from `Start`, clamped to the text.
  String ReadBytes(int32_t Start, int32_t Count);

  // ReplaceBytes with the arguments in range-first order.
  void ReplaceRange(int32_t Start, int32_t Count, const String& Value) {
    ReplaceBytes(Value, Start, Count);
  }

  // True once an odd byte offset or count has been used on the text; cleared
  // only by Clear (and so by deleting the whole text). Setting it false while
  // Length, FrontLength or BackOffset is odd raises 380 and keeps it true.
  bool Binary() const { return Binary_; }
  void SetBinary(bool Value);

  int32_t LengthB() const { return Length_; }

  // The byte offset of the first occurrence of `Value` lying wholly inside
  // [Start, Start + Count), or -1; an empty Value answers the clamped Start.
  // CaseType vxCaseSensitive (1) compares exactly, vxCaseNotSensitive (0)
  // compares case-folded code units (bytes while Binary is set); other values
  // raise 5 (6 when |CaseType - 1| overflows). While Binary is clear the
  // search steps by whole code units from Start, afterwards by bytes.
  //   text "abcabc": FindBytes(u"c", 0, 12, 1) == 4, FindBytes(u"c", 6, 6, 1) == 10
  int32_t FindBytes(const String& Value, int32_t Start, int32_t Count, int32_t CaseType);

  // Pattern search is not offered on the buffer: always -1.
  int32_t MatchBytes(const String& Pattern, int32_t Start, int32_t Count, int32_t Options) const;

  // Empties the text and resets Layout, GrowthStep and Binary; the storage
  // and Capacity are kept.
  void Clear();

  void AppendBytes(const String& Value);
  void PrefixBytes(const String& Value);
  // Inserts before byte `Position`; <= 0 prefixes, >= Length appends.
  void InsertBytes(const String& Value, int32_t Position);
  // Removes bytes; deleting the whole text is Clear.
  void DeleteBytes(int32_t Start, int32_t Count);
  // Deletes [Start, Start + Count) and inserts Value there; a Start at or past
  // the end appends.
  void ReplaceBytes(const String& Value, int32_t Start, int32_t Count);

  // Moves all text to the front (layout 0).
  void Compact() { MoveGap(-1); }
  // Rearranges the text so that the gap lies at byte `Position` of the text:
  // 0 puts all text at the back, < 0 or >= Length all at the front.
  void MoveGap(int32_t Position);
  // Enlarges the storage to hold at least `Required` bytes (at least Length),
  // by 110 %, 125 %, then 150 % on successive growths, never below 50 bytes,
  // always even. Leaves the text at the front.
  void Grow(int32_t Required);

  // The fields, for tests and for scanners that read the text in place.
  int32_t Capacity() const { return Capacity_; }
  int32_t Length() const { return Length_; }
  int32_t FrontLength() const { return FrontLength_; }
  int32_t BackOffset() const { return BackOffset_; }
  int32_t GrowthStep() const { return GrowthStep_; }
  int16_t Layout() const { return Layout_; }

  // The text as its two pieces (either may be empty); valid until the next
  // call that edits or rearranges. Text byte i is Front()[i] for i <
  // FrontLength and Back()[i - FrontLength] after.
  std::span<const uint8_t> Front() const { return {Buffer_.get(), size_t(FrontLength_)}; }
  std::span<const uint8_t> Back() const {
    return {Buffer_.get() + BackOffset_, size_t(Length_ - FrontLength_)};
  }

  // The capacity Grow allocates for `Required` bytes at growth step `step`;
  // raises 6 when Required exceeds kMaxCapacity.
  static int32_t GrownCapacity(int32_t Required, int32_t step);

 private:
  // Reads `n` bytes of text from text offset `start` into `out`.
  void CopyText(int32_t start, int32_t n, uint8_t* out) const;
  // Takes `storage` of `capacity` bytes as the new buffer, copies the text to
  // its front and advances GrowthStep from `step`.
  void Adopt(std::unique_ptr<uint8_t[]> storage, int32_t capacity, int32_t step);
  // Finds a match of `needle` starting at a text offset in [first, last],
  // stepping by `stride` from `first`, with the bytes of the search read from
  // the buffer at `base` + text offset. -1 when none.
  int32_t SearchIn(const uint8_t* base, int32_t first, int32_t last, const String& needle,
                   int32_t stride, bool fold) const;

  std::unique_ptr<uint8_t[]> Buffer_;
  int32_t Capacity_ = 0;
  int32_t Length_ = 0;
  int32_t FrontLength_ = 0;
  int32_t BackOffset_ = 0;
  int32_t GrowthStep_ = 0;
  int16_t Layout_ = 0;
  bool Binary_ = false;
};

}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_DYN_STRING_BUF_H_
