// Numeric masks ("MD", "MR", "ML").
//
// The stored form of an amount is a whole number scaled by 10^scale: "MD2"
// stores $1,234.56 as 123456. Both directions first drop every "$" and ","
// from the datum (the fixed characters, whatever the locale); output drops
// "." as well, since a stored amount has no point. A datum that is then no
// number comes back as it is.
//
// Output divides by 10^scale, rounds to the decimals (half to even), and
// formats with the Format language: "0" or "0." and the decimals, with "#,"
// in front for grouping and "$" in front of that for currency. A sign option
// formats the absolute value and marks the sign after it ("CR", "DB", "<>",
// a trailing "-"). A mask then lays the text out in a fixed width: each fill
// item takes its count of characters from the text (from the right end for
// MD and MR, walking the mask backwards; from the left for ML) and pads what
// the text cannot supply; literals are copied; text no item takes is dropped.
//
// Input multiplies by 10^scale and rounds to a whole number. A datum longer
// than 13 characters gets its zeros appended as text instead, so long
// numbers keep every digit.
#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "classes/conversion_codes.h"
#include "core/error_frame.h"
#include "runtime/format.h"
#include "runtime/number_format.h"
#include "runtime/number_parse.h"
#include "runtime/rounding.h"
#include "runtime/text_buffer.h"
#include "runtime/val.h"

namespace crvlib::internal {
namespace {

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
constexpr size_t kLongestScaledText = 13;

// Val, raising 6 where the runtime does (a number past the Double range).
double ValOf(std::u16string_view text) {
  double v;
  if (TryVal(text, &v) == ParseStatus::kOverflow) Raise(kOverflow);
  return v;
}

// Round(v, decimals), half to even. A value too large to have any digits
// at that place is already whole there.
double RoundToDecimals(double v, int32_t decimals) {
  const double scale = kPowersOfTen[decimals];
  if (!(std::fabs(v) * scale < 0x1p52)) return v;
  return RoundHalfEven(v * scale) / scale;
}

String Input(std::u16string_view cleaned, const MaskCode& code, const LocaleSettings& locale) {
  if (cleaned.size() > kLongestScaledText) {
    std::u16string out(cleaned);
    out.append(static_cast<size_t>(code.scale), u'0');
    return String(std::move(out));
  }
  const double v = RoundHalfEven(ValOf(cleaned) * kPowersOfTen[code.scale]);
  if (!std::isfinite(v)) Raise(kOverflow);
  return DoubleToText(v + 0.0, locale);  // + 0.0: no "-0"
}

// The text of a value under the code's decimals, grouping, currency and
// sign options.
void AppendNumber(TextBuffer& out, double v, const MaskCode& code, const LocaleSettings& locale) {
  TextBuffer format;
  if (code.currency) format.Append(u'$');
  if (code.grouping) format.Append(u"#,");
  format.Append(u'0');
  if (code.decimals > 0) {
    format.Append(u'.');
    format.Append(static_cast<size_t>(code.decimals), u'0');
  }
  const bool negative = v < 0;
  const bool signed_value = code.sign == SignMode::kLeadingMinus;
  const String text = VarFormat(Variant(signed_value ? v : std::fabs(v)), format.view(), locale);
  if (code.sign == SignMode::kEnclosed) out.Append(negative ? u'<' : u' ');
  out.Append(text.view());
  switch (code.sign) {
    case SignMode::kLeadingMinus:
    case SignMode::kNoSign:
      break;
    case SignMode::kCredit:
      if (negative) out.Append(u"CR");
      break;
    case SignMode::kDebit:
      if (!negative) out.Append(u"DB");
      break;
    case SignMode::kEnclosed:
      out.Append(negative ? u'>' : u' ');
      break;
    case SignMode::kTrailingMinus:
      out.Append(negative ? u'-' : u' ');
      break;
  }
}

// Lays `text` out in the mask's width.
String ApplyMask(std::u16string_view text, const MaskCode& code) {
  if (code.count_overflow) Raise(kOverflow);
  if (code.width > String::kMaxBytes / 2) Raise(kOutOfStringSpace);
  std::u16string out(static_cast<size_t>(code.width), u'\0');
  if (code.left_justified) {
    size_t pos = 0;
    for (const MaskItem& item : code.items) {
      if (!item.fill) {
        out[pos++] = item.literal;
        continue;
      }
      const size_t count = static_cast<size_t>(item.count);
      const size_t take = std::min(count, text.size());
      text.copy(&out[pos], take);
      text.remove_prefix(take);
      std::fill_n(&out[pos + take], count - take, item.fill);
      pos += count;
    }
  } else {
    size_t pos = out.size();
    for (auto it = code.items.rbegin(); it != code.items.rend(); ++it) {
      if (!it->fill) {
        out[--pos] = it->literal;
        continue;
      }
      const size_t count = static_cast<size_t>(it->count);
      const size_t take = std::min(count, text.size());
      pos -= take;
      text.substr(text.size() - take).copy(&out[pos], take);
      text.remove_suffix(take);
      pos -= count - take;
      std::fill_n(&out[pos], count - take, it->fill);
    }
  }
  return String(std::move(out));
}

}  // namespace

String ConvertMask(std::u16string_view data, const MaskCode& code, bool input,
                   const LocaleSettings& locale) {
  std::u16string cleaned;
  cleaned.reserve(data.size());
  for (char16_t c : data) {
    if (c != u'$' && c != u',' && (input || c != u'.')) cleaned.push_back(c);
  }
  if (!IsNumeric(cleaned, locale)) return String(std::move(cleaned));
  if (input) return Input(cleaned, code, locale);

  const double v = RoundToDecimals(ValOf(cleaned) / kPowersOfTen[code.scale], code.decimals);
  if (code.suppress_zero && std::fabs(v) < 1e-9) return String();
  TextBuffer text;
  AppendNumber(text, v, code, locale);
  if (code.items.empty()) return text.ToString();
  return ApplyMask(text.view(), code);
}

}  // namespace crvlib::internal
