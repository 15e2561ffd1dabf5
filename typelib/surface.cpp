// The library's attributes, the registry of classes, the DISPID numbering
// and the checks every class table passes when it is built.
#include "typelib/surface.h"

#include <algorithm>
#include <cstdio>

#include "crvlib/error.h"

namespace crvlib::typelib {

// Each class's table lives in typelib/surface_<class>.cpp. To add a class,
// declare its function here and list it below, in type-library order.
ClassInfo ConstantsClass();
ClassInfo ConversionsClass();
ClassInfo ValidationsClass();
ClassInfo FunctionsClass();
ClassInfo DLLRoutinesClass();
ClassInfo DynamicStringClass();
ClassInfo SharedStringClass();

const Surface& ShippedSurface() {
  // Filled member by member: GCC 12 at -O3 takes the library's strings in a
  // braced initializer of the whole Surface for possibly uninitialized.
  static const Surface surface = [] {
    Surface s;
    s.library = {
        .name = "crvlib",
        .guid = "EB81C65E-C7F0-44B5-A2F4-EA253F0722A2",
        .major_version = 1,
        .minor_version = 0,
        .lcid = 1033,
        .help = "Corvane Tessel 2005 Global Procedure Library",
        .help_file = "crvlib.chm",
        .server_file = "crvlib30",
        .message_catalogue_clsid = "3B010ECC-A38C-463C-BAB7-C976689E2891",
    };
    s.classes = {
        ConstantsClass(),   ConversionsClass(),   ValidationsClass(),  FunctionsClass(),
        DLLRoutinesClass(), DynamicStringClass(), SharedStringClass(),
    };
    return s;
  }();
  return surface;
}

bool SameName(std::string_view a, std::string_view b) {
  auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                            [&](char x, char y) { return lower(x) == lower(y); });
}

const ClassInfo* Surface::FindClass(std::string_view name) const {
  for (const ClassInfo& c : classes) {
    if (SameName(c.name, name)) return &c;
  }
  return nullptr;
}

const MemberInfo* ClassInfo::Find(std::string_view name, MemberKind kind) const {
  const MemberInfo* get = nullptr;
  for (const MemberInfo& m : members) {
    if (!SameName(m.name, name)) continue;
    if (m.kind == kind) return &m;
    if (kind == MemberKind::kMethod && m.kind == MemberKind::kPropertyGet) get = &m;
  }
  return get;
}

const EnumMember* EnumInfo::Find(std::string_view name) const {
  for (const EnumMember& m : members) {
    if (SameName(m.name, name)) return &m;
  }
  return nullptr;
}

const EnumMember* EnumInfo::Find(int32_t value) const {
  for (const EnumMember& m : members) {
    if (m.value == value) return &m;
  }
  return nullptr;
}

const EnumInfo* FindEnum(std::string_view name) {
  for (const EnumInfo& e : Enumerations()) {
    if (SameName(e.name, name)) return &e;
  }
  return nullptr;
}

const EnumInfo* TypeInfo::Enum() const {
  return kind == TypeKind::kLong && name != "Long" ? FindEnum(name) : nullptr;
}

std::string DispidText(int32_t dispid) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "0x%08X", static_cast<unsigned>(dispid));
  return buf;
}

void NumberMembers(std::vector<MemberInfo>& members) {
  // The distinct names in order of first appearance: a get and a let of one
  // property count once.
  std::vector<std::string_view> names;
  auto position = [&](std::string_view name) {
    return std::find_if(names.begin(), names.end(),
                        [&](std::string_view n) { return SameName(n, name); });
  };
  for (const MemberInfo& m : members) {
    if (position(m.name) == names.end()) names.push_back(m.name);
  }
  for (MemberInfo& m : members) {
    auto index = position(m.name) - names.begin();
    auto low = static_cast<int32_t>(names.size() - 1 - static_cast<size_t>(index));
    int32_t base = m.kind == MemberKind::kMethod ? 0x60030000 : 0x68030000;
    m.dispid = m.is_default ? 0 : base + low;
  }
}

