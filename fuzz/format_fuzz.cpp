// Fuzzes VarFormat with arbitrary format strings and values, and the date,
// number and Val parsers with arbitrary text. Nothing may crash; failures
// must be the runtime's errors (5, 6, 13, 94).
//
// Input: byte 0 picks the value's type (low 3 bits) and the locale (bit 3);
// the rest is UTF-8 "value text" NUL "format text".
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "crvlib/locale.h"
#include "runtime/date_parse.h"
#include "runtime/format.h"
#include "runtime/number_parse.h"
#include "runtime/val.h"
#include "runtime/variant_text.h"

namespace {

using namespace crvlib;
using namespace crvlib::internal;

// A value of kind 0-7: Double, String, Date, Currency, Long, Boolean, Null
// and Empty, from the number Val reads in `text`.
Variant MakeValue(int kind, const String& text) {
  const double d = Val(text.view());
  const Variant values[] = {
      Variant(d),
      Variant(text),
      Variant(Date{d}),
      Variant(Currency{static_cast<int64_t>(d > 9e18 || d < -9e18 ? 0 : d)}),
      Variant(static_cast<int32_t>(d > 2e9 || d < -2e9 ? 0 : d)),
      Variant(d != 0),
      Variant(kNull),
      Variant(),
  };
  return values[kind];
}

void ExpectRuntimeError(const ResumeNext& err) {
  int32_t n = err.Number();
  if (n != 0 && n != 5 && n != 6 && n != 13 && n != 94) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static int current = -1;
  int german = (data[0] >> 3) & 1;
  if (german != current) {
    SetThreadLocale(german ? "de-DE" : "en-US");
    current = german;
  }
  std::string rest(reinterpret_cast<const char*>(data + 1), size - 1);
  size_t nul = rest.find('\0');
  String value_text = String::FromUtf8(rest.substr(0, nul));
  String format = String::FromUtf8(nul == std::string::npos ? "" : rest.substr(nul + 1));

  Variant value = MakeValue(data[0] & 7, value_text);
  ResumeNext err;
  String out;
  err([&] { out = VarFormat(value, format.view()); });
  ExpectRuntimeError(err);
  err.Clear();
  err([&] { out = VariantToText(value); });
  ExpectRuntimeError(err);

  const LocaleSettings& loc = State().locale;
  double d;
  TryParseDate(value_text.view(), loc, DateParseMode::kDateTime, 2011, &d);
  TryParseDate(format.view(), loc, DateParseMode::kTimeOnly, 2011, &d);
  TryParseDouble(value_text.view(), loc, &d);
  Currency c;
  TryParseCurrency(format.view(), loc, &c);
  TryVal(format.view(), &d);
  return 0;
}
