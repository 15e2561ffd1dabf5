// The Conversions class: conversion codes, typed input and output conversions,
// character filters and proper case, in type-library order.
#include "crvlib/conversions.h"
#include "typelib/surface.h"

namespace crvlib::typelib {

// The overload of BooleanOut that the type library shows: its format is
// written back to the caller.
using BooleanOutWithFormat = String (*)(const Variant&, String&);

ClassInfo ConversionsClass() {
  return GlobalClass(
      "Conversions",
      {.clsid = "B6DB87CF-09C5-4866-B91F-0CFA966AA1FB",
       .iid = "B63A458E-1782-4798-9345-0E8AE4F99910"},
      "Conversion codes, typed conversions and character filters.",
      {
          CRV_METHOD(
              Conversions, Convert,
              "Converts a value between its stored (internal) form and its display (external) "
              "form using a multi-value database conversion code: dates (D), times (MT), "
              "characters (MC), hex (MX) and numeric masks (MD, MR, ML). Set InputConvert to "
              "True to convert display text to its stored form.",
              ByRef("Data"), ByRef("Conversion"), Optional("InputConvert", false)),
          CRV_METHOD(
              Conversions, BooleanIn,
              "Converts display text to a Boolean value. 1, -1, T, Y, TRUE, YES, ON and ACTIVE "
              "(in any case) are True; anything else is False.",
              In("Value")),
          CRV_METHOD_OVERLOAD(
              Conversions, BooleanOut, BooleanOutWithFormat,
              "Returns a Boolean value as display text. OutputFormat is one of T/F, t/f, Y/N, "
              "y/n, 1/0, True/False, Yes/No or On/Off; any other format is replaced by "
              "True/False.",
              In("Bool"), OptionalByRef("OutputFormat", String(u"True/False"))),
          CRV_METHOD(Conversions, CurrencyIn,
                     "Converts display text to a Currency value, ignoring currency symbols.",
                     In("Value")),
          CRV_METHOD(Conversions, CurrencyOut,
                     "Returns a Currency value formatted with the supplied format.",
                     In("CurrencyValue"),
                     OptionalByRef("OutputFormat", String(u"$#,##0.00;($#,##0.00)"))),
          CRV_METHOD(Conversions, DateIn,
                     "Converts display text to a Date value. A full stop may stand for the date "
                     "separator.",
                     ByRef("Value")),
          CRV_METHOD(Conversions, DateOut,
                     "Returns a Date value formatted with the supplied format.", In("DateValue"),
                     OptionalByRef("OutputFormat", String(u"ddddd"))),
          CRV_METHOD(Conversions, TimeIn, "Converts display text to a time (Date) value.",
                     ByRef("Value")),
          CRV_METHOD(Conversions, TimeOut,
                     "Returns the time of a Date value formatted with the supplied format.",
                     In("TimeValue"), OptionalByRef("OutputFormat", String(u"ttttt"))),
          CRV_METHOD(Conversions, PercentIn,
                     "Converts a percentage as display text to its value: 12.5 gives 0.125.",
                     In("Value")),
          CRV_METHOD(Conversions, PercentOut,
                     "Returns a value as a percentage: 0.125 gives 12.50%.", In("PercentValue"),
                     OptionalByRef("OutputFormat", String(u"Percent"))),
          CRV_METHOD(Conversions, Alpha,
                     "Returns only the letters A-Z and a-z of the supplied string.",
                     ByRef("Value")),
          CRV_METHOD(Conversions, AlphaPlus,
                     "Returns only the letters A-Z, a-z and the spaces of the supplied string.",
                     In("Value")),
          CRV_METHOD(Conversions, Num, "Returns only the digits of the supplied string.",
                     ByRef("Value")),
          CRV_METHOD(
              Conversions, NumPlus,
              "Returns only the digits, commas, minus signs and full stops of the supplied string.",
              ByRef("Value")),
          CRV_METHOD(
              Conversions, NonNum,
              "Returns the printable characters of the supplied string other than digits, minus "
              "signs and full stops.",
              ByRef("Value")),
          CRV_METHOD(
              Conversions, PCase,
              "Returns the supplied string in proper case: lower case with a capital at the start "
              "and after each space, carriage return, line feed, tab or form feed.",
              ByRef("Value")),
      });
}

}  // namespace crvlib::typelib
