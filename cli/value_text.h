// The command-line forms of values: arguments typed on the command line and
// results printed for a person.
//
// With -e, arguments are decoded and printed strings encoded with the same
// backslash escapes, so any code unit can be typed and seen:
//   \xHH     the code unit 0x00HH        \uHHHH   the code unit 0xHHHH
//   \n \r \t line feed, carriage return, tab        \\  a backslash
//   DecodeEscapes(u"a\\xFEb") == u"a\u00FEb"     EscapeText(u"a\u00FEb\n") == "a\\xFEb\\n"
#ifndef CRVLIB_CLI_VALUE_TEXT_H_
#define CRVLIB_CLI_VALUE_TEXT_H_

#include <string>
#include <string_view>

#include "cli/value_json.h"
#include "typelib/surface.h"

namespace crvlib::cli {

// Decodes the escapes of `text`; throws UsageError for an unknown or
// incomplete escape.
std::u16string DecodeEscapes(std::u16string_view text);

// `text` in printable ASCII: other code units as escapes.
std::string EscapeText(std::u16string_view text);

// `text` in UTF-8 with its control characters (C0, DEL and C1) as escapes,
// so that a message stays one line on a terminal; the rest is unchanged:
//   EscapeControls(u"bad\r\nhex \u00FF") == "bad\\r\\nhex \u00FF" (in UTF-8)
std::string EscapeControls(std::u16string_view text);

// Converts command-line argument `arg` (UTF-8) to the type of `param`:
// strings as they are, numbers in the plain C form, Booleans True/False,
// Currency as a decimal, Dates as YYYY-MM-DD[Thh:mm[:ss]], arrays as JSON,
// enumerations by number or member name. A Variant takes the JSON value form
// when `arg` is one (5, 2.5, true, null, "text", {"Currency":"1.5"}), a
// Boolean for True or False in any letter case, else the text as a String.
// An empty argument for a by-reference parameter that is not a String or
// Variant gives that type's empty value. Throws UsageError, also for an
// argument that is not valid UTF-8.
Value ArgumentFromText(std::string_view arg, const ParamInfo& param, bool escapes);

// The printed form of `v`: strings as UTF-8 (escaped with `escapes`),
// Booleans True/False, numbers plainly, Currency as a decimal, Dates in ISO
// 8601, Empty as nothing, Null as Null, Nothing as Nothing, arrays and
// objects in their JSON form. A string of odd byte length prints in its JSON
// form {"bytes":"…"}, the only form that keeps its last byte.
std::string ValueText(const Value& v, bool escapes, const ObjectNamer& name_of);

}  // namespace crvlib::cli

#endif  // CRVLIB_CLI_VALUE_TEXT_H_
