// The automation value types: Currency, Date, Variant and arrays with a lower
// bound.
//
//   Currency::FromScaled(123456).ToDouble() == 12.3456
//   Date{38352.0}.ToCivil()->day == 31   // 31 Dec 2004, midnight
//   Variant v = String(u"x");
//   v.Type() == VarType::kString
//   StringArray a{1, {u"a", u"b"}};
//   a.UBound() == 2
#ifndef CRVLIB_VARIANT_H_
#define CRVLIB_VARIANT_H_

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "crvlib/export.h"
#include "crvlib/string.h"

namespace crvlib {

// A 64-bit integer count of ten-thousandths: the automation Currency type.
struct Currency {
  static constexpr int64_t kScale = 10000;
  int64_t scaled = 0;

  static constexpr Currency FromScaled(int64_t value) { return Currency{value}; }
  double ToDouble() const { return static_cast<double>(scaled) / kScale; }
  friend constexpr auto operator<=>(Currency, Currency) = default;
};

// A calendar day (proleptic Gregorian) and a time of day.
struct CivilDateTime {
  int32_t year = 1899, month = 12, day = 30;
  int32_t hour = 0, minute = 0, second = 0;
};

// Days since 30 December 1899 (day 0); the fraction is the time of day. For
// dates before day 0 the whole part counts back and the fraction still counts
// forward from midnight (-1.25 is 29 Dec 1899, 06:00). Dates run from 1
// January 100 to 31 December 9999.
struct Date {
  double serial = 0;

  // The Date of a day and time; nullopt when there is no such day in the
  // years 100 to 9999 or no such time (hour 0-23, minute and second 0-59).
  //   Date::FromCivil({2004, 12, 31, 18})->serial == 38352.75
  //   Date::FromCivil({2005, 2, 29})               == std::nullopt
  CRVLIB_EXPORT static std::optional<Date> FromCivil(const CivilDateTime& c);
  // The day and time, the time rounded to the nearest second (a time that
  // rounds to midnight moves to the next day); nullopt outside the years 100
  // to 9999 or for a serial that is not a number.
  //   Date{-1.25}.ToCivil()->day == 29   // 29 Dec 1899, 06:00
  //   Date{-1.25}.ToCivil()->hour == 6
  CRVLIB_EXPORT std::optional<CivilDateTime> ToCivil() const;

  friend constexpr auto operator<=>(Date, Date) = default;
};

// The Variant types, numbered as the automation VARTYPE values.
enum class VarType : uint16_t {
  kEmpty = 0,
  kNull = 1,
  kInteger = 2,
  kLong = 3,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kString = 8,
  kBoolean = 11,
};

struct NullValue {
  friend constexpr bool operator==(NullValue, NullValue) { return true; }
};
inline constexpr NullValue kNull{};

class Variant {
 public:
  Variant() = default;                               // Empty
  Variant(NullValue) : value_(kNull) {}              // NOLINT
  Variant(bool b) : value_(b) {}                     // NOLINT
  Variant(int16_t i) : value_(i) {}                  // NOLINT
  Variant(int32_t l) : value_(l) {}                  // NOLINT
  Variant(double d) : value_(d) {}                   // NOLINT
  Variant(Currency c) : value_(c) {}                 // NOLINT
  Variant(Date d) : value_(d) {}                     // NOLINT
  Variant(String s) : value_(std::move(s)) {}        // NOLINT
  Variant(const char16_t* s) : value_(String(s)) {}  // NOLINT

  VarType Type() const { return kTypes[value_.index()]; }
  bool IsEmpty() const { return Type() == VarType::kEmpty; }
  bool IsNull() const { return Type() == VarType::kNull; }

  // Typed access; the caller checks Type() first.
  bool AsBoolean() const { return std::get<bool>(value_); }
  int16_t AsInteger() const { return std::get<int16_t>(value_); }
  int32_t AsLong() const { return std::get<int32_t>(value_); }
  double AsDouble() const { return std::get<double>(value_); }
  Currency AsCurrency() const { return std::get<Currency>(value_); }
  Date AsDate() const { return std::get<Date>(value_); }
  const String& AsString() const { return std::get<String>(value_); }

  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  struct EmptyValue {
    friend constexpr bool operator==(EmptyValue, EmptyValue) { return true; }
  };
  using Storage =
      std::variant<EmptyValue, NullValue, bool, int16_t, int32_t, double, Currency, Date, String>;
  static constexpr VarType kTypes[] = {VarType::kEmpty,    VarType::kNull, VarType::kBoolean,
                                       VarType::kInteger,  VarType::kLong, VarType::kDouble,
                                       VarType::kCurrency, VarType::kDate, VarType::kString};
  Storage value_;
};

// A one-dimensional automation array: items indexed from `lbound`.
template <class T>
struct SafeArray {
  int32_t lbound = 0;
  std::vector<T> items;

  int32_t UBound() const { return lbound + static_cast<int32_t>(items.size()) - 1; }
  friend bool operator==(const SafeArray&, const SafeArray&) = default;
};

using StringArray = SafeArray<String>;
using VariantArray = SafeArray<Variant>;

}  // namespace crvlib

#endif  // CRVLIB_VARIANT_H_
