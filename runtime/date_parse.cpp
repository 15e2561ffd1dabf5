// The date parser works in two steps, as the runtime's does: a scan that
// turns the text into at most six fields with flags (month name, followed by
// a time separator, carries AM or PM), then a layout step that decides which
// fields are the time and which the date, and a search over the field orders
// for a valid date.
//
// Layout rules (T a time field, D a date field):
//   - a run of fields joined by time separators is the time (2 or 3 fields);
//     without one, a field carrying AM/PM is a lone hour;
//   - the time stands first or last: T, TT, TTT, T DD, DD T, TT DDD, DDD TTT, ...
//   - the date has 0, 2 or 3 fields; AM/PM may only follow a time field.
#include "runtime/date_parse.h"

#include <ctime>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "platform/collation.h"
#include "runtime/date_time.h"

namespace crvlib::internal {
namespace {

constexpr int kMaxFields = 6;

enum FieldFlag : uint8_t {
  kMonthName = 1,
  kTimeSeparator = 2,
  kAm = 4,
  kPm = 8,
};

struct Field {
  int32_t value;
  uint8_t flags;
};

bool IsBlank(char16_t c) {
  return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0xA0 || c == 0x3000 ||
         (c >= 0x2000 && c <= 0x200A) || c == 0x202F;
}

bool IsLetter(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c >= 0x80;
}

char16_t Fold(char16_t c) {
  return c < 0x80 ? (c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c)
                  : platform::FoldCase(c);
}

// Length of `word` when the text at `i` starts with it, ignoring case; 0 otherwise.
size_t MatchWord(std::u16string_view s, size_t i, std::u16string_view word) {
  if (word.empty() || word.size() > s.size() - i) return 0;
  for (size_t k = 0; k < word.size(); ++k) {
    if (Fold(s[i + k]) != Fold(word[k])) return 0;
  }
  return word.size();
}

bool Is(std::u16string_view s, size_t i, const String& sep) {
  return sep.Len() == 1 && s[i] == sep[0];
}

enum Order : uint8_t {
  kMDY = 1,
  kYMD = 2,
  kYDM = 4,
  kDMY = 8,
  kMYD = 16,
};

struct YearMonthDay {
  int32_t year, month, day;
};

bool TryOrder(Order o, const int32_t v[3], int32_t year_max, YearMonthDay* out) {
  int32_t y, m, d;
  switch (o) {
    case kMDY:
      m = v[0], d = v[1], y = v[2];
      break;
    case kYMD:
      y = v[0], m = v[1], d = v[2];
      break;
    case kYDM:
      y = v[0], d = v[1], m = v[2];
      break;
    case kDMY:
      d = v[0], m = v[1], y = v[2];
      break;
    default:  // kMYD
      m = v[0], y = v[1], d = v[2];
      break;
  }
  y = ExpandYear(y, year_max);
  if (m < 1 || m > 12 || d < 1 || d > DaysInMonth(y, m)) return false;
  *out = {y, m, d};
  return true;
}

// Tries the orders in `allowed`: the locale's own first, then those that fit
// it, then any; within a round in the fixed order MDY, YMD, YDM, DMY, MYD.
bool SearchOrders(uint8_t allowed, DateOrder locale_order, const int32_t v[3], int32_t year_max,
                  YearMonthDay* out) {
  static constexpr Order kSequence[] = {kMDY, kYMD, kYDM, kDMY, kMYD};
  uint8_t first, fitting;
  switch (locale_order) {
    case DateOrder::kMonthDayYear:
      first = kMDY, fitting = kMDY | kYMD | kMYD;
      break;
    case DateOrder::kDayMonthYear:
      first = kDMY, fitting = kDMY | kYMD;
      break;
    default:
      first = kYMD, fitting = kMDY | kYMD | kMYD;
      break;
  }
  for (uint8_t round : {first, fitting, uint8_t{0xFF}}) {
    uint8_t trying = allowed & round;
    for (Order o : kSequence) {
      if (!(trying & o)) continue;
      if (TryOrder(o, v, year_max, out)) return true;
      allowed &= ~o;
    }
  }
  return false;
}

int32_t ClockYear();

bool MakeYearMonthDay(const Field* f, int n, int32_t current_year, const LocaleSettings& loc,
                      YearMonthDay* out) {
  if (n == 2 && current_year == 0) current_year = ClockYear();
  int32_t v[3] = {f[0].value, f[1].value, n == 3 ? f[2].value : current_year};
  uint8_t allowed;
  if (f[0].flags & kMonthName) {
    allowed = kMDY;
  } else if (f[1].flags & kMonthName) {
    allowed = n == 3 ? kDMY | kYMD : kDMY;
  } else if (n == 3 && (f[2].flags & kMonthName)) {
    allowed = kYDM;
  } else {
    allowed = n == 3 ? kMDY | kDMY | kYMD | kYDM : kMDY | kDMY;
  }
  int32_t year_max = loc.two_digit_year_max;
  if (SearchOrders(allowed, loc.date_order, v, year_max, out)) return true;
  if (n != 2) return false;
  // Not a day and a month: a month and a year, on the 1st.
  v[2] = 1;
  return SearchOrders(kYMD | kMYD, loc.date_order, v, year_max, out);
}

int32_t ClockYear() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local.tm_year + 1900;
}

}  // namespace

int32_t CurrentYear() {
  return ClockYear();
}

