// Validations: yes/no questions about strings typed by users. The checks
// never raise: a failure inside one answers what its result held at that
// moment (False, except True for BooleanCheck and CurrencyCheck). The only
// error is 429 when the regular-expression engine cannot be created.
//
//   Validations::BooleanCheck(u"Inactive") == true
//   Validations::IsNum(u"1.2.3") == true
//   Validations::PercentCheck(u"12.5%") == true
//   Validations::RangeNum(u"5", u"1", u"10") == false   // always
//   Validations::IsValid(u"ABC", u"^[a-z]+$", vxIgnoreCase) == true
//   Validations::Matches(u"123-AB", u"3N'-'2A") == true
#ifndef CRVLIB_VALIDATIONS_H_
#define CRVLIB_VALIDATIONS_H_

#include "crvlib/enums.h"
#include "crvlib/export.h"
#include "crvlib/string.h"

namespace crvlib {

class CRVLIB_EXPORT Validations {
 public:
  static bool BooleanCheck(const String& Value);
  // True unless Value holds an ASCII letter or no digit at all.
  static bool CurrencyCheck(const String& Value);
  // "." may stand for "/"; the caller's Value is not changed.
  static bool DateCheck(const String& Value);
  static bool TimeCheck(const String& Value);
  // Not empty, and only digits and ".".
  static bool IsNum(const String& Value);
  static bool PercentCheck(const String& Value);
  // LowerBound <= Value <= UpperBound as dates (or times); False when any of
  // them does not convert.
  static bool RangeDate(const String& Value, const String& LowerBound, const String& UpperBound);
  // Always False: the comparison is made and its result overwritten.
  static bool RangeNum(const String& Value, const String& LowerBound, const String& UpperBound);
  static bool RangeTime(const String& Value, const String& LowerBound, const String& UpperBound);

  // True when RegexPattern (a VBScript-style regular expression) matches
  // anywhere in Value; an invalid pattern gives False. Only vxIgnoreCase has
  // an effect.
  static bool IsValid(const String& Value, const String& RegexPattern,
                      vxMatchOptionsEnum MatchOptions = vxNoOptionsSet);
  static bool EmailAddressCheck(const String& Value);
  // Picture matching over the whole of Value: counts with the classes N
  // (digits), A (letters) and X (anything), 0 meaning any number, quoted
  // literals and exact characters.
  static bool Matches(const String& Value, const String& Pattern);
};

}  // namespace crvlib

#endif  // CRVLIB_VALIDATIONS_H_
