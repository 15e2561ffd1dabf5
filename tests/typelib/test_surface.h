// Classes that exist only in the tests: the shipped table plus `Probe`, a
// creatable class with a default property, object results, a Nothing result
// and an array output, and `Tools`, a global class with by-reference
// outputs, a ParamArray, enumeration defaults and a routine that raises.
#ifndef CRVLIB_TESTS_TYPELIB_TEST_SURFACE_H_
#define CRVLIB_TESTS_TYPELIB_TEST_SURFACE_H_

#include <memory>
#include <string>

#include "crvlib/error.h"
#include "typelib/surface.h"

namespace crvlib::typelib::fixtures {

// A counted handle, as DynamicString is: copies refer to one object.
class Probe {
 public:
  static inline int live = 0;  // objects alive now

  Probe() : state_(std::make_shared<State>()) {}

  bool IsNothing() const { return state_ == nullptr; }
  const void* Identity() const { return state_.get(); }

  String Value() const { return state_->value; }
  void SetValue(const String& NewValue) { state_->value = NewValue; }
  Probe Child() {
    Probe c;
    c.state_->parent = state_;
    return c;
  }
  Probe Parent() const { return Probe(state_->parent); }
  Probe Self() { return *this; }
  int32_t Split(StringArray& Items, vxArrayBaseEnum Base) const {
    Items = StringArray{static_cast<int32_t>(Base), {state_->value, state_->value}};
    return 2;
  }

 private:
  struct State {
    State() { ++live; }
    ~State() { --live; }
    String value;
    std::shared_ptr<State> parent;
  };
  explicit Probe(std::shared_ptr<State> s) : state_(std::move(s)) {}
  std::shared_ptr<State> state_;
};

struct Tools {
  // Swaps its two by-reference strings and returns the length of the first.
  static int32_t Swap(String& First, String& Second) {
    std::swap(First, Second);
    return First.Len();
  }
  static String Join(const String& Delimiter, const VariantArray& Items) {
    std::u16string out;
    for (const Variant& v : Items.items) {
      if (!out.empty()) out += Delimiter.view();
      out += v.Type() == VarType::kString ? v.AsString().ToU16() : u"?";
    }
    return String(std::move(out));
  }
  static Variant Echo(const Variant& Value) { return Value; }
  static int32_t Pick(int32_t Base, vxSortOrderEnum Order, bool Negate) {
    int32_t r = Base + static_cast<int32_t>(Order);
    return Negate ? -r : r;
  }
  static int16_t Twice(int16_t Value) { return static_cast<int16_t>(Value * 2); }
  static Currency Cents(Currency Amount) { return Currency::FromScaled(Amount.scaled / 100 * 100); }
  static Date NextDay(Date Day) { return Date{Day.serial + 1}; }
  static double Half(double Value) { return Value / 2; }
  static void Fail(int32_t Number) {
    throw Error(Number, u"CRVLIB.Tools::Fail", u"Invalid procedure call or argument");
  }
  static bool Flip(bool& Flag) {
    Flag = !Flag;
    return Flag;
  }
  static StringArray Pair(const String& Value) { return StringArray{1, {Value, Value}}; }
  static Probe Make(const String& Value) {
    Probe p;
    p.SetValue(Value);
    return p;
  }
  static String ValueOf(Probe Object) { return Object.Value(); }
};

}  // namespace crvlib::typelib::fixtures

namespace crvlib::typelib {
template <>
struct ObjectTraits<fixtures::Probe> {
  static constexpr std::string_view kName = "Probe";
  static const void* Identity(const fixtures::Probe& p) { return p.Identity(); }
};
}  // namespace crvlib::typelib

namespace crvlib::typelib::fixtures {

inline ClassInfo ProbeClass() {
  return CreatableClass<Probe>(
      {}, "A test object.",
      {
          CRV_PROPERTY_GET(Probe, Value, "The text.").Default(),
          CRV_PROPERTY_LET(Probe, Value, SetValue, ByRef("NewValue")).Default(),
          CRV_METHOD(Probe, Child, "A new child."),
          CRV_PROPERTY_GET(Probe, Parent, "The parent, or Nothing."),
          CRV_METHOD(Probe, Self, "This object."),
          CRV_METHOD(Probe, Split, "Two copies of the text.", ByRef("Items"),
                     Optional("Base", vxZeroBased)),
      });
}

inline ClassInfo ToolsClass() {
  return GlobalClass("Tools", {}, "Test routines.",
                     {
                         CRV_METHOD(Tools, Swap, "", ByRef("First"), ByRef("Second")),
                         CRV_METHOD(Tools, Join, "", ByRef("Delimiter"), ParamArray("Items")),
                         CRV_METHOD(Tools, Echo, "", In("Value")),
                         CRV_METHOD(Tools, Pick, "", In("Base"), Optional("Order", vxDescending),
                                    Optional("Negate", false)),
                         CRV_METHOD(Tools, Twice, "", In("Value")),
                         CRV_METHOD(Tools, Cents, "", In("Amount")),
                         CRV_METHOD(Tools, NextDay, "", In("Day")),
                         CRV_METHOD(Tools, Half, "", In("Value")),
                         CRV_METHOD(Tools, Fail, "", In("Number")),
                         CRV_METHOD(Tools, Flip, "", OptionalByRef("Flag", true)),
                         CRV_METHOD(Tools, Pair, "", In("Value")),
                         CRV_METHOD(Tools, Make, "", In("Value")),
                         CRV_METHOD(Tools, ValueOf, "", In("Object")),
                     });
}

inline const Surface& TestSurface() {
  static const Surface surface = [] {
    Surface s = ShippedSurface();
    s.classes.push_back(ProbeClass());
    s.classes.push_back(ToolsClass());
    return s;
  }();
  return surface;
}

// Parameter `index` of the method `member` of the test class `cls`.
inline const ParamInfo& ParamOf(std::string_view cls, std::string_view member, size_t index) {
  return TestSurface().FindClass(cls)->Find(member, MemberKind::kMethod)->params.at(index);
}

}  // namespace crvlib::typelib::fixtures

#endif  // CRVLIB_TESTS_TYPELIB_TEST_SURFACE_H_