ParseStatus TryParseDate(std::u16string_view s, const LocaleSettings& loc, DateParseMode mode,
                         int32_t current_year, double* out) {
  constexpr ParseStatus kBad = ParseStatus::kTypeMismatch;
  Field fields[kMaxFields];
  int count = 0;
  int date_separators = 0;
  bool have_designator = false;
  const bool point_is_date = loc.date_separator == u".";
  const size_t len = s.size();

  for (size_t i = 0; i < len;) {
    char16_t c = s[i];
    if (c >= u'0' && c <= u'9') {
      if (count == kMaxFields) return kBad;
      int32_t v = 0;
      for (; i < len && s[i] >= u'0' && s[i] <= u'9'; ++i) {
        if (v < 1000000) v = v * 10 + (s[i] - u'0');
      }
      fields[count++] = {v, 0};
      continue;
    }
    if (IsBlank(c)) {
      ++i;
      continue;
    }
    if (IsLetter(c)) {
      size_t n = 0;
      for (int m = 0; m < 12 && !n; ++m) {
        if ((n = MatchWord(s, i, loc.month_names[m].view())) ||
            (n = MatchWord(s, i, loc.month_abbreviations[m].view()))) {
          if (count == kMaxFields) return kBad;
          fields[count++] = {m + 1, kMonthName};
        }
      }
      for (int d = 0; d < 7 && !n; ++d) {
        if (!(n = MatchWord(s, i, loc.day_names[d].view()))) {
          n = MatchWord(s, i, loc.day_abbreviations[d].view());
        }
      }
      if (!n) {
        uint8_t designator = 0;
        if ((n = MatchWord(s, i, loc.am_designator.view()))) {
          designator = kAm;
        } else if ((n = MatchWord(s, i, loc.pm_designator.view()))) {
          designator = kPm;
        } else if (Fold(c) == u'a' || Fold(c) == u'p') {
          n = 1;
          designator = Fold(c) == u'a' ? kAm : kPm;
        } else {
          return kBad;
        }
        if (count == 0 || have_designator) return kBad;
        have_designator = true;
        fields[count - 1].flags |= designator;
      }
      i += n;
      continue;
    }
    bool at_end = i + 1 == len;
    if (c == u':' || (c == u'.' && !point_is_date) || Is(s, i, loc.time_separator)) {
      if (count == 0 || at_end) return kBad;
      fields[count - 1].flags |= kTimeSeparator;
    } else if (c == u'-' || c == u'/' || Is(s, i, loc.date_separator)) {
      if (++date_separators > 2 || count == 0 || at_end) return kBad;
    } else if (c == u',') {
      if (at_end) return kBad;
    } else {
      return kBad;
    }
    ++i;
  }
  if (count == 0) return kBad;

  // Which fields are the time.
  int t0 = -1, t1 = -1;
  for (int k = 0; k < count; ++k) {
    if (!(fields[k].flags & kTimeSeparator)) continue;
    if (t0 >= 0) return kBad;  // a second run of time fields
    t0 = k;
    t1 = k;
    while (t1 < count && (fields[t1].flags & kTimeSeparator)) ++t1;
    if (t1 == count || t1 - t0 > 2) return kBad;
    k = t1;
  }
  if (t0 < 0) {
    for (int k = 0; k < count; ++k) {
      if (fields[k].flags & (kAm | kPm)) t0 = t1 = k;
    }
  }
  int date_first = 0, date_count = count;
  if (t0 >= 0) {
    if (t0 != 0 && t1 != count - 1) return kBad;
    date_first = t0 == 0 ? t1 + 1 : 0;
    date_count = count - (t1 - t0 + 1);
  }
  if (date_count == 1 || date_count > 3) return kBad;
  for (int k = 0; k < count; ++k) {
    bool is_time = t0 >= 0 && k >= t0 && k <= t1;
    if (!is_time && (fields[k].flags & (kAm | kPm))) return kBad;
  }

  int32_t hour = 0, minute = 0, second = 0;
  uint8_t designator = 0;
  if (t0 >= 0) {
    hour = fields[t0].value;
    if (t1 > t0) minute = fields[t0 + 1].value;
    if (t1 > t0 + 1) second = fields[t0 + 2].value;
    for (int k = t0; k <= t1; ++k) designator |= fields[k].flags & (kAm | kPm);
  }
  if (hour > 23 || minute > 59 || second > 59) return kBad;
  if (designator == kPm && hour < 12) hour += 12;
  if (designator == kAm && hour == 12) hour = 0;

  YearMonthDay ymd{1899, 12, 30};
  if (date_count > 0 &&
      !MakeYearMonthDay(fields + date_first, date_count, current_year, loc, &ymd)) {
    return kBad;
  }
  if (ymd.year < 100 || ymd.year > 9999) return kBad;
  int64_t days = mode == DateParseMode::kTimeOnly ? 0 : DaysFromCivil(ymd.year, ymd.month, ymd.day);
  int32_t seconds = mode == DateParseMode::kDateOnly ? 0 : hour * 3600 + minute * 60 + second;
  *out = MakeDate(days, seconds);
  return ParseStatus::kOk;
}

ParseStatus TryParseDate(std::u16string_view text, const LocaleSettings& locale, DateParseMode mode,
                         double* out) {
  return TryParseDate(text, locale, mode, 0, out);
}

namespace {

double ParseOrRaise(std::u16string_view text, DateParseMode mode) {
  double v = 0;
  if (TryParseDate(text, State().locale, mode, &v) != ParseStatus::kOk) Raise(kTypeMismatch);
  return v;
}

}  // namespace

double ParseDate(std::u16string_view text) {
  return ParseOrRaise(text, DateParseMode::kDateTime);
}

double DateValue(std::u16string_view text) {
  return ParseOrRaise(text, DateParseMode::kDateOnly);
}

double TimeValue(std::u16string_view text) {
  return ParseOrRaise(text, DateParseMode::kTimeOnly);
}

}  // namespace crvlib::internal
