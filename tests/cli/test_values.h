// The test classes of the member table as crv's tests see them, and the
// JSON of a converted value for comparing conversions in tables.
#ifndef CRVLIB_TESTS_CLI_TEST_VALUES_H_
#define CRVLIB_TESTS_CLI_TEST_VALUES_H_

#include <functional>
#include <string>

#include "cli/value_json.h"
#include "tests/typelib/test_surface.h"

namespace crvlib::cli::fixtures {

using typelib::fixtures::ParamOf;
using typelib::fixtures::Probe;
using typelib::fixtures::TestSurface;
using typelib::fixtures::Tools;

// The JSON of the value `convert` gives (objects by class name), or "error: "
// and the text of the UsageError it throws.
inline std::string JsonOrError(const std::function<Value()>& convert) {
  try {
    std::string out;
    AppendValueJson(out, convert(), [](const Object& o) { return std::string(o.ClassName()); });
    return out;
  } catch (const UsageError& e) {
    return std::string("error: ") + e.what();
  }
}

}  // namespace crvlib::cli::fixtures

#endif  // CRVLIB_TESTS_CLI_TEST_VALUES_H_
