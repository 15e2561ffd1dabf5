// The Conversions class: conversion codes, typed input and output conversions,
// character filters and proper case, in type-library order.
#include "cli/surface.h"
#include "crvlib/conversions.h"

namespace crvlib::cli {

// The overload of BooleanOut that the type library shows: its format is
// written back to the caller.
constexpr auto kBooleanOut =
    static_cast<String (*)(const Variant&, String&)>(&Conversions::BooleanOut);

ClassInfo ConversionsClass() {
  return GlobalClass(
      "Conversions", "Conversion codes, typed conversions and character filters.",
      {
          Method<&Conversions::Convert>(
              "Convert",
              "Converts a value between its stored (internal) form and its display (external) "
              "form using a multi-value database conversion code: dates (D), times (MT), "
              "characters (MC), hex (MX) and numeric masks (MD, MR, ML). Set InputConvert to "
              "True to convert display text to its stored form.",
              ByRef("Data"), ByRef("Conversion"), Optional("InputConvert", false)),
          Method<&Conversions::BooleanIn>(
              "BooleanIn",
              "Converts display text to a Boolean value. 1, -1, T, Y, TRUE, YES, ON and ACTIVE "
              "(in any case) are True; anything else is False.",
              In("Value")),
          Method<kBooleanOut>(
              "BooleanOut",
              "Returns a Boolean value as display text. OutputFormat is one of T/F, t/f, Y/N, "
              "y/n, 1/0, True/False, Yes/No or On/Off; any other format is replaced by "
              "True/False.",
              In("Bool"), OptionalByRef("OutputFormat", String(u"True/False"))),
          Method<&Conversions::CurrencyIn>(
              "CurrencyIn", "Converts display text to a Currency value, ignoring currency symbols.",
              In("Value")),
          Method<&Conversions::CurrencyOut>(
              "CurrencyOut", "Returns a Currency value formatted with the supplied format.",
              In("CurrencyValue"), OptionalByRef("OutputFormat", String(u"$#,##0.00;($#,##0.00)"))),
          Method<&Conversions::DateIn>(
              "DateIn",
              "Converts display text to a Date value. A full stop may stand for the date "
              "separator.",
              ByRef("Value")),
          Method<&Conversions::DateOut>(
              "DateOut", "Returns a Date value formatted with the supplied format.",
              In("DateValue"), OptionalByRef("OutputFormat", String(u"ddddd"))),
          Method<&Conversions::TimeIn>("TimeIn", "Converts display text to a time (Date) value.",
                                       ByRef("Value")),
          Method<&Conversions::TimeOut>(
              "TimeOut", "Returns the time of a Date value formatted with the supplied format.",
              In("TimeValue"), OptionalByRef("OutputFormat", String(u"ttttt"))),
          Method<&Conversions::PercentIn>(
              "PercentIn", "Converts a percentage as display text to its value: 12.5 gives 0.125.",
              In("Value")),
          Method<&Conversions::PercentOut>(
              "PercentOut", "Returns a value as a percentage: 0.125 gives 12.50%.",
              In("PercentValue"), OptionalByRef("OutputFormat", String(u"Percent"))),
          Method<&Conversions::Alpha>(
              "Alpha", "Returns only the letters A-Z and a-z of the supplied string.",
              ByRef("Value")),
          Method<&Conversions::AlphaPlus>(
              "AlphaPlus",
              "Returns only the letters A-Z, a-z and the spaces of the supplied string.",
              In("Value")),
          Method<&Conversions::Num>("Num", "Returns only the digits of the supplied string.",
                                    ByRef("Value")),
          Method<&Conversions::NumPlus>(
              "NumPlus",
              "Returns only the digits, commas, minus signs and full stops of the supplied string.",
              ByRef("Value")),
          Method<&Conversions::NonNum>(
              "NonNum",
              "Returns the printable characters of the supplied string other than digits, minus "
              "signs and full stops.",
              ByRef("Value")),
          Method<&Conversions::PCase>(
              "PCase",
              "Returns the supplied string in proper case: lower case with a capital at the start "
              "and after each space, carriage return, line feed, tab or form feed.",
              ByRef("Value")),
      });
}

}  // namespace crvlib::cli
