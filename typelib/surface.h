// The public surface of crvlib as one table: the type library's identity,
// every class with its identifiers (GUIDs), its members in interface order,
// their parameters (name, type, by-reference flag, optional default),
// results, help strings and DISPIDs, and the enumerations. It is the one
// description of the API: crv calls routines through it and prints it (`crv
// list`), the type library description is generated from it (`crv idl`), and
// the automation server is driven by it.
//
// Adding a class: write typelib/surface_<class>.cpp defining a function that
// returns its ClassInfo, and add that function to the list in surface.cpp.
// Its identifiers are chosen once, when the class is added, and never change.
//
//   ClassInfo FunctionsClass() {
//     return GlobalClass("Functions", {.clsid = "7CE37537-…", .iid = "1B71CBFF-…"},
//         "Dynamic string arrays and string utilities.", {
//       CRV_METHOD(Functions, ExtractElement, "Returns one element …",
//                  ByRef("ArrayValue"), ByRef("Delimiter"), In("Position")),
//       CRV_METHOD(Functions, LocateElement, "…",
//                  ByRef("ArrayValue"), ByRef("Element"), ByRef("Delimiter"), In("Position"),
//                  Optional("SearchType", vxExactMatch), Optional("CaseType", vxCaseSensitive)),
//     });
//   }
//
// Adding a member: one line naming the C++ class and function, the help
// string and, per parameter, its name and the type library's flags (In,
// ByRef, Optional, OptionalByRef, ParamArray). The macros write the
// function's name once, so the member's name and the function it calls
// cannot part; the member keeps the C++ name (`function`) for the test that
// compares the table with the public headers. Types, result and by-reference
// write-back come from the C++ signature: `const String&`/`String` is read,
// `String&` is written back, likewise `bool&`, `Variant&`, `StringArray&`;
// `const VariantArray&` is a ParamArray; vx…Enum types show under their enum
// name; handle classes (with an ObjectTraits specialization below) are
// objects. Creatable classes bind member functions of their handle class and
// use CreatableClass<Handle>; a property's get and let share a DISPID and
// its one help string (the let names its setter: CRV_PROPERTY_LET(C, Value,
// SetValue, ByRef("NewValue"))); `.Default()` makes the default member
// (DISPID 0). Every other DISPID is computed from the member order.
#ifndef CRVLIB_TYPELIB_SURFACE_H_
#define CRVLIB_TYPELIB_SURFACE_H_

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "crvlib/dynamic_string.h"
#include "crvlib/enums.h"
#include "crvlib/shared_string.h"
#include "crvlib/variant.h"

namespace crvlib::typelib {

// A call the table cannot make: unknown member, wrong argument count or type.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// ---------------------------------------------------------------------------
// Objects

// What the table knows about the C++ handle class behind a class's objects.
struct ObjectType {
  std::string_view class_name;
  // The address of the object a handle refers to: two handles refer to one
  // object exactly when their identities are equal, and it can be hashed.
  const void* (*identity)(const void* handle);
};

// Specialize for each handle class: kName is the automation class name and
// Identity gives the address of the object a handle refers to (the handle's
// Is() compares the same thing). The handle must be copyable (copies refer to
// one object) and offer `bool IsNothing() const`.
template <class T>
struct ObjectTraits;
template <>
struct ObjectTraits<DynamicString> {
  static constexpr std::string_view kName = "DynamicString";
  static const void* Identity(const DynamicString& h) { return &h.impl(); }
};
template <>
struct ObjectTraits<SharedString> {
  static constexpr std::string_view kName = "SharedString";
  static const void* Identity(const SharedString& h) { return &h.impl(); }
};

template <class T>
concept Handle = requires(const T& h) {
  ObjectTraits<T>::kName;
  { ObjectTraits<T>::Identity(h) } -> std::same_as<const void*>;
};

template <Handle T>
const ObjectType& ObjectTypeOf() {
  static const ObjectType type{ObjectTraits<T>::kName, [](const void* handle) {
                                 return ObjectTraits<T>::Identity(*static_cast<const T*>(handle));
                               }};
  return type;
}

// A counted reference to an object of some class; a null handle is Nothing.
struct Object {
  const ObjectType* type = nullptr;  // null only for an untyped Nothing
  std::shared_ptr<void> handle;      // holds a copy of the handle

