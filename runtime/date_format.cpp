// One pass over a picture: a run of one letter is one field, quoted text is
// copied without its quotes, everything else is copied as it stands.
#include "runtime/date_format.h"

#include <cmath>

#include "core/error_frame.h"

namespace crvlib::internal {

void AppendPicture(TextBuffer& out, std::u16string_view pic, const DateParts& p,
                   const LocaleSettings& loc) {
  size_t i = 0;
  while (i < pic.size()) {
    char16_t c = pic[i];
    if (c == u'\'') {
      ++i;
      while (i < pic.size()) {
        if (pic[i] == u'\'') {
          if (i + 1 < pic.size() && pic[i + 1] == u'\'') {
            out.Append(u'\'');
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        out.Append(pic[i++]);
      }
      continue;
    }
    size_t n = 1;
    while (i + n < pic.size() && pic[i + n] == c) ++n;
    int hour12 = p.hour % 12 == 0 ? 12 : p.hour % 12;
    const String& designator = p.hour < 12 ? loc.am_designator : loc.pm_designator;
    switch (c) {
      case u'd':
        if (n <= 2) {
          out.AppendNumber(p.day, static_cast<int>(n));
        } else {
          out.Append((n == 3 ? loc.day_abbreviations : loc.day_names)[p.weekday - 1].view());
        }
        break;
      case u'M':
        if (n <= 2) {
          out.AppendNumber(p.month, static_cast<int>(n));
        } else {
          out.Append((n == 3 ? loc.month_abbreviations : loc.month_names)[p.month - 1].view());
        }
        break;
      case u'y':
        if (n == 1) {
          out.AppendNumber(p.year % 100);
        } else if (n == 2) {
          out.AppendNumber(p.year % 100, 2);
        } else {
          out.AppendNumber(p.year);
        }
        break;
      case u'h':
        out.AppendNumber(hour12, n >= 2 ? 2 : 1);
        break;
      case u'H':
        out.AppendNumber(p.hour, n >= 2 ? 2 : 1);
        break;
      case u'm':
        out.AppendNumber(p.minute, n >= 2 ? 2 : 1);
        break;
      case u's':
        out.AppendNumber(p.second, n >= 2 ? 2 : 1);
        break;
      case u't':
        if (n == 1) {
          if (!designator.empty()) out.Append(designator[0]);
        } else {
          out.Append(designator.view());
        }
        break;
      default:
        for (size_t k = 0; k < n; ++k) out.Append(c);
        break;
    }
    i += n;
  }
}

void AppendTimeText(TextBuffer& out, const DateParts& parts, const LocaleSettings& locale) {
  AppendPicture(out, locale.time_pattern.view(), parts, locale);
}

bool AppendDateText(TextBuffer& out, double serial, const LocaleSettings& locale) {
  DateParts p;
  if (!SplitDate(serial, &p)) return false;
  double whole = std::trunc(serial);
  bool time_only = whole == 0;
  bool date_only = !time_only && std::fabs(serial - whole) < 1e-12;
  if (!time_only) AppendPicture(out, locale.short_date_patterns.front().view(), p, locale);
  if (!date_only) {
    if (!time_only) out.Append(u' ');
    AppendTimeText(out, p, locale);
  }
  return true;
}

String DateToText(double serial, const LocaleSettings& locale) {
  TextBuffer b;
  if (!AppendDateText(b, serial, locale)) Raise(kOverflow);
  return b.ToString();
}

}  // namespace crvlib::internal
