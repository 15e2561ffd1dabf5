// The gap buffer: layouts, gap moves, growth, the Binary flag and searches
// across the gap, checked through the buffer's own fields; plus a random run
// against the plain byte-string twin.
#include "dynstring/dyn_string_buf.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <random>

#include "crvlib/error.h"
#include "tests/testing/byte_text_model.h"
#include "tests/testing/string_printer.h"

namespace crvlib::internal {
namespace {

String Bytes(std::string_view b) {
  return String::FromBytes(b.data(), b.size());
}

// The text from the two pieces; unlike ReadBytes this never touches Binary.
String Text(const DynStringBuf& b) {
  std::string bytes(b.Front().begin(), b.Front().end());
  bytes.append(b.Back().begin(), b.Back().end());
  return Bytes(bytes);
}

int32_t ErrorOf(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const Error& e) {
    return e.Number();
  }
  return 0;
}

// The layout's defining relations between the fields.
void ExpectConsistent(const DynStringBuf& b) {
  EXPECT_EQ(b.Capacity() % 2, 0);
  EXPECT_LE(b.Length(), b.Capacity());
  switch (b.Layout()) {
    case 0:
      EXPECT_EQ(b.FrontLength(), b.Length());
      EXPECT_EQ(b.BackOffset(), 0);
      break;
    case 1:
      EXPECT_EQ(b.FrontLength(), 0);
      EXPECT_EQ(b.BackOffset(), b.Capacity() - b.Length());
      break;
    default:
      EXPECT_EQ(b.Layout(), 2);
      EXPECT_EQ(b.BackOffset(), b.Capacity() - b.Length() + b.FrontLength());
  }
}

TEST(DynStringBuf, FreshBufferReadsEmptyEverywhere) {
  DynStringBuf b;
  for (auto [start, count] : {std::pair{0, 0},
                              {0, 10},
                              {-5, 10},
                              {INT32_MIN, INT32_MAX},
                              {INT32_MAX, INT32_MAX},
                              {3, -1}}) {
    SCOPED_TRACE(::testing::Message() << start << "," << count);
    EXPECT_EQ(b.ReadBytes(start, count), u"");
  }
  EXPECT_EQ(b.LengthB(), 0);
  EXPECT_EQ(b.FindBytes(u"", 0, 0, 1), 0);
  EXPECT_EQ(b.FindBytes(u"a", 0, 10, 1), -1);
  EXPECT_EQ(b.MatchBytes(u"a", 0, 10, 0), -1);
  EXPECT_FALSE(b.Binary());
}

TEST(DynStringBuf, GrowthStepsThroughItsFactorsAndRestartsAfterClear) {
  DynStringBuf b;
  struct Step {
    int32_t append_bytes;
    int32_t capacity;
    int32_t growth_step;
  };
  constexpr Step kSteps[] = {
      {6, 50, 1},    // 6 * 110 % = 6, raised to the 50-byte floor
      {44, 50, 1},   // exactly full: no growth
      {2, 64, 2},    // 52 * 125 % = 65, made even
      {12, 64, 2},   // full again
      {6, 104, 3},   // 70 * 150 % = 105 -> 104
      {70, 210, 3},  // the factor stays at 150 %
  };
  int32_t length = 0;
  for (const Step& s : kSteps) {
    SCOPED_TRACE(::testing::Message() << "append " << s.append_bytes << " to " << length);
    b.AppendBytes(String::Repeat(size_t(s.append_bytes / 2), u'x'));
    length += s.append_bytes;
    EXPECT_EQ(b.LengthB(), length);
    EXPECT_EQ(b.Capacity(), s.capacity);
    EXPECT_EQ(b.GrowthStep(), s.growth_step);
  }

  b.DeleteBytes(0, b.LengthB());  // deleting everything is Clear
  EXPECT_EQ(b.GrowthStep(), 0);
  EXPECT_EQ(b.Capacity(), 210);              // storage is kept
  b.AppendBytes(String::Repeat(110, u'x'));  // 220 bytes at step 0: 110 %
  EXPECT_EQ(b.Capacity(), 242);
  EXPECT_EQ(b.GrowthStep(), 1);
  ExpectConsistent(b);
}

TEST(DynStringBuf, GrownCapacityIsEvenFlooredAndCapped) {
  struct Case {
    int32_t required, step, capacity;
  };
  constexpr Case kCases[] = {
      {0, 0, 50},
      {45, 0, 50},
      {101, 0, 110},
      {101, 1, 126},
      {101, 2, 150},
      {101, 7, 150},
      {2000000000, 0, 2147483646},  // the 64-bit product is capped, not overflowed
      {2147483646, 2, 2147483646},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(::testing::Message() << c.required << " at step " << c.step);
    EXPECT_EQ(DynStringBuf::GrownCapacity(c.required, c.step), c.capacity);
  }
  EXPECT_EQ(ErrorOf([] { DynStringBuf::GrownCapacity(INT32_MAX, 0); }), 6);
  DynStringBuf b;
  EXPECT_EQ(ErrorOf([&] { b.Grow(INT32_MAX); }), 6);
  EXPECT_EQ(b.Capacity(), 0);
}

TEST(DynStringBuf, MoveGapTransitions) {
  // Text "abcdef" (12 bytes) in a 50-byte buffer, brought into each layout.
  struct Case {
    const char* name;
    std::function<void(DynStringBuf&)> setup;
    int32_t position;
    int16_t layout;
    int32_t front_length;
    int32_t back_offset;
  };
  auto none = [](DynStringBuf&) {};
  auto back = [](DynStringBuf& b) { b.MoveGap(0); };
  auto split = [](DynStringBuf& b) { b.MoveGap(4); };
  const Case kCases[] = {
      {"0: position 0", none, 0, 1, 0, 38},  {"0: negative", none, -1, 0, 12, 0},
      {"0: at end", none, 12, 0, 12, 0},     {"0: inside", none, 4, 2, 4, 42},
      {"1: position 0", back, 0, 1, 0, 38},  {"1: negative", back, -7, 0, 12, 0},
      {"1: past end", back, 99, 0, 12, 0},   {"1: inside", back, 4, 2, 4, 42},
      {"2: position 0", split, 0, 1, 0, 38}, {"2: negative", split, -1, 0, 12, 0},
      {"2: at end", split, 12, 0, 12, 0},    {"2: at the gap", split, 4, 2, 4, 42},
      {"2: later", split, 8, 2, 8, 46},      {"2: earlier", split, 2, 2, 2, 40},
      {"2: odd", split, 7, 2, 7, 45},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    DynStringBuf b;
    b.AppendBytes(u"abcdef");
    c.setup(b);
    b.MoveGap(c.position);
    EXPECT_EQ(b.Layout(), c.layout);
    EXPECT_EQ(b.FrontLength(), c.front_length);
    EXPECT_EQ(b.BackOffset(), c.back_offset);
    EXPECT_EQ(b.ReadBytes(0, 12), u"abcdef");
    EXPECT_EQ(b.ReadBytes(2, 8), u"bcde");  // across the gap when split
    ExpectConsistent(b);
  }
}

TEST(DynStringBuf, EmptyTextMovesToTheBackSoAPrefixLandsInside) {
  DynStringBuf b;
  b.AppendBytes(u"abc");
  b.Clear();
  b.MoveGap(0);
  EXPECT_EQ(b.Layout(), 1);
  EXPECT_EQ(b.BackOffset(), b.Capacity());
  b.PrefixBytes(u"xy");
  EXPECT_EQ(b.ReadBytes(0, 4), u"xy");
  EXPECT_EQ(b.BackOffset(), b.Capacity() - 4);

  // An empty prefix on storage-less text leaves layout 1; growing must not
  // keep the old back offset.
  DynStringBuf fresh;
  fresh.PrefixBytes(u"");
  fresh.PrefixBytes(u"hello");
  EXPECT_EQ(Text(fresh), u"hello");
  ExpectConsistent(fresh);
}

TEST(DynStringBuf, EditsNearTheGapLeaveItThere) {
  DynStringBuf b;
  b.AppendBytes(u"0123456789");
  b.InsertBytes(u"ab", 8);  // gap after "0123ab"
  EXPECT_EQ(b.Layout(), 2);
  EXPECT_EQ(b.FrontLength(), 12);
  b.InsertBytes(u"c", 12);  // right at the gap: no move
  EXPECT_EQ(b.FrontLength(), 14);
  b.DeleteBytes(14, 4);  // the deleted bytes join the gap
  EXPECT_EQ(b.FrontLength(), 14);
  EXPECT_EQ(Text(b), u"0123abc6789");
  b.AppendBytes(u"!");  // appends compact
  EXPECT_EQ(b.Layout(), 0);
  b.PrefixBytes(u"<");  // prefixes move everything to the back
  EXPECT_EQ(b.Layout(), 1);
  EXPECT_EQ(Text(b), u"<0123abc6789!");
  ExpectConsistent(b);
}

TEST(DynStringBuf, EditsClampTheirRange) {
  struct Case {
    const char* name;
    std::function<void(DynStringBuf&)> edit;
    std::u16string_view want;
  };
  const Case kCases[] = {
      {"insert before start prefixes", [](auto& b) { b.InsertBytes(u"X", -4); }, u"Xabc"},
      {"insert past end appends", [](auto& b) { b.InsertBytes(u"X", INT32_MAX); }, u"abcX"},
      {"delete from negative start", [](auto& b) { b.DeleteBytes(-9, 2); }, u"bc"},
      {"delete past end", [](auto& b) { b.DeleteBytes(4, INT32_MAX); }, u"ab"},
      {"delete nothing", [](auto& b) { b.DeleteBytes(2, 0); }, u"abc"},
      {"delete at end", [](auto& b) { b.DeleteBytes(6, 2); }, u"abc"},
      {"replace past end appends", [](auto& b) { b.ReplaceBytes(u"X", 6, 2); }, u"abcX"},
      {"replace with negative count inserts", [](auto& b) { b.ReplaceBytes(u"X", 2, -2); },
       u"aXbc"},
      {"replace clamps the count", [](auto& b) { b.ReplaceBytes(u"X", 2, 99); }, u"aX"},
      {"replace everything", [](auto& b) { b.ReplaceBytes(u"XY", INT32_MIN, 6); }, u"XY"},
      {"replace range order", [](auto& b) { b.ReplaceRange(2, 2, u"X"); }, u"aXc"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    DynStringBuf b;
    b.AppendBytes(u"abc");
    c.edit(b);
    EXPECT_EQ(Text(b), c.want);
    ExpectConsistent(b);
  }
}

TEST(DynStringBuf, OddOffsetsAndCountsSetBinary) {
  struct Case {
    const char* name;
    std::function<void(DynStringBuf&)> op;
    bool binary;
  };
  const Case kCases[] = {
      {"read at odd start", [](auto& b) { b.ReadBytes(1, 2); }, true},
      {"read odd count", [](auto& b) { b.ReadBytes(0, 3); }, true},
      {"read clamped to odd", [](auto& b) { b.ReadBytes(-1, 3); }, true},
      {"read past end", [](auto& b) { b.ReadBytes(7, 1); }, false},
      {"read nothing", [](auto& b) { b.ReadBytes(1, 0); }, false},
      {"delete odd", [](auto& b) { b.DeleteBytes(1, 2); }, true},
      {"delete clamped count odd", [](auto& b) { b.DeleteBytes(2, 99); }, false},
      {"delete everything resets", [](auto& b) { b.DeleteBytes(0, 7); }, false},
      {"append odd", [](auto& b) { b.AppendBytes(Bytes("x")); }, true},
      {"prefix odd", [](auto& b) { b.PrefixBytes(Bytes("x")); }, true},
      {"insert at odd position", [](auto& b) { b.InsertBytes(u"x", 3); }, true},
      {"replace at odd start", [](auto& b) { b.ReplaceBytes(u"x", 3, 0); }, true},
      {"replace odd count", [](auto& b) { b.ReplaceBytes(u"x", 2, 1); }, true},
      {"replace appending", [](auto& b) { b.ReplaceBytes(u"x", 7, 1); }, false},
      {"replace everything with even", [](auto& b) { b.ReplaceBytes(u"x", 0, 7); }, false},
      {"find odd value", [](auto& b) { b.FindBytes(Bytes("b"), 0, 6, 1); }, true},
      {"find odd start", [](auto& b) { b.FindBytes(u"b", 1, 4, 1); }, true},
      {"find empty value", [](auto& b) { b.FindBytes(u"", 1, 4, 1); }, false},
      {"find out of range", [](auto& b) { b.FindBytes(u"b", 5, 4, 1); }, false},
      {"move the gap to odd", [](auto& b) { b.MoveGap(3); }, false},
      {"match", [](auto& b) { b.MatchBytes(u"b", 1, 3, 0); }, false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    DynStringBuf b;
    b.AppendBytes(u"abc");
    c.op(b);
    EXPECT_EQ(b.Binary(), c.binary);
  }
}

TEST(DynStringBuf, ClearingBinaryNeedsEvenFields) {
  DynStringBuf b;
  b.AppendBytes(u"abc");
  b.DeleteBytes(1, 2);  // layout 2 with FrontLength 1
  ASSERT_TRUE(b.Binary());
  EXPECT_EQ(ErrorOf([&] { b.SetBinary(false); }), 380);
  EXPECT_TRUE(b.Binary());
  b.MoveGap(-1);  // FrontLength 4, BackOffset 0, Length 4
  b.SetBinary(false);
  EXPECT_FALSE(b.Binary());
  b.SetBinary(true);
  EXPECT_TRUE(b.Binary());

  DynStringBuf odd;
  odd.AppendBytes(Bytes("abc"));
  EXPECT_EQ(ErrorOf([&] { odd.SetBinary(false); }), 380);
}

// A buffer holding `text` with the gap moved to `front`. A gap left by a
// move still holds the bytes that were moved, which would let a search that
// reads it by mistake succeed; so fill it with "#" first (at even gaps only,
// since an odd insertion point would put the buffer into byte mode).
std::unique_ptr<DynStringBuf> Split(std::u16string_view text, int32_t front) {
  auto b = std::make_unique<DynStringBuf>();
  b->AppendBytes(String(text));
  b->MoveGap(front);
  if (b->Layout() == 2 && front % 2 == 0) {
    b->InsertBytes(String::Repeat(8, u'#'), front);
    b->DeleteBytes(front, 16);
  }
  return b;
}

TEST(DynStringBuf, FindBytesRangesAndTheGap) {
  struct Case {
    const char* name;
    std::u16string_view text;
    int32_t front;  // where the gap is; -1 for layout 0, 0 for layout 1
    String value;
    int32_t start, count, case_type;
    int32_t want;
  };
  const Case kCases[] = {
      {"front", u"abcabc", -1, u"c", 0, 12, 1, 4},
      {"from start", u"abcabc", -1, u"c", 6, 6, 1, 10},
      {"range too short", u"abcabc", -1, u"bc", 0, 5, 1, -1},
      {"exact range", u"abcabc", -1, u"bc", 2, 4, 1, 2},
      {"empty value answers start", u"abc", -1, u"", 4, 0, 1, 4},
      {"empty value, start clamped", u"abc", -1, u"", -8, 0, 1, 0},
      {"empty value past end", u"abc", -1, u"", 8, 2, 1, -1},
      {"value longer than the rest", u"abc", -1, u"bcd", 2, 99, 1, -1},
      {"count below one", u"abc", -1, u"a", 0, 0, 1, -1},
      {"back layout", u"abcabc", 0, u"ca", 0, 12, 1, 4},
      {"back layout offset", u"abcabc", 0, u"b", 4, 8, 1, 8},
      {"straddles the gap", u"abcdef", 6, u"bcd", 0, 12, 1, 2},
      {"straddle, start at the match", u"abcdef", 6, u"bcd", 2, 6, 1, 2},
      {"straddle, range ends inside", u"abcdef", 6, u"bcd", 2, 5, 1, -1},
      {"straddle by one byte", u"abcdef", 6, u"cd", 0, 12, 1, 4},
      {"front only", u"abcabc", 6, u"b", 0, 6, 1, 2},
      {"gap at an odd byte", u"abcabc", 3, u"c", 0, 12, 1, 4},
      {"front misses, back hits", u"abcabc", 4, u"ab", 2, 10, 1, 6},
      {"starts in the back", u"abcabc", 4, u"c", 6, 6, 1, 10},
      {"last unit of the back", u"abcabx", 4, u"x", 0, 12, 1, 10},
      {"case-insensitive", u"xABCx", -1, u"abc", 0, 10, 0, 2},
      {"case-insensitive straddle", u"xABCxyz", 6, u"abc", 0, 14, 0, 2},
      {"case-insensitive, accented", u"\u00c0\u00e0", -1, u"\u00e0", 0, 4, 0, 0},
      {"case-sensitive misses", u"xABCx", -1, u"abc", 0, 10, 1, -1},
      {"case type 2 is text too", u"ABC", -1, u"b", 0, 6, 2, 2},
      {"code units stay aligned", u"\u4142\u4344", -1, Bytes("\x41\x44"), 0, 4, 1, -1},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    auto b_held = Split(c.text, c.front);
    DynStringBuf& b = *b_held;
    EXPECT_EQ(b.FindBytes(c.value, c.start, c.count, c.case_type), c.want);
    EXPECT_EQ(b.ReadBytes(0, INT32_MAX), c.text);
  }
}

TEST(DynStringBuf, FindBytesInByteModeSearchesEveryOffset) {
  auto b_held = Split(u"\u4142\u4344", -1);
  DynStringBuf& b = *b_held;
  EXPECT_EQ(b.FindBytes(u"\u4441", 0, 4, 1), -1);  // misaligned: not a code unit match
  b.SetBinary(true);
  EXPECT_EQ(b.FindBytes(u"\u4441", 0, 4, 1), 1);
  // Bytes fold as Latin-1 characters: 0xC0 ("À") matches 0xE0 ("à").
  auto c_held = Split(u"x\u00c0", -1);
  DynStringBuf& c = *c_held;
  c.SetBinary(true);
  EXPECT_EQ(c.FindBytes(Bytes("\xe0"), 0, 4, 0), 2);
  EXPECT_EQ(c.FindBytes(Bytes("\xe0"), 0, 4, 1), -1);
}

TEST(DynStringBuf, FindBytesCopiesIntoTheGapOrCompacts) {
  struct Case {
    const char* name;
    int32_t front;
    std::u16string_view value;
    int32_t start, count;
    int32_t want;
    bool compacts;
  };
  // Text "abcdefgh" (16 bytes) in 50; the gap is 34 bytes wide.
  const Case kCases[] = {
      {"room for the copy", 8, u"cde", 0, 16, 4, false},
      {"front shorter than the value", 4, u"bcd", 0, 16, 2, true},
      {"back shorter than the value", 12, u"efg", 0, 16, 8, true},
      {"range not crossing", 8, u"cd", 0, 8, 4, false},
      {"range starting at the gap", 8, u"ef", 8, 8, 8, false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    auto b_held = Split(u"abcdefgh", c.front);
    DynStringBuf& b = *b_held;
    EXPECT_EQ(b.FindBytes(String(c.value), c.start, c.count, 1), c.want);
    EXPECT_EQ(b.Layout(), c.compacts ? 0 : 2);
    EXPECT_EQ(Text(b), u"abcdefgh");
  }
  // A gap narrower than the value.
  DynStringBuf full;
  full.AppendBytes(String::Repeat(24, u'a'));  // 48 bytes in 52
  full.AppendBytes(u"b");
  full.MoveGap(24);
  ASSERT_EQ(full.Capacity() - full.Length(), 2);
  EXPECT_EQ(full.FindBytes(u"aab", 0, 50, 1), 44);
  EXPECT_EQ(full.Layout(), 0);
}

TEST(DynStringBuf, FindBytesRejectsOtherComparisonModes) {
  auto b_held = Split(u"abc", -1);
  DynStringBuf& b = *b_held;
  for (int32_t case_type : {3, -1, 100, INT32_MAX}) {
    SCOPED_TRACE(case_type);
    EXPECT_EQ(ErrorOf([&] { b.FindBytes(u"b", 0, 6, case_type); }), 5);
  }
  EXPECT_EQ(ErrorOf([&] { b.FindBytes(u"b", 0, 6, INT32_MIN); }), 6);
  EXPECT_EQ(b.FindBytes(u"", 0, 6, 3), 0);  // nothing searched, nothing checked
  EXPECT_FALSE(b.Binary());
}

TEST(DynStringBuf, ReadsOddRangesAcrossTheGap) {
  auto b_held = Split(u"abcdef", 4);
  DynStringBuf& b = *b_held;
  const String got = b.ReadBytes(3, 5);  // the high byte of 'b', then 'c' and 'd'
  const char16_t* u = u"abcdef";
  EXPECT_EQ(got, String::FromBytes(reinterpret_cast<const uint8_t*>(u) + 3, 5));
}

// Random edits, reads and searches on the buffer and on the plain twin, with
// positions near the text's ends and the int32 extremes.
TEST(DynStringBuf, RandomEditsMatchThePlainModel) {
  for (uint32_t seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 rng(seed);
    auto pick = [&](int32_t lo, int32_t hi) {
      return std::uniform_int_distribution<int32_t>(lo, hi)(rng);
    };
    auto position = [&](int32_t length) {
      switch (pick(0, 9)) {
        case 0:
          return pick(0, 1) ? INT32_MIN : INT32_MAX;
        case 1:
          return pick(-3, 0);
        case 2:
          return length + pick(-2, 2);
        default:
          return pick(0, length);
      }
    };
    auto value = [&] {
      static constexpr uint8_t kBytes[] = {'a', 'b', 'A', 0, 1};
      std::string s(size_t(pick(0, 7)), '\0');
      for (auto& c : s) c = static_cast<char>(kBytes[pick(0, 4)]);
      if (pick(0, 3) != 0 && s.size() % 2) s.pop_back();  // mostly whole units
      return Bytes(s);
    };

    DynStringBuf b;
    testing::ByteTextModel m;
    for (int step = 0; step < 3000; ++step) {
      const int32_t len = m.Length();
      const int op = pick(0, 11);
      SCOPED_TRACE(::testing::Message() << "step " << step << " op " << op);
      switch (op) {
        case 0: {
          String v = value();
          b.AppendBytes(v);
          m.Append(v);
          break;
        }
        case 1: {
          String v = value();
          b.PrefixBytes(v);
          m.Prefix(v);
          break;
        }
        case 2: {
          String v = value();
          int32_t p = position(len);
          b.InsertBytes(v, p);
          m.Insert(v, p);
          break;
        }
        case 3: {
          int32_t s = position(len), c = position(len / 2);
          b.DeleteBytes(s, c);
          m.Delete(s, c);
          break;
        }
        case 4: {
          String v = value();
          int32_t s = position(len), c = position(4);
          b.ReplaceBytes(v, s, c);
          m.Replace(v, s, c);
          break;
        }
        case 5:
          b.MoveGap(position(len));
          break;
        case 6: {
          int32_t s = position(len), c = position(len);
          EXPECT_EQ(b.ReadBytes(s, c), m.Read(s, c));
          break;
        }
        case 7:
        case 8: {
          String v = value();
          int32_t s = position(len), c = position(len), ct = pick(0, 1);
          EXPECT_EQ(b.FindBytes(v, s, c, ct), m.Find(v, s, c, ct));
          break;
        }
        case 9: {
          const bool odd = (b.Length() | b.FrontLength() | b.BackOffset()) & 1;
          const int32_t err = ErrorOf([&] { b.SetBinary(false); });
          EXPECT_EQ(err, odd ? 380 : 0);
          if (!odd) m.binary = false;
          break;
        }
        case 10:
          if (pick(0, 9) == 0) {
            b.Clear();
            m.Clear();
          } else if (pick(0, 4) == 0) {
            b.SetBinary(true);
            m.binary = true;
          }
          break;
        default:
          b.Compact();
          break;
      }
      ASSERT_EQ(b.Binary(), m.binary);
      ASSERT_EQ(b.LengthB(), m.Length());
      ExpectConsistent(b);
      // Check the pieces directly: reading would touch the flag.
      std::string pieces(b.Front().begin(), b.Front().end());
      pieces.append(b.Back().begin(), b.Back().end());
      ASSERT_EQ(pieces, m.bytes);
    }
  }
}

}  // namespace
}  // namespace crvlib::internal