  bool IsNothing() const { return handle == nullptr; }
  std::string_view ClassName() const { return type ? type->class_name : std::string_view(); }
  // The object referred to, null for Nothing: equal for two references to
  // one object.
  const void* Identity() const { return IsNothing() ? nullptr : type->identity(handle.get()); }
  // True for two references to one object, or for two Nothings.
  friend bool operator==(const Object& a, const Object& b) { return a.Identity() == b.Identity(); }
};

template <Handle T>
Object MakeObject(T handle) {
  if (handle.IsNothing()) return Object{&ObjectTypeOf<T>(), nullptr};
  return Object{&ObjectTypeOf<T>(), std::make_shared<T>(std::move(handle))};
}

// A value crossing the boundary. Scalars and strings are Variants; typed
// parameters keep the Variant alternative of their type (a Long parameter
// holds a Variant of type Long).
using Value = std::variant<Variant, StringArray, VariantArray, Object>;

// ---------------------------------------------------------------------------
// Enumerations

template <class E>
struct EnumTraits;
#define CRVLIB_TYPELIB_ENUM_TRAITS_(E)            \
  template <>                                     \
  struct EnumTraits<E> {                          \
    static constexpr std::string_view kName = #E; \
  };
CRVLIB_ENUMERATIONS(CRVLIB_TYPELIB_ENUM_TRAITS_)
#undef CRVLIB_TYPELIB_ENUM_TRAITS_

template <class E>
concept Enumeration = std::is_enum_v<E> && requires {
  EnumTraits<E>::kName;
};

struct EnumMember {
  std::string name;  // also its help string: every member's help is its own name
  int32_t value;
};

struct EnumInfo {
  std::string name;
  std::vector<EnumMember> members;  // in declaration order

  // The member with `name` (ASCII case ignored), or null.
  const EnumMember* Find(std::string_view name) const;
  // The first member with `value`, or null.
  const EnumMember* Find(int32_t value) const;
};

// Every enumeration of the library, in declaration order.
const std::vector<EnumInfo>& Enumerations();
const EnumInfo* FindEnum(std::string_view name);

// ---------------------------------------------------------------------------
// Members and classes

enum class TypeKind {
  kVoid,
  kString,
  kLong,
  kInteger,
  kBoolean,
  kDouble,
  kCurrency,
  kDate,
  kVariant,
  kStringArray,  // by reference, any lower bound
  kParamArray,   // the trailing arguments as a Variant array, lower bound 0
  kObject,
};

struct TypeInfo {
  TypeKind kind = TypeKind::kVoid;
  std::string name;  // "String", "Long", "vxCaseEnum", "String()", "DynamicString"

  // For a Long typed with an enumeration, that enumeration.
  const EnumInfo* Enum() const;
};

struct ParamInfo {
  std::string name;
  TypeInfo type;
  bool by_ref = false;  // the type library's [in,out]
  bool optional = false;
  Value default_value;  // when optional (a ParamArray is optional with no default)
  // The routine writes the parameter (its C++ type is a non-const
  // reference), so the caller gets a new value back. Only a by-reference
  // parameter can be written; most are read only.
  bool written = false;
};

enum class MemberKind { kMethod, kPropertyGet, kPropertyLet };

// Calls the routine: `self` is the object for a creatable class (null for a
// global one); `args` holds one value per parameter, already of the
// parameter's type. By-reference parameters are written back into `args`.
// Library failures leave as crvlib::Error.
using Thunk = Value (*)(const Object* self, std::span<Value> args);

struct MemberInfo {
  std::string name;
  MemberKind kind = MemberKind::kMethod;
  int32_t dispid = 0;
  bool is_default = false;
  std::string help;  // a property's let carries its get's
  TypeInfo result;
  std::vector<ParamInfo> params;
  Thunk invoke = nullptr;
  const ObjectType* self_type = nullptr;  // the handle class of a member function
  // The C++ function the member calls, as "Class::Function"; empty for a
  // member bound without the CRV_ macros (test tables).
  std::string function;

  // A remark for users on what the help string leaves unsaid (a routine
  // that may never return), shown by `crv list`; not in the type library.
  std::string note;

