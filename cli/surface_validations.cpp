// The Validations class: value checks, ranges and pattern checks, in
// type-library order.
#include "cli/surface.h"
#include "crvlib/validations.h"

namespace crvlib::cli {

ClassInfo ValidationsClass() {
  using V = Validations;
  return GlobalClass(
      "Validations", "Value checks, ranges and pattern checks of user input.",
      {
          Method<&V::BooleanCheck>(
              "BooleanCheck",
              "Returns True if the value is a Boolean word: 0, 1, -1, T, F, Y, N, TRUE, FALSE, "
              "YES, NO, ON, OFF, ACTIVE or INACTIVE, in any case. An empty value counts as 0.",
              In("Value")),
          Method<&V::CurrencyCheck>(
              "CurrencyCheck",
              "Returns True if the value could be a currency amount: it holds at least one digit "
              "and no letter.",
              ByRef("Value")),
          Method<&V::DateCheck>("DateCheck",
                                "Returns True if the value converts to a date. A full stop may "
                                "stand for the date separator.",
                                ByRef("Value")),
          Method<&V::TimeCheck>("TimeCheck", "Returns True if the value converts to a time.",
                                ByRef("Value")),
          Method<&V::IsNum>("IsNum",
                            "Returns True if the value is not empty and holds only the digits 0 "
                            "to 9 and full stops.",
                            ByRef("Value")),
          Method<&V::PercentCheck>(
              "PercentCheck",
              "Returns True if the value could be a percentage: digits, signs and full stops, "
              "at least one digit, and at most one percent sign.",
              ByRef("Value")),
          Method<&V::RangeDate>("RangeDate",
                                "Returns True if the date lies between the lower and the upper "
                                "bound, both included. A full stop in the value may stand for "
                                "the date separator.",
                                ByRef("Value"), ByRef("LowerBound"), ByRef("UpperBound")),
          Method<&V::RangeNum>("RangeNum",
                               "Compares a number with a lower and an upper bound as long "
                               "integers. Always returns False.",
                               ByRef("Value"), ByRef("LowerBound"), ByRef("UpperBound")),
          Method<&V::RangeTime>("RangeTime",
                                "Returns True if the time lies between the lower and the upper "
                                "bound, both included.",
                                ByRef("Value"), ByRef("LowerBound"), ByRef("UpperBound")),
          Method<&V::IsValid>("IsValid",
                              "Returns True if the regular expression matches the value. Of the "
                              "match options only vxIgnoreCase takes effect.",
                              ByRef("Value"), ByRef("RegexPattern"),
                              Optional("MatchOptions", vxNoOptionsSet)),
          Method<&V::EmailAddressCheck>("EmailAddressCheck",
                                        "Returns True if the value begins with an e-mail address.",
                                        ByRef("Value")),
          Method<&V::Matches>("Matches",
                              "Returns True if the whole value fits the picture pattern: counts "
                              "followed by N (digits), A (letters) or X (any character), 0 for "
                              "any number of them, quoted literals and exact characters.",
                              ByRef("Value"), ByRef("Pattern")),
      });
}

}  // namespace crvlib::cli
