// The error frame: how routines raise automation errors and how each public
// routine re-raises them under its own source.
//
//   Raise(5)                              runtime error 5, standard text, no source
//   RaiseLibrary(vxInvalidDynamicString, u"CRVLIB.DynamicString::ValidateState")
//   return Trap(u"CRVLIB.Functions::ExtractElement", [&] { ... });
//
// Trap is the frame of the global classes: any error leaving `fn` is raised
// again with the same number and description and the routine's source, so the
// caller never sees where inside the library it started. TrapUnnamed is the
// frame of the object classes: it names only errors raised without a source.
// TrapForeign is the frame of the routines that deliberately have no trap:
// their errors reach the caller as raised. ResumeNext is the statement-by-
// statement form used where a routine must not raise at all: it runs one
// statement, keeps the number of its error and goes on.
//
// Only Error ever leaves a frame. Any other exception becomes a runtime error
// under the routine's source: memory exhaustion 7 (Out of memory), an
// oversized string 14 (Out of string space) and anything else 51 (Internal
// error).
#ifndef CRVLIB_CORE_ERROR_FRAME_H_
#define CRVLIB_CORE_ERROR_FRAME_H_

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "crvlib/enums.h"
#include "crvlib/error.h"
#include "crvlib/variant.h"

namespace crvlib::internal {

// Runtime error numbers used across the library.
inline constexpr int32_t kInvalidProcedureCall = 5;
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kOutOfMemory = 7;
inline constexpr int32_t kSubscriptOutOfRange = 9;
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kOutOfStringSpace = 14;
inline constexpr int32_t kInternalError = 51;
inline constexpr int32_t kObjectNotSet = 91;
inline constexpr int32_t kInvalidUseOfNull = 94;
inline constexpr int32_t kInvalidPropertyValue = 380;
inline constexpr int32_t kCannotCreateObject = 429;

// The runtime's standard description of error `number`, or the text the
// runtime gives numbers it does not know.
String RuntimeDescription(int32_t number);

// Raises runtime error `number` with its standard description.
[[noreturn]] void Raise(int32_t number, std::u16string_view source = {});

// The number a library error reaches callers with: the object-error base plus
// the code for 1009 and 1701, the bare code otherwise.
int32_t LibraryErrorNumber(vxLibErrorCodes code);

// Raises a library error; its description is the message catalogue's text for
// `code` with `inserts`, followed directly by `suffix`.
[[noreturn]] void RaiseLibrary(vxLibErrorCodes code, std::u16string_view source,
                               std::span<const Variant> inserts = {},
                               std::u16string_view suffix = {});

// The number a foreign (non-Error) exception becomes: 7, 14 or 51. Only
// inside a handler, for the exception being handled.
int32_t ForeignErrorNumber() noexcept;

// Which errors a frame gives its own source.
enum class Rename { kAll, kUnnamed, kNone };

// Raises the exception being handled again as an Error: an Error keeps its
// number and description and takes `source` as `rename` says; anything else
// becomes ForeignErrorNumber() with `source`. Only inside a handler.
[[noreturn]] void RethrowAs(std::u16string_view source, Rename rename);

template <class Fn>
decltype(auto) Trap(std::u16string_view source, Fn&& fn) {
  try {
    return std::forward<Fn>(fn)();
  } catch (...) {
    RethrowAs(source, Rename::kAll);
  }
}

template <class Fn>
decltype(auto) TrapUnnamed(std::u16string_view source, Fn&& fn) {
  try {
    return std::forward<Fn>(fn)();
  } catch (...) {
    RethrowAs(source, Rename::kUnnamed);
  }
}

template <class Fn>
decltype(auto) TrapForeign(std::u16string_view source, Fn&& fn) {
  try {
    return std::forward<Fn>(fn)();
  } catch (...) {
    RethrowAs(source, Rename::kNone);
  }
}

// On Error Resume Next, one statement at a time:
//   ResumeNext err;
//   err([&] { out = Compute(); });   // on failure `out` keeps its old value
//   return err.Number() == 0;
class ResumeNext {
 public:
  template <class Fn>
  void operator()(Fn&& fn) {
    try {
      std::forward<Fn>(fn)();
    } catch (const Error& e) {
      number_ = e.Number();
    } catch (...) {
      number_ = ForeignErrorNumber();
    }
  }
  int32_t Number() const { return number_; }
  void Clear() { number_ = 0; }

 private:
  int32_t number_ = 0;
};

}  // namespace crvlib::internal

#endif  // CRVLIB_CORE_ERROR_FRAME_H_