  // Marks the class's default member (DISPID 0).
  MemberInfo Default() && {
    is_default = true;
    return std::move(*this);
  }
  // Adds the remark.
  MemberInfo Note(std::string text) && {
    note = std::move(text);
    return std::move(*this);
  }
  // Records the C++ function; the CRV_ macros call it.
  MemberInfo Calls(std::string cpp_name) && {
    function = std::move(cpp_name);
    return std::move(*this);
  }
};

enum class ClassKind { kGlobal, kCreatable };

// A class's identifiers, as registry-format GUIDs without braces: the class
// (CLSID) and its dual interface `_<Class>` (IID).
struct ClassIds {
  std::string clsid;
  std::string iid;
};

struct ClassInfo {
  std::string name;
  ClassKind kind = ClassKind::kGlobal;
  ClassIds ids;
  std::string help;
  std::vector<MemberInfo> members;  // interface order
  Object (*factory)() = nullptr;    // a new object of a creatable class

  // The member `name` of `kind` (ASCII case ignored), or null. A property is
  // found by kMethod as well, as its get.
  const MemberInfo* Find(std::string_view name, MemberKind kind) const;
};

// The type library's own attributes.
struct LibraryInfo {
  std::string name;
  std::string guid;  // the library identifier (LIBID)
  int major_version = 0;
  int minor_version = 0;
  int32_t lcid = 0;
  std::string help;
  std::string help_file;
  std::string server_file;  // the in-process server, without the platform's extension
  // The class of the message catalogue the library creates at start-up; it
  // is a component of its own, not a class of this library.
  std::string message_catalogue_clsid;
};

// A set of classes: the shipped table, or that plus test classes.
struct Surface {
  LibraryInfo library;
  std::vector<ClassInfo> classes;

