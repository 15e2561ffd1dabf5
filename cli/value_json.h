// Values in JSON, as `crv batch` reads and writes them, and the conversion of
// an argument to its parameter's type.
//
//   String             "text" (any code unit, via \uXXXX where needed);
//                      a string of odd byte length {"bytes":"41004200ff"}
//   Long, Integer      a number                      Double  5.0, 0.1, 1e+300
//   Boolean            true / false                  Null    null
//   Empty              {"Empty":true}
//   Currency           {"Currency":"12.3456"}
//   Date               {"Date":"2004-12-31T00:00:00"} (outside years 100..9999
//                      the serial number: {"Date":-700000})
//   arrays             {"lbound":0,"items":[...]}
//   objects            {"object":"NAME"}; Nothing is null
//
// Arguments accept the same forms and, for exact Variant types, {"Integer":5},
// {"Long":5}, {"Double":5}, {"String":"x"}. In a Variant parameter a number
// written without fraction or exponent is a Long when it fits, else a Double;
// any other number is a Double. Typed parameters take only their own forms: a
// Long wants a whole number in range (or an enumeration member's name, for an
// enumeration), a String a string, a Boolean true or false, and so on. A
// by-reference argument may be null when its input does not matter: it then
// starts as its type's empty value.
#ifndef CRVLIB_CLI_VALUE_JSON_H_
#define CRVLIB_CLI_VALUE_JSON_H_

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "cli/json.h"
#include "typelib/surface.h"

namespace crvlib::cli {

// crv is a face of the member table: it calls, reads and prints the table's
// values and members under these names.
using typelib::BindArguments;
using typelib::ClassInfo;
using typelib::ClassKind;
using typelib::Enumerations;
using typelib::EnumInfo;
using typelib::EnumMember;
using typelib::FindEnum;
using typelib::MemberInfo;
using typelib::MemberKind;
using typelib::Object;
using typelib::ParamInfo;
using typelib::SameName;
using typelib::ShippedSurface;
using typelib::Surface;
using typelib::TypeInfo;
using typelib::TypeKind;
using typelib::TypeOf;
using typelib::UsageError;
using typelib::Value;

// Gives the name an object is written under.
using ObjectNamer = std::function<std::string(const Object&)>;
// Finds the object an argument {"object":"NAME"} refers to, or throws
// UsageError.
using ObjectResolver = std::function<Object(std::string_view name)>;

// Appends the JSON form of `v`. With `ascii_only`, strings escape everything
// past ASCII.
void AppendValueJson(std::string& out, const Value& v, const ObjectNamer& name_of,
                     bool ascii_only = false);
void AppendVariantJson(std::string& out, const Variant& v, bool ascii_only = false);

// Reads any Variant form; throws UsageError for anything else.
Variant VariantFromJson(const Json& j);

// Converts argument `j` to the type of `param`; throws UsageError saying what
// was expected.
Value ArgumentFromJson(const Json& j, const ParamInfo& param, const ObjectResolver& resolve);

// The value a by-reference argument starts from when its input does not
// matter: "", 0, False, Empty, an empty array, Nothing.
Value EmptyValue(const TypeInfo& type);

// The text forms shared with the command line.
std::string FormatCurrency(Currency c);                        // "12.3456", "-0.5", "7"
std::optional<Currency> ParseCurrency(std::string_view text);  // up to 4 decimals
std::optional<std::string> FormatDate(Date d);                 // nullopt outside years 100..9999
std::optional<Date> ParseDate(std::string_view text);          // "YYYY-MM-DD[Thh:mm[:ss]]"
// A whole number in the range of a Long or Integer parameter, as its Value;
// throws UsageError when out of range.
Value IntegerValue(int64_t n, const TypeInfo& type);
// The hex digits of a string's bytes, two per byte.
std::string BytesHex(const String& s);

}  // namespace crvlib::cli

#endif  // CRVLIB_CLI_VALUE_JSON_H_
