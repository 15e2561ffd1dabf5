// `crv batch`: requests as JSON Lines, one response line for each, in order.
//
//   {"call":"Functions.ExtractElement","args":["a|b|c","|",2]}
//       -> {"result":"b","byref":{"ArrayValue":"a|b|c","Delimiter":"|"}}
//   {"new":"DynamicString","as":"d"}            -> {"result":{"object":"d"}}
//   {"set":"d.Value","value":"x"}               -> {"result":null,"byref":{…}}
//   {"call":"d.SubString","args":[0,1],"as":"v"} -> {"result":{"object":"v"}}
//   {"release":"v"}                             -> {"result":null}
//
// A call names a global class or an object; a property get is a call with no
// arguments; a member with no result answers "result":null. An object result
// without "as" is written under the name it already has or under a new one
// ("obj1", "obj2", …). A routine's error answers
// {"error":{"number":N,"source":"…","description":"…"}}; a request crv
// cannot make (bad JSON, unknown member or key, wrong count or type) answers
// {"error":{"number":-1,"description":"…"}}. No line stops the session.
#ifndef CRVLIB_CLI_BATCH_H_
#define CRVLIB_CLI_BATCH_H_

#include <cstddef>
#include <cstdio>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "cli/json.h"
#include "cli/value_json.h"

namespace crvlib::cli {

inline constexpr size_t kMaxBatchLine = size_t{64} << 20;

class BatchSession {
 public:
  explicit BatchSession(const Surface& surface) : surface_(surface) {}

  // The response to one request line (given without its line end).
  std::string Answer(std::string_view line);

  // The objects the session holds by name.
  const std::map<std::string, Object, std::less<>>& names() const { return names_; }

 private:
  std::string Call(const Json& request);
  std::string Set(const Json& request);
  std::string New(const Json& request);
  std::string Release(const Json& request);

  // The class or named object before the dot of "X.Member".
  struct Target {
    const ClassInfo* cls = nullptr;
    Object self;  // for a named object
    bool has_self = false;
  };
  Target FindTarget(std::string_view owner) const;
  std::string Invoke(std::string_view owner, const MemberInfo& member, const Target& target,
                     std::span<const Json> args, const std::string* as);
  // The name `object` is written under: its first name, or a new one.
  std::string NameOf(const Object& object);
  void CheckNewName(const std::string& name) const;
  // Gives `object` the name `name`, dropping what the name held before.
  void Name(const std::string& name, const Object& object);
  // Drops the name; false when there is no such name.
  bool Unname(std::string_view name);

  const Surface& surface_;
  std::map<std::string, Object, std::less<>> names_;
  // The names of each named object (by its identity), kept in step with
  // names_ so that finding an object's name does not scan every name.
  std::unordered_map<const void*, std::set<std::string, std::less<>>> names_of_;
  int made_up_ = 0;
};

// Answers every complete line of the descriptor `in` on `out` as soon as it
// has arrived, flushing after each answer, so a program can send one request
// and wait for its answer. Blank lines are skipped; a line longer than
// kMaxBatchLine answers an error without being held in memory. Returns false,
// with the reason in `failure`, when `in` cannot be read or an answer cannot
// be written; the session stops there.
bool RunBatch(const Surface& surface, int in, std::FILE* out, std::string* failure);

}  // namespace crvlib::cli

#endif  // CRVLIB_CLI_BATCH_H_