  const ClassInfo* FindClass(std::string_view name) const;  // ASCII case ignored
};

// The library's classes in type-library order.
const Surface& ShippedSurface();

// A DISPID as the type library shows it: "0x60030000".
std::string DispidText(int32_t dispid);

// Methods are 0x6003xxxx, properties 0x6803xxxx; the low part numbers the
// members in reverse order (the last is 0), a property's get and let sharing
// one number. Default members are 0 and keep their place in the count.
void NumberMembers(std::vector<MemberInfo>& members);

// Class builders; both number the members, give each property let its get's
// help string, and check that each member binds a function of the right kind
// (static for a global class, a member function of T for a creatable one).
ClassInfo GlobalClass(std::string name, ClassIds ids, std::string help,
                      std::vector<MemberInfo> members);
template <Handle T>
ClassInfo CreatableClass(ClassIds ids, std::string help, std::vector<MemberInfo> members);

// Arranges `count` arguments for a call of `member` (named `what` in
// messages): converts each with `convert`, called with its parameter (a
// Variant parameter for each item of a ParamArray) and its index; gives
// omitted trailing optional parameters their defaults; collects the
// ParamArray. Throws UsageError for a wrong count or a failed conversion,
// naming the argument.
std::vector<Value> BindArguments(std::string_view what, const MemberInfo& member, size_t count,
                                 const std::function<Value(const ParamInfo&, size_t)>& convert);

// ASCII case-insensitive name comparison, as automation matches names.
bool SameName(std::string_view a, std::string_view b);

// ---------------------------------------------------------------------------
// Parameter declarations

struct InDecl {
  const char* name;
};
struct ByRefDecl {
  const char* name;
};
template <class D, bool kByRef>
struct OptionalDecl {
  const char* name;
  D value;
};
struct ParamArrayDecl {
  const char* name;
};

constexpr InDecl In(const char* name) {
  return {name};
}
constexpr ByRefDecl ByRef(const char* name) {
  return {name};
}
template <class D>
constexpr OptionalDecl<D, false> Optional(const char* name, D value) {
  return {name, value};
}
template <class D>
constexpr OptionalDecl<D, true> OptionalByRef(const char* name, D value) {
  return {name, value};
}
constexpr ParamArrayDecl ParamArray(const char* name) {
  return {name};
}

// ---------------------------------------------------------------------------
// Binding machinery

namespace internal {

// Error 91, as automation raises it for a call through a reference to no
// object.
[[noreturn]] void RaiseObjectNotSet();
[[noreturn]] void ThrowTableError(std::string message);

TypeInfo MakeType(TypeKind kind, std::string_view name);

// Conversion between one C++ type and its Value form.
template <class T>
struct Convert;

template <>
struct Convert<String> {
  static TypeInfo Type() { return MakeType(TypeKind::kString, "String"); }
  static const String& From(const Value& v) { return std::get<Variant>(v).AsString(); }
  static Value To(String s) { return Variant(std::move(s)); }
};
template <>
struct Convert<int32_t> {
  static TypeInfo Type() { return MakeType(TypeKind::kLong, "Long"); }
  static int32_t From(const Value& v) { return std::get<Variant>(v).AsLong(); }
  static Value To(int32_t x) { return Variant(x); }
};
template <>
struct Convert<int16_t> {
  static TypeInfo Type() { return MakeType(TypeKind::kInteger, "Integer"); }
  static int16_t From(const Value& v) { return std::get<Variant>(v).AsInteger(); }
  static Value To(int16_t x) { return Variant(x); }
};
template <>
struct Convert<bool> {
  static TypeInfo Type() { return MakeType(TypeKind::kBoolean, "Boolean"); }
  static bool From(const Value& v) { return std::get<Variant>(v).AsBoolean(); }
  static Value To(bool x) { return Variant(x); }
};
template <>
struct Convert<double> {
  static TypeInfo Type() { return MakeType(TypeKind::kDouble, "Double"); }
  static double From(const Value& v) { return std::get<Variant>(v).AsDouble(); }
  static Value To(double x) { return Variant(x); }
};
template <>
struct Convert<Currency> {
  static TypeInfo Type() { return MakeType(TypeKind::kCurrency, "Currency"); }
  static Currency From(const Value& v) { return std::get<Variant>(v).AsCurrency(); }
  static Value To(Currency x) { return Variant(x); }
};
template <>
struct Convert<Date> {
  static TypeInfo Type() { return MakeType(TypeKind::kDate, "Date"); }
  static Date From(const Value& v) { return std::get<Variant>(v).AsDate(); }
  static Value To(Date x) { return Variant(x); }
};
template <>
struct Convert<Variant> {
  static TypeInfo Type() { return MakeType(TypeKind::kVariant, "Variant"); }
  static const Variant& From(const Value& v) { return std::get<Variant>(v); }
  static Value To(Variant x) { return x; }
};
template <>
struct Convert<StringArray> {
  static TypeInfo Type() { return MakeType(TypeKind::kStringArray, "String()"); }
  static const StringArray& From(const Value& v) { return std::get<StringArray>(v); }
  static Value To(StringArray x) { return x; }
};
template <>
struct Convert<VariantArray> {
  static TypeInfo Type() { return MakeType(TypeKind::kParamArray, "Variant()"); }
  static const VariantArray& From(const Value& v) { return std::get<VariantArray>(v); }
  static Value To(VariantArray x) { return x; }
};
template <Enumeration E>
struct Convert<E> {
  static TypeInfo Type() { return MakeType(TypeKind::kLong, EnumTraits<E>::kName); }
  static E From(const Value& v) { return static_cast<E>(std::get<Variant>(v).AsLong()); }
  static Value To(E x) { return Variant(static_cast<int32_t>(x)); }
};
template <Handle T>
struct Convert<T> {
  static TypeInfo Type() { return MakeType(TypeKind::kObject, ObjectTraits<T>::kName); }
  // An object parameter needs an object; Nothing is error 91.
  static T From(const Value& v) {
    const Object& o = std::get<Object>(v);
    if (o.IsNothing()) RaiseObjectNotSet();
    return *static_cast<const T*>(o.handle.get());
  }
  static Value To(T x) { return MakeObject(std::move(x)); }
};

// One parameter of the C++ signature.
template <class P>
struct Param {
  using Bare = std::remove_cvref_t<P>;
  // A non-const lvalue reference: the routine writes it; the caller gets it back.
  static constexpr bool kWritten =
      std::is_lvalue_reference_v<P> && !std::is_const_v<std::remove_reference_t<P>>;
  static constexpr bool kParamArray = std::is_same_v<Bare, VariantArray>;
  static_assert(!kParamArray || (std::is_lvalue_reference_v<P> && !kWritten),
                "a ParamArray is bound as const VariantArray&");
  // How a call holds the argument: a parameter the routine only reads
  // refers to the argument where Convert gives a reference (strings, arrays
  // and Variants are not copied); a written one is a copy that is written
  // back after the call.
  using Held = std::conditional_t<
      !kWritten && std::is_reference_v<decltype(Convert<Bare>::From(std::declval<const Value&>()))>,
      const Bare&, Bare>;
};

// The signature of the bound function.
template <class F>
struct Signature;
template <class R, class... A>
struct Signature<R (*)(A...)> {
  using Self = void;
  using Result = R;
  using Args = std::tuple<A...>;
};
template <class R, class... A>
struct Signature<R (*)(A...) noexcept> : Signature<R (*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Self = C;
  using Result = R;
  using Args = std::tuple<A...>;
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) noexcept> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...)> {};

template <class Self>
Self& SelfOf(const Object* self) {
  if (!self || self->IsNothing()) RaiseObjectNotSet();
  if (self->type != &ObjectTypeOf<Self>()) ThrowTableError("object of the wrong class");
  return *static_cast<Self*>(self->handle.get());
}

template <class P>
void WriteBack(Value& arg, const typename Param<P>::Bare& held) {
  if constexpr (Param<P>::kWritten) arg = Convert<typename Param<P>::Bare>::To(held);
}

template <auto Fn, size_t... I>
Value InvokeWith(const Object* self, std::span<Value> args, std::index_sequence<I...>) {
  using Sig = Signature<decltype(Fn)>;
  using Args = typename Sig::Args;
  using R = typename Sig::Result;
  // The held values keep each argument alive for the call and receive what
  // the routine writes into its reference parameters.
  std::tuple<typename Param<std::tuple_element_t<I, Args>>::Held...> held{
      Convert<typename Param<std::tuple_element_t<I, Args>>::Bare>::From(args[I])...};
  auto call = [&]() -> decltype(auto) {
    if constexpr (std::is_void_v<typename Sig::Self>) {
      return Fn(std::get<I>(held)...);
    } else {
      return (SelfOf<typename Sig::Self>(self).*Fn)(std::get<I>(held)...);
    }
  };
  if constexpr (std::is_void_v<R>) {
    call();
    (WriteBack<std::tuple_element_t<I, Args>>(args[I], std::get<I>(held)), ...);
    return Variant();
  } else {
    Value result = Convert<std::remove_cvref_t<R>>::To(call());
    (WriteBack<std::tuple_element_t<I, Args>>(args[I], std::get<I>(held)), ...);
    return result;
  }
}

template <auto Fn>
Value Invoke(const Object* self, std::span<Value> args) {
  using Args = typename Signature<decltype(Fn)>::Args;
  return InvokeWith<Fn>(self, args, std::make_index_sequence<std::tuple_size_v<Args>>{});
}

template <class P>
ParamInfo MakeParam(InDecl decl) {
  static_assert(!Param<P>::kWritten, "the routine writes this parameter: declare it ByRef");
  static_assert(!Param<P>::kParamArray, "declare a ParamArray with ParamArray(name)");
  return {decl.name, Convert<typename Param<P>::Bare>::Type(), false, false, {}};
}
template <class P>
ParamInfo MakeParam(ByRefDecl decl) {
  static_assert(!Param<P>::kParamArray, "declare a ParamArray with ParamArray(name)");
  return {decl.name, Convert<typename Param<P>::Bare>::Type(), true, false, {}, Param<P>::kWritten};
}
template <class P, class D, bool kByRef>
ParamInfo MakeParam(OptionalDecl<D, kByRef> decl) {
  using Bare = typename Param<P>::Bare;
  static_assert(kByRef || !Param<P>::kWritten,
                "the routine writes this parameter: declare it OptionalByRef");
  static_assert(!Param<P>::kParamArray, "declare a ParamArray with ParamArray(name)");
  static_assert(std::is_constructible_v<Bare, D>, "the default does not fit the parameter");
  return {
      decl.name,         Convert<Bare>::Type(), kByRef, true, Convert<Bare>::To(Bare(decl.value)),
      Param<P>::kWritten};
}
template <class P>
ParamInfo MakeParam(ParamArrayDecl decl) {
  static_assert(Param<P>::kParamArray, "a ParamArray binds const VariantArray&");
  return {decl.name, Convert<VariantArray>::Type(), false, true, VariantArray{}};
}

template <class Args, size_t... I, class... Decls>
void AddParams(std::vector<ParamInfo>& params, std::index_sequence<I...>, Decls... decls) {
  (params.push_back(MakeParam<std::tuple_element_t<I, Args>>(decls)), ...);
}

// Checks the order of the flags: optional parameters only after the required
// ones, a ParamArray only last.
void CheckParamOrder(const std::string& member, const std::vector<ParamInfo>& params);

template <auto Fn, class... Decls>
MemberInfo Bind(MemberKind kind, std::string name, std::string help, Decls... decls) {
  using Sig = Signature<decltype(Fn)>;
  using Args = typename Sig::Args;
  static_assert(sizeof...(Decls) == std::tuple_size_v<Args>,
                "give one declaration (In, ByRef, Optional, ...) per parameter of the routine");
  MemberInfo m;
  m.name = std::move(name);
  m.kind = kind;
  m.help = std::move(help);
  using R = typename Sig::Result;
  if constexpr (std::is_void_v<R>) {
    m.result = MakeType(TypeKind::kVoid, "");
  } else {
    m.result = Convert<std::remove_cvref_t<R>>::Type();
  }
  AddParams<Args>(m.params, std::index_sequence_for<Decls...>{}, decls...);
  CheckParamOrder(m.name, m.params);
  m.invoke = &Invoke<Fn>;
  if constexpr (!std::is_void_v<typename Sig::Self>) {
    m.self_type = &ObjectTypeOf<typename Sig::Self>();
  }
  return m;
}

// Numbers the members, gives each property let its get's help string and
// checks the class: every member binds a function of the right kind, no name
// is declared twice, a let takes the value and returns nothing.
void FinishClass(ClassInfo& c, const ObjectType* self_type);

}  // namespace internal

