// What a call raised, for one-line expectations on errors:
//   EXPECT_EQ(RaisedBy([] { Functions::Swap(u"a", 256, 45); }),
//             Raised(5, u"CRVLIB.Functions::Swap"));
//   EXPECT_EQ(RaisedBy([] { ParseDouble(u"x"); }).number, 13);
// A call that returns normally raised {0, ""}.
#ifndef CRVLIB_TESTS_TESTING_RAISED_H_
#define CRVLIB_TESTS_TESTING_RAISED_H_

#include <cstdint>
#include <functional>
#include <ostream>

#include "crvlib/error.h"

namespace crvlib {

struct Raised {
  int32_t number = 0;
  String source;
  Raised() = default;
  Raised(int32_t n, String s) : number(n), source(std::move(s)) {}
  friend bool operator==(const Raised& a, const Raised& b) {
    return a.number == b.number && a.source == b.source;
  }
  friend std::ostream& operator<<(std::ostream& os, const Raised& r) {
    return os << r.number << " from \"" << r.source << "\"";
  }
};

// The number and source of the Error `fn` raises; `description`, when given,
// receives its description.
inline Raised RaisedBy(const std::function<void()>& fn, String* description = nullptr) {
  try {
    fn();
  } catch (const Error& e) {
    if (description) *description = e.Description();
    return {e.Number(), e.Source()};
  }
  return {};
}

}  // namespace crvlib

#endif  // CRVLIB_TESTS_TESTING_RAISED_H_
