// The typed conversions of Conversions: display text to Boolean, Currency,
// Date and percentage values and back.
//
// BooleanIn looks the upper-cased text up in lists of Boolean words with
// the element search of a DynamicString.
//
// Output formats with the Format language in the thread's locale; the value
// must already be a Variant of the routine's type (anything else is 13:
// these routines format, they do not convert). Input parses with the
// runtime's conversions; CurrencyIn and PercentIn first keep only digits,
// ",", "-" and ".", so currency symbols and parentheses fall away and
// "($12.00)" reads as 12.
#include <string_view>

#include "core/error_frame.h"
#include "crvlib/conversions.h"
#include "crvlib/dynamic_string.h"
#include "runtime/date_parse.h"
#include "runtime/format.h"
#include "runtime/letters.h"
#include "runtime/number_parse.h"
#include "runtime/rounding.h"

namespace crvlib {
namespace {

using internal::Raise;
using internal::Trap;

void RequireType(const Variant& value, VarType type) {
  if (value.Type() != type) Raise(internal::kTypeMismatch);
}

}  // namespace

Variant Conversions::BooleanIn(const String& Value) {
  return Trap(u"CRVLIB.Converions::BooleanIn", [&] {
    // A word that is no Boolean word at all reads as "0"; of the rest, the
    // true words are True. Both lists are searched caselessly, element by
    // element, so "tRuE" and "Active" count and "T,F" matches nothing.
    String word = internal::UpperCase(Value.Len() == 0 ? std::u16string_view(u"0") : Value.view());
    DynamicString words;
    words.SetValue(u"0,1,-1,T,F,Y,N,TRUE,FALSE,YES,NO,ON,OFF,ACTIVE,INACTIVE");
    if (words.LocateElement(word, u",", 1, vxExactMatch, vxCaseNotSensitive) == 0) word = u"0";
    words.SetValue(u"1,-1,T,Y,TRUE,YES,ON,ACTIVE");
    return Variant(words.LocateElement(word, u",", 1, vxExactMatch, vxCaseNotSensitive) != 0);
  });
}

String Conversions::BooleanOut(const Variant& Bool, String& OutputFormat) {
  return Trap(u"CRVLIB.Converions::BooleanOut", [&] {
    RequireType(Bool, VarType::kBoolean);
    // Letter pairs answer with one side of the slash; the named formats are
    // the Format language's own. Both are matched exactly, case included.
    static constexpr std::u16string_view kPairs[] = {u"T/F", u"t/f", u"Y/N", u"y/n", u"1/0"};
    const std::u16string_view format = OutputFormat.view();
    for (std::u16string_view pair : kPairs) {
      if (format == pair) return String(pair.substr(Bool.AsBoolean() ? 0 : 2, 1));
    }
    if (format != u"True/False" && format != u"Yes/No" && format != u"On/Off") {
      OutputFormat = String(u"True/False");  // the caller sees the format used
    }
    return internal::VarFormat(Bool, OutputFormat.view());
  });
}

String Conversions::BooleanOut(const Variant& Bool) {
  return Trap(u"CRVLIB.Converions::BooleanOut", [&] {
    String format(u"True/False");
    return BooleanOut(Bool, format);
  });
}

Variant Conversions::CurrencyIn(const String& Value) {
  return Trap(u"CRVLIB.Converions::CurrencyIn", [&] {
    const String digits = NumPlus(Value.Len() == 0 ? String(u"0") : Value);
    return Variant(internal::ParseCurrency(digits.view()));
  });
}

String Conversions::CurrencyOut(const Variant& CurrencyValue, const String& OutputFormat) {
  return Trap(u"CRVLIB.Converions::CurrencyOut", [&] {
    RequireType(CurrencyValue, VarType::kCurrency);
    return internal::VarFormat(CurrencyValue, OutputFormat.view());
  });
}

Variant Conversions::DateIn(const String& Value) {
  return Trap(u"CRVLIB.Converions::DateIn", [&] {
    // "12.31.2004" reads as "12/31/2004": the full stop stands for the
    // date separator wherever it appears.
    DynamicString text;
    text.SetValue(Value);
    text.ChangeAll(u".", u"/");
    return Variant(Date{internal::DateValue(text.Value().view())});
  });
}

String Conversions::DateOut(const Variant& DateValue, const String& OutputFormat) {
  return Trap(u"CRVLIB.Converions::DateOut", [&] {
    RequireType(DateValue, VarType::kDate);
    return internal::VarFormat(DateValue, OutputFormat.view());
  });
}

Variant Conversions::TimeIn(const String& Value) {
  return Trap(u"CRVLIB.Converions::TimeIn",
              [&] { return Variant(Date{internal::TimeValue(Value.view())}); });
}

String Conversions::TimeOut(const Variant& TimeValue, const String& OutputFormat) {
  return Trap(u"CRVLIB.Converions::TimeOut", [&] {
    RequireType(TimeValue, VarType::kDate);
    return internal::VarFormat(TimeValue, OutputFormat.view());
  });
}

Currency Conversions::PercentIn(const String& Value) {
  return Trap(u"CRVLIB.Converions::PercentIn", [&] {
    const Currency percent = internal::ParseCurrency(NumPlus(Value).view());
    return internal::DoubleToCurrency(percent.ToDouble() / 100);
  });
}

String Conversions::PercentOut(Currency PercentValue, const String& OutputFormat) {
  return Trap(u"CRVLIB.Converions::PercentOut",
              [&] { return internal::VarFormat(Variant(PercentValue), OutputFormat.view()); });
}

}  // namespace crvlib
