// The Validations class: value checks, ranges and pattern checks, in
// type-library order.
#include "crvlib/validations.h"
#include "typelib/surface.h"

namespace crvlib::typelib {

ClassInfo ValidationsClass() {
  return GlobalClass(
      "Validations",
      {.clsid = "24CDEC6D-7BA7-4E1B-96E9-EB9D00B88FD7",
       .iid = "BCD7EE2C-3901-46FF-B755-4C1DB83DE47E"},
      "Value checks, ranges and pattern checks of user input.",
      {
          CRV_METHOD(
              Validations, BooleanCheck,
              "Returns True if the value is a Boolean word: 0, 1, -1, T, F, Y, N, TRUE, FALSE, "
              "YES, NO, ON, OFF, ACTIVE or INACTIVE, in any case. An empty value counts as 0.",
              In("Value")),
          CRV_METHOD(
              Validations, CurrencyCheck,
              "Returns True if the value could be a currency amount: it holds at least one digit "
              "and no letter.",
              ByRef("Value")),
          CRV_METHOD(Validations, DateCheck,
                     "Returns True if the value converts to a date. A full stop may "
                     "stand for the date separator.",
                     ByRef("Value")),
          CRV_METHOD(Validations, TimeCheck, "Returns True if the value converts to a time.",
                     ByRef("Value")),
          CRV_METHOD(Validations, IsNum,
                     "Returns True if the value is not empty and holds only the digits 0 "
                     "to 9 and full stops.",
                     ByRef("Value")),
          CRV_METHOD(
              Validations, PercentCheck,
              "Returns True if the value could be a percentage: digits, signs and full stops, "
              "at least one digit, and at most one percent sign.",
              ByRef("Value")),
          CRV_METHOD(Validations, RangeDate,
                     "Returns True if the date lies between the lower and the upper "
                     "bound, both included. A full stop in the value may stand for "
                     "the date separator.",
                     ByRef("Value"), ByRef("LowerBound"), ByRef("UpperBound")),
          CRV_METHOD(Validations, RangeNum,
                     "Compares a number with a lower and an upper bound as long "
                     "integers. Always returns False.",
                     ByRef("Value"), ByRef("LowerBound"), ByRef("UpperBound")),
          CRV_METHOD(Validations, RangeTime,
                     "Returns True if the time lies between the lower and the upper "
                     "bound, both included.",
                     ByRef("Value"), ByRef("LowerBound"), ByRef("UpperBound")),
          CRV_METHOD(Validations, IsValid,
                     "Returns True if the regular expression matches the value. Of the "
                     "match options only vxIgnoreCase takes effect.",
                     ByRef("Value"), ByRef("RegexPattern"),
                     Optional("MatchOptions", vxNoOptionsSet)),
          CRV_METHOD(Validations, EmailAddressCheck,
                     "Returns True if the value begins with an e-mail address.", ByRef("Value")),
          CRV_METHOD(Validations, Matches,
                     "Returns True if the whole value fits the picture pattern: counts "
                     "followed by N (digits), A (letters) or X (any character), 0 for "
                     "any number of them, quoted literals and exact characters.",
                     ByRef("Value"), ByRef("Pattern")),
      });
}

}  // namespace crvlib::typelib
