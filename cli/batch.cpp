// The batch session: each line is parsed, checked against the member table,
// converted and run, and every way it can fail ends in an error answer rather
// than an exception leaving the session. Objects live in a name table; a name
// is one counted reference, so releasing it (or ending the session) lets the
// object go.
#include "cli/batch.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

#include "cli/value_json.h"
#include "crvlib/error.h"

namespace crvlib::cli {

namespace {

std::string UsageAnswer(std::string_view message) {
  std::string out = "{\"error\":{\"number\":-1,\"description\":";
  AppendJsonString(out, message);
  out += "}}";
  return out;
}

std::string ErrorAnswer(const Error& e) {
  std::string out = "{\"error\":{\"number\":" + std::to_string(e.Number()) + ",\"source\":";
  AppendJsonString(out, e.Source().view());
  out += ",\"description\":";
  AppendJsonString(out, e.Description().view());
  out += "}}";
  return out;
}

const std::string& StringMember(const Json& request, std::string_view key, std::string* holder) {
  const Json* j = request.Find(key);
  if (j->type != Json::Type::kString || j->string.empty()) {
    throw UsageError("\"" + std::string(key) + "\" must be a non-empty string");
  }
  *holder = String(j->string).ToUtf8();
  return *holder;
}

// Checks that `request` has only the keys of its kind.
void CheckKeys(const Json& request, std::initializer_list<std::string_view> allowed) {
  for (const auto& [key, value] : request.object) {
    bool known = false;
    for (std::string_view a : allowed) known = known || key == a;
    if (!known)
      throw UsageError("unknown key \"" + key + "\" in a \"" + std::string(*allowed.begin()) +
                       "\" request");
  }
}

// Splits "X.Member" at its first dot.
std::pair<std::string_view, std::string_view> SplitTarget(std::string_view target) {
  size_t dot = target.find('.');
  if (dot == std::string_view::npos || dot == 0 || dot + 1 == target.size()) {
    throw UsageError("\"" + std::string(target) + "\" is not CLASS.MEMBER or NAME.MEMBER");
  }
  return {target.substr(0, dot), target.substr(dot + 1)};
}

}  // namespace

std::string BatchSession::Answer(std::string_view line) {
  try {
    std::string error;
    std::optional<Json> request = ParseJson(line, &error);
    if (!request) return UsageAnswer("not valid JSON: " + error);
    if (request->type != Json::Type::kObject) {
      return UsageAnswer(
          "a request is a JSON object with \"call\", \"set\", \"new\" or \"release\"");
    }
    const char* verbs[] = {"call", "set", "new", "release"};
    int found = 0;
    std::string_view verb;
    for (const char* v : verbs) {
      if (request->Find(v)) {
        ++found;
        verb = v;
      }
    }
    if (found != 1) {
      return UsageAnswer("a request has exactly one of \"call\", \"set\", \"new\" and \"release\"");
    }
    if (verb == "call") return Call(*request);
    if (verb == "set") return Set(*request);
    if (verb == "new") return New(*request);
    return Release(*request);
  } catch (const Error& e) {
    return ErrorAnswer(e);
  } catch (const UsageError& e) {
    return UsageAnswer(e.what());
  } catch (const std::bad_alloc&) {
    return UsageAnswer("out of memory");
  } catch (const std::exception& e) {
    return UsageAnswer(e.what());
  }
}

BatchSession::Target BatchSession::FindTarget(std::string_view owner) const {
  Target t;
  if ((t.cls = surface_.FindClass(owner))) {
    if (t.cls->kind == ClassKind::kCreatable) {
      throw UsageError(t.cls->name + " is a creatable class: make an object with {\"new\":\"" +
                       t.cls->name + "\",\"as\":NAME} and call NAME." + "MEMBER");
    }
    return t;
  }
  auto it = names_.find(owner);
  if (it == names_.end()) {
    throw UsageError("there is no class or object named \"" + std::string(owner) + "\"");
  }
  if (it->second.IsNothing()) throw UsageError("\"" + it->first + "\" is Nothing");
  t.cls = surface_.FindClass(it->second.ClassName());
  if (!t.cls) throw UsageError("the class of \"" + it->first + "\" is not in the member table");
  t.self = it->second;
  t.has_self = true;
  return t;
}

void BatchSession::CheckNewName(const std::string& name) const {
  if (name.find('.') != std::string::npos) throw UsageError("an object name has no \".\"");
  if (surface_.FindClass(name)) {
    throw UsageError("\"" + name + "\" is a class name and cannot name an object");
  }
}

void BatchSession::Name(const std::string& name, const Object& object) {
  Unname(name);
  names_.emplace(name, object);
  if (!object.IsNothing()) names_of_[object.Identity()].insert(name);
}

bool BatchSession::Unname(std::string_view name) {
  auto it = names_.find(name);
  if (it == names_.end()) return false;
  if (!it->second.IsNothing()) {
    auto names = names_of_.find(it->second.Identity());
    names->second.erase(it->first);
    if (names->second.empty()) names_of_.erase(names);
  }
  names_.erase(it);
  return true;
}

std::string BatchSession::NameOf(const Object& object) {
  if (auto it = names_of_.find(object.Identity()); it != names_of_.end()) {
    return *it->second.begin();
  }
  std::string name;
  do {
    name = "obj" + std::to_string(++made_up_);
  } while (names_.contains(name));
  Name(name, object);
  return name;
}

std::string BatchSession::Invoke(std::string_view owner, const MemberInfo& member,
                                 const Target& target, std::span<const Json> args,
                                 const std::string* as) {
  std::string what = std::string(owner) + "." + member.name;
  if (as && member.result.kind != TypeKind::kObject) {
    throw UsageError("\"as\" names an object result, and " + what + " returns " +
                     (member.result.kind == TypeKind::kVoid ? "nothing" : member.result.name));
  }
  ObjectResolver resolve = [this](std::string_view name) {
    auto it = names_.find(name);
    if (it == names_.end())
      throw UsageError("there is no object named \"" + std::string(name) + "\"");
    return it->second;
  };
  std::vector<Value> values = BindArguments(
      what, member, args.size(),
      [&](const ParamInfo& p, size_t i) { return ArgumentFromJson(args[i], p, resolve); });
  Value result = member.invoke(target.has_self ? &target.self : nullptr, values);

  if (as) Name(*as, std::get<Object>(result));
  ObjectNamer name_of = [&](const Object& o) { return as ? *as : NameOf(o); };
  std::string out = "{\"result\":";
  if (member.result.kind == TypeKind::kVoid) {
    out += "null";
  } else {
    AppendValueJson(out, result, name_of);
  }
  bool first = true;
  for (size_t i = 0; i < member.params.size(); ++i) {
    if (!member.params[i].by_ref) continue;
    out += first ? ",\"byref\":{" : ",";
    first = false;
    AppendJsonString(out, member.params[i].name);
    out.push_back(':');
    AppendValueJson(out, values[i], [&](const Object& o) { return NameOf(o); });
  }
  if (!first) out.push_back('}');
  out.push_back('}');
  return out;
}

std::string BatchSession::Call(const Json& request) {
  CheckKeys(request, {"call", "args", "as"});
  std::string target_text, as_text;
  auto [owner, name] = SplitTarget(StringMember(request, "call", &target_text));
  const std::string* as = request.Find("as") ? &StringMember(request, "as", &as_text) : nullptr;
  if (as) CheckNewName(*as);
  std::span<const Json> args;
  if (const Json* a = request.Find("args")) {
    if (a->type != Json::Type::kArray) throw UsageError("\"args\" must be an array");
    args = a->array;
  }
  Target target = FindTarget(owner);
  const MemberInfo* member = target.cls->Find(name, MemberKind::kMethod);
  if (!member) {
    if (target.cls->Find(name, MemberKind::kPropertyLet)) {
      throw UsageError(target.cls->name + "." + std::string(name) +
                       " is a write-only property: use {\"set\":…,\"value\":…}");
    }
    throw UsageError(target.cls->name + " has no member \"" + std::string(name) + "\"");
  }
  return Invoke(owner, *member, target, args, as);
}

std::string BatchSession::Set(const Json& request) {
  CheckKeys(request, {"set", "value"});
  std::string target_text;
  auto [owner, name] = SplitTarget(StringMember(request, "set", &target_text));
  const Json* value = request.Find("value");
  if (!value) throw UsageError("a \"set\" request needs a \"value\"");
  Target target = FindTarget(owner);
  const MemberInfo* member = target.cls->Find(name, MemberKind::kPropertyLet);
  if (!member) {
    if (target.cls->Find(name, MemberKind::kMethod)) {
      throw UsageError(target.cls->name + "." + std::string(name) + " cannot be set");
    }
    throw UsageError(target.cls->name + " has no member \"" + std::string(name) + "\"");
  }
  return Invoke(owner, *member, target, std::span<const Json>(value, 1), nullptr);
}

std::string BatchSession::New(const Json& request) {
  CheckKeys(request, {"new", "as"});
  std::string class_text, as_text;
  const std::string& class_name = StringMember(request, "new", &class_text);
  const std::string* as = request.Find("as") ? &StringMember(request, "as", &as_text) : nullptr;
  if (as) CheckNewName(*as);
  const ClassInfo* cls = surface_.FindClass(class_name);
  if (!cls) throw UsageError("there is no class named \"" + class_name + "\"");
  if (cls->kind != ClassKind::kCreatable) {
    throw UsageError(cls->name + " is a global class: call its members as " + cls->name +
                     ".MEMBER");
  }
  Object object = cls->factory();
  std::string name;
  if (as) {
    Name(*as, object);
    name = *as;
  } else {
    name = NameOf(object);
  }
  std::string out = "{\"result\":{\"object\":";
  AppendJsonString(out, name);
  out += "}}";
  return out;
}

std::string BatchSession::Release(const Json& request) {
  CheckKeys(request, {"release"});
  std::string name_text;
  const std::string& name = StringMember(request, "release", &name_text);
  if (!Unname(name)) throw UsageError("there is no object named \"" + name + "\"");
  return "{\"result\":null}";
}

bool RunBatch(const Surface& surface, int in, std::FILE* out, std::string* failure) {
  BatchSession session(surface);
  std::string line;
  bool too_long = false;
  bool first_line = true;
  // Answers the line held; false when the answer cannot be written.
  auto answer = [&] {
    std::string_view text = line;
    if (first_line && text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);  // a BOM
    first_line = false;
    if (text.ends_with('\r')) text.remove_suffix(1);
    std::string response;
    if (too_long) {
      response = UsageAnswer("line longer than 64 MiB");
    } else if (text.find_first_not_of(" \t\r") != std::string_view::npos) {
      response = session.Answer(text);
    }
    line.clear();
    too_long = false;
    if (response.empty()) return true;
    response.push_back('\n');
    if (std::fwrite(response.data(), 1, response.size(), out) == response.size() &&
        std::fflush(out) == 0) {
      return true;
    }
    *failure = std::string("cannot write an answer: ") + std::strerror(errno);
    return false;
  };
  // One read(2) takes what has arrived, up to the buffer's size, without
  // waiting for more: a request is answered while its sender waits.
  std::vector<char> buffer(size_t{1} << 16);
  bool pending = false;  // bytes of an unfinished line were read
  for (;;) {
    ssize_t n = ::read(in, buffer.data(), buffer.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      *failure = std::string("cannot read the requests: ") + std::strerror(errno);
      return false;
    }
    if (n == 0) break;
    const char* p = buffer.data();
    const char* end = p + n;
    while (p < end) {
      const auto* nl = static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
      size_t len = static_cast<size_t>((nl ? nl : end) - p);
      if (!too_long) {
        if (line.size() + len > kMaxBatchLine) {
          too_long = true;
          std::string().swap(line);
        } else {
          line.append(p, len);
        }
      }
      pending = true;
      p += len;
      if (nl) {
        ++p;
        pending = false;
        if (!answer()) return false;
      }
    }
  }
  return !pending || answer();
}

}  // namespace crvlib::cli
