// Functions' element routines against the same member on a fresh
// DynamicString, over random arrays and arguments. The routines run the
// element engine on the caller's string through a host of their own, which
// reads it in place and edits a copy, instead of through an object; this
// keeps that host's reads and edits honest. Each call must give the same
// value or number, or fail with the same number and description. Sources
// differ by design: the routine reports "CRVLIB.Functions::<Routine>"
// whatever failed, the object the member or the scan that failed.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "crvlib/dynamic_string.h"
#include "crvlib/error.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

using F = Functions;

struct Outcome {
  String value;  // a string result, or a number's decimal digits
  int32_t number = 0;
  String description;
  String source;
};

Outcome Call(const std::function<String()>& call) {
  Outcome o;
  try {
    o.value = call();
  } catch (const Error& e) {
    o.number = e.Number();
    o.description = e.Description();
    o.source = e.Source();
  }
  return o;
}

String Digits(int32_t n) {
  const std::string s = std::to_string(n);
  return String(std::u16string(s.begin(), s.end()));
}

// The part of a source after "::", and before it.
std::u16string_view After(const String& source) {
  const std::u16string_view v = source.view();
  const size_t at = v.find(u"::");
  return at == v.npos ? v : v.substr(at + 2);
}
std::u16string_view Before(const String& source) {
  return source.view().substr(0, source.view().find(u"::"));
}

void ExpectSame(const Outcome& plain, const Outcome& object, std::u16string_view routine) {
  EXPECT_EQ(plain.value, object.value);
  EXPECT_EQ(plain.number, object.number);
  EXPECT_EQ(plain.description, object.description);
  if (plain.number == 0) return;
  EXPECT_EQ(Before(plain.source), u"CRVLIB.Functions");
  EXPECT_EQ(After(plain.source), routine);
  EXPECT_EQ(Before(object.source), u"CRVLIB.DynamicString");
  EXPECT_TRUE(After(object.source) == routine || After(object.source) == u"Scan") << object.source;
}

DynamicString Fresh(const String& value) {
  DynamicString d;
  d.SetValue(value);
  return d;
}

// Arrays with empty elements, elements that hold (parts of) the delimiters
// and letters in both cases, so that overlapping and case-folded matches
// come up.
class Arguments {
 public:
  explicit Arguments(uint32_t seed) : rng_(seed) {}

  String Delimiter() {
    static const char16_t* const kDelimiters[] = {u"|", u"||", u"aa", u"\u00FE", u"\u00FD", u""};
    return kDelimiters[rng_() % std::size(kDelimiters)];
  }
  String Piece() {
    static const char16_t* const kPieces[] = {u"",  u"",  u"a",  u"aa", u"A",      u"b",
                                              u"B", u"|", u"ab", u"Ab", u"\u00FE", u"x|y"};
    return kPieces[rng_() % std::size(kPieces)];
  }
  String Array(const String& delimiter) {
    std::u16string s;
    const int n = static_cast<int>(rng_() % 7);
    for (int i = 0; i < n; ++i) {
      if (i > 0) s += delimiter.view().empty() ? std::u16string_view(u"|") : delimiter.view();
      s += Piece().view();
    }
    return String(std::move(s));
  }
  // Around both ends, and far past them.
  int32_t Position(const String& array) {
    static const int32_t kFar[] = {INT_MAX, INT_MAX - 1, INT_MIN, INT_MIN + 1, 1 << 30};
    if (rng_() % 8 == 0) return kFar[rng_() % std::size(kFar)];
    return static_cast<int32_t>(rng_() % (array.Len() + 7)) - 3;
  }
  // Mostly members, sometimes values outside them.
  vxMatchingEnum SearchType() {
    static const int32_t kTypes[] = {0, 1, 2, 3, 0, 1, 2, 3, 4, -1, 5, INT_MAX};
    return vxMatchingEnum(kTypes[rng_() % std::size(kTypes)]);
  }
  vxCaseEnum CaseType() {
    static const int32_t kCases[] = {0, 1, 0, 1, 2, -1};
    return vxCaseEnum(kCases[rng_() % std::size(kCases)]);
  }
  bool OneIn(uint32_t n) { return rng_() % n == 0; }

 private:
  std::mt19937 rng_;
};

TEST(FunctionsElementsTwin, PlainStringsAnswerAsAFreshObject) {
  for (uint32_t seed = 1; seed <= 40; ++seed) {
    Arguments args(seed);
    String delimiter = args.Delimiter();
    String array = args.Array(delimiter);
    for (int step = 0; step < 60; ++step) {
      if (args.OneIn(6)) delimiter = args.Delimiter();
      if (args.OneIn(10)) array = args.Array(delimiter);
      const int32_t pos = args.Position(array);
      const String value = args.Piece();
      SCOPED_TRACE(::testing::Message()
                   << "seed " << seed << " step " << step << " \"" << array << "\" delimiter \""
                   << delimiter << "\" @" << pos << " value \"" << value << "\"");

      ExpectSame(Call([&] { return F::ExtractElement(array, delimiter, pos); }),
                 Call([&] { return Fresh(array).ExtractElement(delimiter, pos).Value(); }),
                 u"ExtractElement");
      const Outcome inserted = Call([&] { return F::InsertElement(array, delimiter, pos, value); });
      ExpectSame(inserted,
                 Call([&] { return Fresh(array).InsertElement(value, delimiter, pos).Value(); }),
                 u"InsertElement");
      const Outcome deleted = Call([&] { return F::DeleteElement(array, delimiter, pos); });
      ExpectSame(deleted, Call([&] { return Fresh(array).DeleteElement(delimiter, pos).Value(); }),
                 u"DeleteElement");
      const Outcome replaced =
          Call([&] { return F::ReplaceElement(array, delimiter, pos, value); });
      ExpectSame(replaced,
                 Call([&] { return Fresh(array).ReplaceElement(value, delimiter, pos).Value(); }),
                 u"ReplaceElement");

      // Look for an element of the array (or a piece of one, or one in
      // another case) as often as for anything else.
      const String find =
          args.OneIn(2) ? F::ExtractElement(array, u"|", 1 + pos % 3) : args.Piece();
      const vxMatchingEnum type = args.SearchType();
      const vxCaseEnum mode = args.CaseType();
      SCOPED_TRACE(::testing::Message() << "locate \"" << find << "\" type " << int32_t{type}
                                        << " case " << int32_t{mode});
      ExpectSame(
          Call([&] { return Digits(F::LocateElement(array, find, delimiter, pos, type, mode)); }),
          Call(
              [&] { return Digits(Fresh(array).LocateElement(find, delimiter, pos, type, mode)); }),
          u"LocateElement");

      // Walk on from one of the edits, so that arrays grow, shrink and pad.
      const Outcome* next[] = {&inserted, &deleted, &replaced};
      const Outcome& chosen = *next[args.OneIn(3) ? 1 : args.OneIn(2) ? 0 : 2];
      if (chosen.number == 0 && chosen.value.Len() < 200) array = chosen.value;
    }
  }
}

}  // namespace
}  // namespace crvlib
