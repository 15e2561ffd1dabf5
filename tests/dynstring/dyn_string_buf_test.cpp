// The gap buffer through its own fields: layouts and gap moves, growth, the
// Binary flag, and searches across the gap.
#include "dynstring/dyn_string_buf.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "tests/testing/raised.h"

namespace crvlib::internal {
namespace {

using Op = std::function<void(DynStringBuf&)>;

String Bytes(std::string_view b) {
  return String::FromBytes(b.data(), b.size());
}

// The text from the two pieces; unlike ReadBytes it never touches Binary.
std::u16string Text(const DynStringBuf& b) {
  std::string bytes(b.Front().begin(), b.Front().end());
  bytes.append(b.Back().begin(), b.Back().end());
  return Bytes(bytes).ToU16();
}

// `text` with the gap at `front` (-1: layout 0). A gap left by a move still
// holds the moved bytes, which would hide a search that reads it by mistake,
// so an even gap is overwritten with U+FFFF first (no byte of it is zero, as
// the high bytes of Latin text are).
std::unique_ptr<DynStringBuf> Split(std::u16string_view text, int32_t front) {
  auto b = std::make_unique<DynStringBuf>();
  b->AppendBytes(String(text));
  b->MoveGap(front);
  if (b->Layout() == 2 && front % 2 == 0) {
    b->InsertBytes(String::Repeat(8, u'\uffff'), front);
    b->DeleteBytes(front, 16);
  }
  return b;
}

TEST(DynStringBuf, GrowthFactorsRiseUntilCleared) {
  DynStringBuf b;
  EXPECT_EQ(b.ReadBytes(INT32_MIN, INT32_MAX), u"");
  struct Step {
    int32_t append_bytes, capacity, growth_step;
  };
  constexpr Step kSteps[] = {
      {6, 50, 1},    // 6 * 110 % = 6, raised to the 50-byte floor
      {44, 50, 1},   // exactly full
      {2, 64, 2},    // 52 * 125 % = 65, made even
      {18, 104, 3},  // 70 * 150 % = 105
      {70, 210, 3},  // 150 % from now on
  };
  for (const Step& s : kSteps) {
    SCOPED_TRACE(::testing::Message() << "append " << s.append_bytes << " to " << b.LengthB());
    b.AppendBytes(String::Repeat(size_t(s.append_bytes / 2), u'x'));
    EXPECT_EQ(b.Capacity(), s.capacity);
    EXPECT_EQ(b.GrowthStep(), s.growth_step);
  }
  // Replacing everything clears first, so this growth is at 110 % again.
  b.ReplaceBytes(String::Repeat(150, u'x'), 0, b.LengthB());
  EXPECT_EQ(b.Capacity(), 330);
  EXPECT_EQ(b.GrowthStep(), 1);
  b.Grow(0);  // never below the text: 300 * 125 %
  EXPECT_EQ(b.Capacity(), 374);

  EXPECT_EQ(DynStringBuf::GrownCapacity(2000000000, 0), 2147483646);  // capped, not overflowed
  EXPECT_EQ(DynStringBuf::GrownCapacity(2147483646, 2), 2147483646);
  EXPECT_EQ(DynStringBuf::GrownCapacity(101, 1), 126);
  EXPECT_EQ(RaisedBy([&] { b.Grow(INT32_MAX); }).number, 6);
  EXPECT_EQ(b.Capacity(), 374);
}

TEST(DynStringBuf, MoveGapTransitions) {
  struct Case {
    int32_t from;  // the gap before: -1 layout 0, 0 layout 1, 4 layout 2
    int32_t position;
    int16_t layout;
    int32_t front_length, back_offset;
  };
  constexpr Case kCases[] = {
      {-1, 0, 1, 0, 38}, {-1, -1, 0, 12, 0}, {-1, 12, 0, 12, 0}, {-1, 4, 2, 4, 42},
      {0, 0, 1, 0, 38},  {0, -7, 0, 12, 0},  {0, 99, 0, 12, 0},  {0, 4, 2, 4, 42},
      {4, 0, 1, 0, 38},  {4, -1, 0, 12, 0},  {4, 12, 0, 12, 0},  {4, 4, 2, 4, 42},
      {4, 8, 2, 8, 46},  {4, 2, 2, 2, 40},   {4, 7, 2, 7, 45},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message() << "gap at " << c.from << ", move to " << c.position);
    auto b = Split(u"abcdef", c.from);
    b->MoveGap(c.position);
    EXPECT_EQ(b->Layout(), c.layout);
    EXPECT_EQ(b->FrontLength(), c.front_length);
    EXPECT_EQ(b->BackOffset(), c.back_offset);
    EXPECT_EQ(Text(*b), u"abcdef");
  }
}

TEST(DynStringBuf, EmptyTextsMoveToTheBackAndSurviveGrowth) {
  DynStringBuf b;
  b.AppendBytes(u"abc");
  b.Clear();
  b.MoveGap(0);  // position 0 wins over "at or past the end"
  EXPECT_EQ(b.Layout(), 1);
  EXPECT_EQ(b.BackOffset(), b.Capacity());
  b.PrefixBytes(u"xy");
  EXPECT_EQ(Text(b), u"xy");

  DynStringBuf fresh;  // layout 1 with no storage; growth must not keep the old offset
  fresh.PrefixBytes(u"");
  fresh.PrefixBytes(u"hello");
  EXPECT_EQ(Text(fresh), u"hello");
}

// Each row edits or reads "abc" (gap after "a") and gives the text and the
// Binary flag afterwards: odd offsets and counts set it, clearing resets it.
TEST(DynStringBuf, EditsClampAndOddValuesSetBinary) {
  struct Case {
    const char* name;
    Op op;
    std::u16string_view text;
    bool binary;
  };
  const Case kCases[] = {
      {"insert before start", [](auto& b) { b.InsertBytes(u"X", -4); }, u"Xabc", false},
      {"insert past end", [](auto& b) { b.InsertBytes(u"X", INT32_MAX); }, u"abcX", false},
      {"insert at odd position", [](auto& b) { b.InsertBytes(u"x", 3); }, u"", true},
      {"delete before start", [](auto& b) { b.DeleteBytes(-2, 4); }, u"c", false},
      {"delete past end", [](auto& b) { b.DeleteBytes(4, INT32_MAX); }, u"ab", false},
      {"delete odd", [](auto& b) { b.DeleteBytes(1, 2); }, u"", true},
      {"delete all, odd count", [](auto& b) { b.DeleteBytes(0, 7); }, u"", false},
      {"replace past end appends", [](auto& b) { b.ReplaceBytes(u"X", 7, 1); }, u"abcX", false},
      {"replace, negative count", [](auto& b) { b.ReplaceBytes(u"X", 2, -2); }, u"aXbc", false},
      {"replace, count clamped", [](auto& b) { b.ReplaceRange(2, 99, u"X"); }, u"aX", false},
      {"replace all, odd count", [](auto& b) { b.ReplaceBytes(u"XY", INT32_MIN, 7); }, u"XY",
       false},
      {"replace at odd start", [](auto& b) { b.ReplaceBytes(u"x", 3, 0); }, u"", true},
      {"append odd", [](auto& b) { b.AppendBytes(Bytes("x")); }, u"", true},
      {"read at odd start", [](auto& b) { b.ReadBytes(1, 2); }, u"abc", true},
      {"read odd count", [](auto& b) { b.ReadBytes(0, 3); }, u"abc", true},
      {"read, count clamped to even", [](auto& b) { b.ReadBytes(2, 99); }, u"abc", false},
      {"read past end", [](auto& b) { b.ReadBytes(7, 1); }, u"abc", false},
      {"find odd value", [](auto& b) { b.FindBytes(Bytes("b"), 0, 6, 1); }, u"abc", true},
      {"find out of range", [](auto& b) { b.FindBytes(u"b", 5, 4, 1); }, u"abc", false},
      {"move the gap to odd", [](auto& b) { b.MoveGap(3); }, u"abc", false},
      {"match", [](auto& b) { b.MatchBytes(u"b", 1, 3, 0); }, u"abc", false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    auto b = Split(u"abc", 2);
    c.op(*b);
    EXPECT_EQ(b->Binary(), c.binary);
    if (!c.text.empty()) {
      EXPECT_EQ(Text(*b), c.text);
    }
  }

  DynStringBuf b;
  b.AppendBytes(u"abcdef");
  b.MoveGap(4);
  EXPECT_EQ(b.ReadBytes(3, 5), Bytes(std::string("\0c\0d\0", 5)));  // odd, across the gap
  b.DeleteBytes(1, 2);                                              // FrontLength 1
  EXPECT_EQ(RaisedBy([&] { b.SetBinary(false); }).number, 380);
  EXPECT_TRUE(b.Binary());
  b.Compact();  // every field even again
  b.SetBinary(false);
  EXPECT_FALSE(b.Binary());
}

TEST(DynStringBuf, FindBytesAcrossTheGap) {
  struct Case {
    const char* name;
    std::u16string_view text;
    int32_t front;  // the gap: -1 layout 0, 0 layout 1, else layout 2
    String value;
    int32_t start, count, case_type;
    int32_t want;
    int16_t layout_after;
  };
  const Case kCases[] = {
      {"front", u"abcabc", -1, u"c", 0, 12, 1, 4, 0},
      {"empty value answers start", u"abc", -1, u"", -8, 0, 1, 0, 0},
      {"empty value past end", u"abc", -1, u"", 8, 2, 1, -1, 0},
      {"longer than the rest", u"abc", -1, u"bcd", 2, 99, 1, -1, 0},
      {"back layout", u"abcabc", 0, u"b", 4, 8, 1, 8, 1},
      {"straddles, copied into the gap", u"abcdefgh", 8, u"cde", 0, 16, 1, 4, 2},
      {"straddle by one byte", u"abcdef", 6, u"cd", 0, 12, 1, 4, 2},
      {"straddle cut by the range", u"abcdefgh", 8, u"cde", 2, 7, 1, -1, 2},
      {"front shorter than value", u"abcdefgh", 4, u"bcd", 0, 16, 1, 2, 0},
      {"back shorter than value", u"abcdefgh", 12, u"efg", 0, 16, 1, 8, 0},
      {"range ends at the gap", u"abcabc", 6, u"b", 0, 6, 1, 2, 2},
      {"front misses, back hits", u"abcabc", 4, u"ab", 2, 10, 1, 6, 2},
      {"starts in the back", u"abcabc", 4, u"c", 6, 6, 1, 10, 2},
      {"gap at an odd byte", u"abcabc", 3, u"c", 0, 12, 1, 4, 2},
      {"case-insensitive straddle", u"xABCxyz", 6, u"abc", 0, 14, 0, 2, 2},
      {"case-insensitive, accents", u"\u00c0\u00e0", -1, u"\u00e0", 0, 4, 2, 0, 0},
      {"case-sensitive", u"xABCx", -1, u"abc", 0, 10, 1, -1, 0},
      {"whole units only", u"\u4142\u4344", -1, u"\u4441", 0, 4, 1, -1, 0},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    auto b = Split(c.text, c.front);
    EXPECT_EQ(b->FindBytes(c.value, c.start, c.count, c.case_type), c.want);
    EXPECT_EQ(b->Layout(), c.layout_after);
    EXPECT_EQ(Text(*b), c.text);
  }
  // A gap narrower than the value compacts.
  DynStringBuf full;
  full.AppendBytes(String::Repeat(24, u'a'));  // 48 bytes in 52
  full.AppendBytes(u"b");
  full.MoveGap(24);
  EXPECT_EQ(full.FindBytes(u"aab", 0, 50, 1), 44);
  EXPECT_EQ(full.Layout(), 0);
}

TEST(DynStringBuf, FindBytesInByteModeAndBadModes) {
  auto b = Split(u"\u4142\u4344x\u00c0", 4);
  b->SetBinary(true);
  EXPECT_EQ(b->FindBytes(u"\u4441", 0, 12, 1), 1);      // any byte offset
  EXPECT_EQ(b->FindBytes(Bytes("\xe0"), 0, 12, 0), 6);  // bytes fold as Latin-1
  EXPECT_EQ(b->FindBytes(Bytes("\xe0"), 0, 12, 1), -1);
  for (int32_t case_type : {3, -1, INT32_MAX})
    EXPECT_EQ(RaisedBy([&] { b->FindBytes(u"b", 0, 6, case_type); }).number, 5);
  EXPECT_EQ(RaisedBy([&] { b->FindBytes(u"b", 0, 6, INT32_MIN); }).number, 6);
  EXPECT_EQ(b->FindBytes(u"", 0, 6, 3), 0);  // nothing searched, nothing checked
}

}  // namespace
}  // namespace crvlib::internal
