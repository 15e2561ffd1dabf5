// Conversions: display strings to and from stored and typed values.
//
// Convert applies a conversion code in the manner of multi-value databases,
// in either direction: dates ("D", "D2/", "DM", …), times ("MT", "MTHS", any
// code beginning with "T"), characters ("MCU", "MCT", "MCXD", …), hex ("MX")
// and numeric masks ("MD2,$", "MR2", "ML#10"). The typed routines parse into
// and format from Variants with the runtime's Format language. The filters
// keep characters by their code page codes.
//
// Every routine runs in the library's error frame. The sources of Convert,
// the typed routines and PCase are spelt "CRVLIB.Converions::<Routine>"; those
// of Alpha, AlphaPlus, Num, NumPlus and NonNum "CRVLIB.Conversions::<Routine>".
// Both spellings are part of the interface.
//
//   Conversions::Convert(u"0", u"D")                == u"31 Dec 1967"
//   Conversions::Convert(u"12/31/1967", u"D", true) == u"0"
//   Conversions::Convert(u"90000", u"MTS")          == u"25:00:00"
//   Conversions::Convert(u"123456", u"MD2,$")       == u"$1,234.56"
#ifndef CRVLIB_CONVERSIONS_H_
#define CRVLIB_CONVERSIONS_H_

#include "crvlib/export.h"
#include "crvlib/string.h"
#include "crvlib/variant.h"

namespace crvlib {

class CRVLIB_EXPORT Conversions {
 public:
  // Empty Data gives "" before the code is looked at; an unknown code raises
  // 1611 with the code appended to the description.
  static String Convert(const String& Data, const String& Conversion, bool InputConvert = false);

  // "1", "-1", "T", "Y", "TRUE", "YES", "ON", "ACTIVE" (any case) are True;
  // everything else is False.
  static Variant BooleanIn(const String& Value);
  // Bool must hold a Boolean (else 13). An OutputFormat other than "T/F",
  // "t/f", "Y/N", "y/n", "1/0", "True/False", "Yes/No" and "On/Off" is
  // replaced by "True/False" in the caller's variable.
  static String BooleanOut(const Variant& Bool, String& OutputFormat);
  static String BooleanOut(const Variant& Bool);
  // The text without anything but digits, ",", "-" and ".", as Currency.
  //   Conversions::CurrencyIn(u"$1,234.56") == Variant(Currency::FromScaled(12345600))
  static Variant CurrencyIn(const String& Value);
  // The Out routines format a Variant of their own type (Currency, Date,
  // Date) with the Format language; any other type is 13.
  //   Conversions::CurrencyOut(Currency::FromScaled(-12345000)) == u"($1,234.50)"
  static String CurrencyOut(const Variant& CurrencyValue,
                            const String& OutputFormat = u"$#,##0.00;($#,##0.00)");
  // The date part of the text; "." may stand for "/".
  //   Conversions::DateIn(u"12.31.2004") == Variant(Date{38352})
  //   Conversions::DateIn(u"12/31/2004 18:00") == Variant(Date{38352})
  static Variant DateIn(const String& Value);
  static String DateOut(const Variant& DateValue, const String& OutputFormat = u"ddddd");
  // The time part of the text.
  //   Conversions::TimeIn(u"6:00 PM") == Variant(Date{0.75})
  static Variant TimeIn(const String& Value);
  static String TimeOut(const Variant& TimeValue, const String& OutputFormat = u"ttttt");
  //   Conversions::PercentIn(u"12.5") == Currency::FromScaled(1250)   // 0.125
  static Currency PercentIn(const String& Value);
  //   Conversions::PercentOut(Currency::FromScaled(1250)) == u"12.50%"
  static String PercentOut(Currency PercentValue, const String& OutputFormat = u"Percent");

  // Keep the ASCII letters; letters and space; digits; digits and , - .;
  // printable ASCII without digits, "-" and ".".
  //   Conversions::Alpha(u"a1-B c") == u"aBc"
  //   Conversions::NumPlus(u"$1,234.50-") == u"1,234.50-"
  static String Alpha(const String& Value);
  static String AlphaPlus(const String& Value);
  static String Num(const String& Value);
  static String NumPlus(const String& Value);
  static String NonNum(const String& Value);
  // Lower case with a capital at the start and after white space only.
  //   Conversions::PCase(u"o'neil-smith, jr.") == u"O'neil-smith, Jr."
  static String PCase(const String& Value);
};

}  // namespace crvlib

#endif  // CRVLIB_CONVERSIONS_H_