// The table's type for the C++ type T: TypeOf<int32_t>() is Long,
// TypeOf<Variant>() Variant.
template <class T>
TypeInfo TypeOf() {
  return internal::Convert<T>::Type();
}

template <auto Fn, class... Decls>
MemberInfo Method(std::string name, std::string help, Decls... decls) {
  return internal::Bind<Fn>(MemberKind::kMethod, std::move(name), std::move(help), decls...);
}
template <auto Fn, class... Decls>
MemberInfo PropertyGet(std::string name, std::string help, Decls... decls) {
  return internal::Bind<Fn>(MemberKind::kPropertyGet, std::move(name), std::move(help), decls...);
}
// A let has no help string of its own: it shows its get's.
template <auto Fn, class... Decls>
MemberInfo PropertyLet(std::string name, Decls... decls) {
  return internal::Bind<Fn>(MemberKind::kPropertyLet, std::move(name), "", decls...);
}

template <Handle T>
ClassInfo CreatableClass(ClassIds ids, std::string help, std::vector<MemberInfo> members) {
  ClassInfo c{std::string(ObjectTraits<T>::kName),
              ClassKind::kCreatable,
              std::move(ids),
              std::move(help),
              std::move(members),
              [] { return MakeObject(T()); }};
  internal::FinishClass(c, &ObjectTypeOf<T>());
  return c;
}

