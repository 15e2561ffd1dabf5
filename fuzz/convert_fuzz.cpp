// Fuzzes Conversions::Convert with arbitrary codes and data in both
// directions. Nothing may crash or hang, and every failure must be one the
// codes can give: 1611 exactly when the code is no known code, 5, 6, 13 or
// 14 otherwise, never from a date or time code, always under Convert's
// source. Empty data gives "" without error. Then the round trips that must
// hold: MX out and back gives the text through the code page, "D/" out and
// back gives the day number, "MTS" the seconds, "MD2,$" the stored amount.
//
// The same datum also goes through the other routines of the class: the
// filters and PCase keep the length or a subsequence, BooleanIn never
// fails, and the typed In routines fail only with 13 or 6.
//
// Input: byte 0 picks the direction (bit 0) and the locale (bits 1-2); the
// rest is UTF-8 "data" NUL "code".
#include <cstdint>
#include <cstdlib>
#include <string>

#include "classes/conversion_codes.h"
#include "core/thread_state.h"
#include "crvlib/conversions.h"
#include "crvlib/error.h"
#include "crvlib/locale.h"
#include "runtime/code_page.h"

namespace {

using namespace crvlib;
using namespace crvlib::internal;

// Masks this wide are legal but only cost time and memory here.
constexpr int64_t kWidestMask = 1 << 16;

void Check(bool ok) {
  if (!ok) std::abort();
}

String Text(int64_t n) {
  return String::FromUtf8(std::to_string(n));
}

void RoundTrips(const String& data, int64_t n) {
  const String hex = Conversions::Convert(data, u"MX");
  Check(Conversions::Convert(hex, u"MX", true).view() == FromAnsi(ToAnsi(data.view())));

  const int64_t day = n % 2900000 - 650000;  // years 188 to 9848
  Check(Conversions::Convert(Conversions::Convert(Text(day), u"D/"), u"D", true) == Text(day));

  const int64_t seconds = n % 2147483648;
  Check(Conversions::Convert(Conversions::Convert(Text(seconds), u"MTS"), u"MT", true) ==
        Text(seconds));

  const int64_t amount = n % 199999999999 - 99999999999;  // up to 13 characters
  Check(Conversions::Convert(Conversions::Convert(Text(amount), u"MD2,$"), u"MD2", true) ==
        Text(amount));
}

bool IsSubsequence(std::u16string_view part, std::u16string_view whole) {
  size_t i = 0;
  for (char16_t c : whole) {
    if (i < part.size() && part[i] == c) ++i;
  }
  return i == part.size();
}

template <class Fn>
void ExpectParseErrorOnly(Fn fn) {
  try {
    fn();
  } catch (const Error& e) {
    Check(e.Number() == 13 || e.Number() == 6);
    Check(e.Source().view().starts_with(u"CRVLIB.Converions::"));
  }
}

void OtherRoutines(const String& datum) {
  Check(Conversions::PCase(datum).Len() == datum.Len());
  for (const String& kept : {Conversions::Alpha(datum), Conversions::AlphaPlus(datum),
                             Conversions::Num(datum), Conversions::NonNum(datum)}) {
    Check(IsSubsequence(kept.view(), datum.view()));
  }
  const String number = Conversions::NumPlus(datum);
  for (char16_t c : number.view()) Check(c >= u',' && c <= u'9' && c != u'/');
  Conversions::BooleanIn(datum);
  ExpectParseErrorOnly([&] { Conversions::CurrencyIn(datum); });
  ExpectParseErrorOnly([&] { Conversions::PercentIn(datum); });
  ExpectParseErrorOnly([&] { Conversions::DateIn(datum); });
  ExpectParseErrorOnly([&] { Conversions::TimeIn(datum); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static constexpr const char* kLocales[] = {"en-US", "de-DE", "ja-JP", "fr-FR"};
  static int current = -1;
  const int locale = (data[0] >> 1) & 3;
  if (locale != current) {
    SetThreadLocale(kLocales[locale]);
    current = locale;
  }
  const bool input = data[0] & 1;
  const std::string rest(reinterpret_cast<const char*>(data + 1), size - 1);
  const size_t nul = rest.find('\0');
  const String datum = String::FromUtf8(rest.substr(0, nul));
  const String code = String::FromUtf8(nul == std::string::npos ? "" : rest.substr(nul + 1));

  const ConversionCode parsed = ParseConversionCode(code.view(), State().locale);
  int64_t width = 0;
  for (const MaskItem& item : parsed.mask.items) width += item.fill ? item.count : 1;
  Check(width == parsed.mask.width);

  if (parsed.mask.width <= kWidestMask) {
    try {
      const String out = Conversions::Convert(datum, code, input);
      Check(!datum.view().empty() || out.view().empty());
      if (parsed.family == CodeFamily::kCharacter &&
          parsed.character.action == CharacterAction::kTitleCase) {
        Check(out.Len() == datum.Len());
      }
    } catch (const Error& e) {
      const int32_t n = e.Number();
      Check(e.Source() == u"CRVLIB.Converions::Convert");
      Check(!datum.view().empty());
      Check(parsed.family != CodeFamily::kDate && parsed.family != CodeFamily::kTime);
      Check((n == 1611) == (parsed.family == CodeFamily::kInvalid));
      Check(n == 1611 || n == 5 || n == 6 || n == 13 || n == 14);
    }
  }

  OtherRoutines(datum);
  if (current == 0) {
    uint64_t n = 0;
    for (size_t i = 1; i < size && i < 9; ++i) n = n << 8 | data[i];
    RoundTrips(datum, static_cast<int64_t>(n >> 1));
  }
  return 0;
}