ClassInfo GlobalClass(std::string name, ClassIds ids, std::string help,
                      std::vector<MemberInfo> members) {
  ClassInfo c{std::move(name), ClassKind::kGlobal, std::move(ids),
              std::move(help), std::move(members), nullptr};
  internal::FinishClass(c, nullptr);
  return c;
}

std::vector<Value> BindArguments(std::string_view what, const MemberInfo& member, size_t count,
                                 const std::function<Value(const ParamInfo&, size_t)>& convert) {
  const std::vector<ParamInfo>& params = member.params;
  bool has_param_array = !params.empty() && params.back().type.kind == TypeKind::kParamArray;
  size_t fixed = params.size() - (has_param_array ? 1 : 0);
  size_t required = 0;
  while (required < fixed && !params[required].optional) ++required;
  if (count < required || (count > fixed && !has_param_array)) {
    std::string takes;
    if (has_param_array) {
      takes = "at least " + std::to_string(required);
    } else if (fixed == 0) {
      takes = "no";
    } else {
      takes = std::to_string(required) + (fixed > required ? " to " + std::to_string(fixed) : "");
    }
    size_t most = has_param_array ? required : fixed;
    throw UsageError(std::string(what) + " takes " + takes +
                     (most == 1 ? " argument" : " arguments") + ", got " + std::to_string(count));
  }
  auto converted = [&](const ParamInfo& p, size_t i) {
    try {
      return convert(p, i);
    } catch (const UsageError& e) {
      throw UsageError(std::string(what) + " argument " + std::to_string(i + 1) + " (" + p.name +
                       "): " + e.what());
    }
  };
  std::vector<Value> args;
  args.reserve(params.size());
  for (size_t i = 0; i < fixed; ++i) {
    args.push_back(i < count ? converted(params[i], i) : params[i].default_value);
  }
  if (has_param_array) {
    ParamInfo item{params.back().name, TypeOf<Variant>(), false, false, {}};
    VariantArray rest;
    for (size_t i = fixed; i < count; ++i)
      rest.items.push_back(std::get<Variant>(converted(item, i)));
    args.push_back(std::move(rest));
  }
  return args;
}

namespace internal {

void RaiseObjectNotSet() {
  throw Error::Runtime(91);
}

void ThrowTableError(std::string message) {
  throw std::logic_error("member table: " + message);
}

TypeInfo MakeType(TypeKind kind, std::string_view name) {
  return TypeInfo{kind, std::string(name)};
}

void CheckParamOrder(const std::string& member, const std::vector<ParamInfo>& params) {
  bool optional_seen = false;
  for (size_t i = 0; i < params.size(); ++i) {
    const ParamInfo& p = params[i];
    if (p.type.kind == TypeKind::kParamArray && i + 1 != params.size()) {
      ThrowTableError(member + ": the ParamArray must be the last parameter");
    }
    if (!p.optional && optional_seen) {
      ThrowTableError(member + ": required parameter " + p.name + " after an optional one");
    }
    optional_seen = optional_seen || p.optional;
  }
}

void FinishClass(ClassInfo& c, const ObjectType* self_type) {
  NumberMembers(c.members);
  for (MemberInfo& let : c.members) {
    if (let.kind != MemberKind::kPropertyLet) continue;
    if (const MemberInfo* get = c.Find(let.name, MemberKind::kPropertyGet)) let.help = get->help;
  }
  for (size_t i = 0; i < c.members.size(); ++i) {
    const MemberInfo& m = c.members[i];
    if (m.self_type != self_type) {
      ThrowTableError(c.name + "." + m.name +
                      (self_type ? " must bind a member function of the class's handle"
                                 : " must bind a static function"));
    }
    if (m.kind == MemberKind::kPropertyLet &&
        (m.params.empty() || m.result.kind != TypeKind::kVoid)) {
      ThrowTableError(c.name + "." + m.name +
                      ": a property let takes the value and returns nothing");
    }
    for (size_t j = 0; j < i; ++j) {
      if (SameName(c.members[j].name, m.name) &&
          (c.members[j].kind == m.kind || c.members[j].kind == MemberKind::kMethod ||
           m.kind == MemberKind::kMethod)) {
        ThrowTableError(c.name + "." + m.name + " is declared twice");
      }
    }
  }
}

}  // namespace internal

}  // namespace crvlib::typelib