// The binding macros: each names the C++ function once and records it.
//   CRV_METHOD(Functions, Field, "Returns …", ByRef("Value"), …)
//   CRV_METHOD_OVERLOAD(Conversions, BooleanOut, BooleanOutWithFormat, "…", …)
//       binds the overload of type BooleanOutWithFormat (a pointer type)
//   CRV_PROPERTY_GET(DynamicString, Value, "Returns or sets …")
//   CRV_PROPERTY_LET(DynamicString, Value, SetValue, ByRef("NewValue"))
#define CRV_METHOD(Class, Name, ...) \
  ::crvlib::typelib::Method<&Class::Name>(#Name, __VA_ARGS__).Calls(#Class "::" #Name)
#define CRV_METHOD_OVERLOAD(Class, Name, Type, ...)                              \
  ::crvlib::typelib::Method<static_cast<Type>(&Class::Name)>(#Name, __VA_ARGS__) \
      .Calls(#Class "::" #Name)
#define CRV_PROPERTY_GET(Class, Name, ...) \
  ::crvlib::typelib::PropertyGet<&Class::Name>(#Name, __VA_ARGS__).Calls(#Class "::" #Name)
#define CRV_PROPERTY_LET(Class, Name, Setter, ...)                                 \
  ::crvlib::typelib::PropertyLet<&Class::Setter>(#Name __VA_OPT__(, ) __VA_ARGS__) \
      .Calls(#Class "::" #Setter)

}  // namespace crvlib::typelib

#endif  // CRVLIB_TYPELIB_SURFACE_H_
