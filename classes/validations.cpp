// The value checks of Validations: Boolean words, currency amounts, dates,
// times, numbers, percentages and the three range tests.
//
// Each check runs its whole body as one statement under ResumeNext, so the
// first failure inside it (a conversion the runtime rejects, memory running
// out) ends the check, which then answers what its result held at that
// moment: True for BooleanCheck and CurrencyCheck, whose results start True,
// and False for the others. None of them raises.
//
// Three private filters keep the characters of a class, judged by their code
// in the ANSI code page as Asc gives it (a character the code page lacks
// reads as "?", code 63):
//
//   AlphaPrivate    65-90, 97-122          the ASCII letters
//   NumPrivate      48-57                  the ASCII digits
//   NonNumPrivate   32-44, 47, 58-126      printable ASCII but "-", "." and digits
//
// Unlike the checks they raise, through the common frame, under sources of
// their own; inside a check that error simply ends the check.
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "core/error_frame.h"
#include "crvlib/dynamic_string.h"
#include "crvlib/validations.h"
#include "runtime/code_page.h"
#include "runtime/date_parse.h"
#include "runtime/letters.h"
#include "runtime/number_parse.h"

namespace crvlib {
namespace {

using internal::ResumeNext;

// The words BooleanCheck accepts, as one comma-separated dynamic string.
constexpr std::u16string_view kBooleanWords =
    u"0,1,-1,T,F,Y,N,TRUE,FALSE,YES,NO,ON,OFF,ACTIVE,INACTIVE";

// The characters of `Value` whose code page code `keep` accepts, in order.
template <class Keep>
String KeepCodes(std::u16string_view source, const String& Value, Keep keep) {
  return internal::Trap(source, [&] {
    std::u16string kept;
    for (char16_t c : Value.view()) {
      if (keep(internal::AnsiCode(c))) kept.push_back(c);
    }
    return String(std::move(kept));
  });
}

String AlphaPrivate(const String& Value) {
  return KeepCodes(u"CRVLIB.Validations::AlphaPrivate", Value, [](uint8_t code) {
    return (code >= 65 && code <= 90) || (code >= 97 && code <= 122);
  });
}

String NumPrivate(const String& Value) {
  return KeepCodes(u"CRVLIB.Validations::NumPrivate", Value,
                   [](uint8_t code) { return code >= 48 && code <= 57; });
}

String NonNumPrivate(const String& Value) {
  return KeepCodes(u"CRVLIB.Validations::NonNumPrivate", Value, [](uint8_t code) {
    return (code >= 32 && code <= 44) || code == 47 || (code >= 58 && code <= 126);
  });
}

// A copy of `Value` with every "." turned into "/", so that "31.12.2005"
// reads as a date and not as the time 31:12. The caller's string is kept.
String FullStopsAsSlashes(const String& Value) {
  DynamicString text;
  text.SetValue(Value);
  text.ChangeAll(u".", u"/", vxCaseSensitive);
  return text.Value();
}

}  // namespace

bool Validations::BooleanCheck(const String& Value) {
  bool result = true;
  ResumeNext on_error;
  on_error([&] {
    // The list is upper case; an empty value counts as "0". A value holding
    // a comma spans several elements and so never equals one.
    String word = Value.empty() ? String(u"0") : internal::UpperCase(Value.view());
    DynamicString words;
    words.SetValue(kBooleanWords);
    result = words.LocateElement(word, u",", 1, vxExactMatch, vxCaseNotSensitive) != 0;
  });
  return result;
}

bool Validations::CurrencyCheck(const String& Value) {
  // Only letters and the lack of a digit are refused: "$1,234.50", "(12)"
  // and "1-2-3" all pass.
  bool result = true;
  ResumeNext on_error;
  on_error([&] {
    if (!AlphaPrivate(Value).empty()) result = false;
    if (NumPrivate(Value).empty()) result = false;
  });
  return result;
}

bool Validations::DateCheck(const String& Value) {
  bool result = false;
  ResumeNext on_error;
  on_error([&] {
    internal::DateValue(FullStopsAsSlashes(Value).view());
    result = true;
  });
  return result;
}

bool Validations::TimeCheck(const String& Value) {
  bool result = false;
  ResumeNext on_error;
  on_error([&] {
    internal::TimeValue(Value.view());
    result = true;
  });
  return result;
}

bool Validations::IsNum(const String& Value) {
  // Several full stops are accepted ("1.2.3"); signs, blanks, exponents and
  // thousands separators are not.
  bool result = false;
  ResumeNext on_error;
  on_error([&] {
    std::u16string_view value = Value.view();
    if (value.empty()) return;
    for (char16_t c : value) {
      if ((c < u'0' || c > u'9') && c != u'.') return;
    }
    result = true;
  });
  return result;
}

bool Validations::PercentCheck(const String& Value) {
  // Signs, full stops and digits may stand anywhere and the "%" on either
  // side; a blank or a second "%" is refused. At least one digit is needed.
  bool result = false;
  ResumeNext on_error;
  on_error([&] {
    String rest = NonNumPrivate(Value);
    result = (rest.empty() || rest == u"%") && !NumPrivate(Value).empty();
  });
  return result;
}

bool Validations::RangeDate(const String& Value, const String& LowerBound,
                            const String& UpperBound) {
  // Only the value reads "." as "/"; the bounds are taken as they are.
  bool result = false;
  ResumeNext on_error;
  on_error([&] {
    const double value = internal::DateValue(FullStopsAsSlashes(Value).view());
    const double lower = internal::DateValue(LowerBound.view());
    const double upper = internal::DateValue(UpperBound.view());
    result = lower <= value && value <= upper;
  });
  return result;
}

bool Validations::RangeNum(const String& Value, const String& LowerBound,
                           const String& UpperBound) {
  bool result = false;
  ResumeNext on_error;
  on_error([&] {
    const int32_t value = internal::ParseLong(Value.view());
    const int32_t lower = internal::ParseLong(LowerBound.view());
    const int32_t upper = internal::ParseLong(UpperBound.view());
    result = lower <= value && value <= upper;
    // The comparison's answer is overwritten deliberately: RangeNum has
    // always answered False, and clients test numbers with their own code.
    result = false;
  });
  return result;
}

bool Validations::RangeTime(const String& Value, const String& LowerBound,
                            const String& UpperBound) {
  bool result = false;
  ResumeNext on_error;
  on_error([&] {
    const double value = internal::TimeValue(Value.view());
    const double lower = internal::TimeValue(LowerBound.view());
    const double upper = internal::TimeValue(UpperBound.view());
    result = lower <= value && value <= upper;
  });
  return result;
}

}  // namespace crvlib
