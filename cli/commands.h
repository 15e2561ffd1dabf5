// The commands of crv other than batch: one call, the member listing, the
// type library description and the help text. Each writes what it prints into strings and returns
// the exit status, so that main() only routes them to stdout and stderr.
#ifndef CRVLIB_CLI_COMMANDS_H_
#define CRVLIB_CLI_COMMANDS_H_

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "cli/value_json.h"

namespace crvlib::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitRoutineError = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitInputOutput = 3;  // stdin could not be read or stdout written

struct Output {
  std::string out;
  std::string err;
};

struct CallOptions {
  bool escapes = false;      // -e: arguments and printed strings use escapes
  bool result_only = false;  // -r: no NAME=value lines
};

// `crv [-e] [-r] CLASS.MEMBER [ARG…]`: prints the result, then NAME=value
// for each by-reference parameter. A routine's error prints
// "error NUMBER (SOURCE): DESCRIPTION" (control characters as escapes) and
// gives 1; error 13 adds a hint line for each Variant argument given as
// plain text. A usage error prints one line and gives 2.
int RunCall(const Surface& surface, std::string_view target, std::span<const std::string> args,
            CallOptions options, Output& output);

// `crv list [NAME]`: every class and enumeration, or the one named.
int RunList(const Surface& surface, std::optional<std::string_view> name, Output& output);

// `crv idl`: the type library description of the table.
int RunIdl(const Surface& surface, Output& output);

// The text of `crv --help`.
std::string_view HelpText();

}  // namespace crvlib::cli

#endif  // CRVLIB_CLI_COMMANDS_H_
