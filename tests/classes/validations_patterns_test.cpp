// Validations: IsValid, EmailAddressCheck and Matches.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "crvlib/validations.h"
#include "platform/regex.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

std::string Utf8(std::u16string_view s) {
  return String(s).ToUtf8();
}

TEST(IsValid, OnlyIgnoreCaseTakesEffect) {
  struct Case {
    int32_t options;
    bool want;
  };
  constexpr Case kCases[] = {
      {0, false},  {1, true},   {2, false},  {4, false},         {8, false},
      {16, false}, {32, false}, {64, false}, {1 | 2 | 64, true}, {-1, true},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.options);
    EXPECT_EQ(Validations::IsValid(u"ABC", u"^[a-z]+$", static_cast<vxMatchOptionsEnum>(c.options)),
              c.want);
  }
}

TEST(IsValid, AnswersFalseInsteadOfRaising) {
  EXPECT_FALSE(Validations::IsValid(u"x", u"("));
  EXPECT_TRUE(Validations::IsValid(u"", u""));
  // A catastrophic backtrack gives up at the engine's limit and answers False.
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(Validations::IsValid(std::u16string(40, u'a') + u"!", u"^(a+)+$"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

// The one error these routines raise: no engine to create.
TEST(IsValid, MissingEngineRaises429WithTheInstallHint) {
  struct Case {
    int32_t creation_error;
    std::u16string_view description;  // before the install hint
  };
  constexpr Case kCases[] = {{429, u"ActiveX component can't create object"},
                             {7, u"Out of memory"}};
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.creation_error);
    platform::FailRegExpCreationForTesting(c.creation_error);
    const std::function<void()> routines[] = {[] { Validations::IsValid(u"a", u"a"); },
                                              [] { Validations::EmailAddressCheck(u"a@bb.cc"); }};
    for (const auto& routine : routines) {
      String description;
      // The source is IsValid's for both routines.
      EXPECT_EQ(RaisedBy(routine, &description), Raised(429, u"CRVLIB.Validations::IsValid"));
      EXPECT_EQ(description, std::u16string(c.description) +
                                 u" Class RegExp from vpscript.dll. Need to install Windows "
                                 u"Script 5.5 or 5.6 (scripten.exe).");
    }
    platform::FailRegExpCreationForTesting(0);
  }
  EXPECT_TRUE(Validations::IsValid(u"a", u"a"));
}

TEST(EmailAddressCheck, KeepsThePatternsQuirks) {
  struct Case {
    std::u16string_view value;
    bool want;
  };
  constexpr Case kCases[] = {
      {u"john@example.com", true},
      {u"john.smith@example.com", false},
      {u"john\\.smith@example.com", true},  // an escaped dot is allowed
      {u"john@Example.com", false},
      {u"john@example.Com", false},
      {u"ab@example.coM", true},  // the end is not anchored
      {u"john@e.com", false},     // labels have at least two characters
      {u"john@example.c", false},
      {u"john@example.museum", true},  // "muse" is enough
      {u"john@example.co.uk", true},
      {u"john@ex-ample.com", true},
      {u"john@example-.com", false},
      {u"john@#12.com", true},
      {u"jo hn@example.com", false},
      {u"john@@example.com", false},
      {u"@example.com", false},
      {u"", false},
      {u"\"\"\"john doe\"\"\"@example.com", true},  // three quotation marks each side
      {u"\"john\"@example.com", false},
      {u"\"\"\"jo\"hn\"\"\"@example.com", false},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(Utf8(c.value));
    EXPECT_EQ(Validations::EmailAddressCheck(c.value), c.want);
  }
}

// A run of digits is always a count; a count without a class letter is
// skipped together with the character after it.
TEST(Matches, Pictures) {
  struct Case {
    std::u16string_view value, pattern;
    bool want;
  };
  constexpr Case kCases[] = {
      {u"123-AB", u"3N'-'2A", true},
      {u"12-AB", u"3N'-'2A", false},
      {u"AB1", u"2A", false},  // a character left over
      {u"1", u"1N1N", false},  // the value ends first
      {u"a1", u"1a1n", true},  // class letters in either case
      {u"1a", u"1x1X", true},
      {u"AB", u"0N2A", true},    // 0N takes nothing
      {u"123", u"0N3N", false},  // 0N takes everything and gives nothing back
      {u"abc123", u"0A0N", true},
      {u"X", u"x", false},        // exact characters compare binary
      {u"\u00e9", u"1A", false},  // ASCII letters only
      {u"\u0663", u"1N", false},  // ASCII digits only
      {u"\U0001F600", u"2X", true},
      {u"", u"", true},
      {u"a", u"", false},
      {u"", u"3", true},
      {u"", u"3Z", true},
      {u"", u"0000000002147483647Z", true},
      {u"3", u"'3'", true},  // a quoted digit is a character, not a count
      {u"'", u"''", true},   // an empty literal stands for the quote itself
      {u"a'b", u"'a'''b", true},
      {u"ab", u"'ab", false},  // a quote never closed
      {u"", u"2147483648N", false},
      {u"1", u"2147483647N", false},
      {u"", u"99999999999999999999Z", false},  // overflows even where skipped
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(Utf8(c.value) + " ~ " + Utf8(c.pattern));
    EXPECT_EQ(Validations::Matches(c.value, c.pattern), c.want);
  }
}

}  // namespace
}  // namespace crvlib
