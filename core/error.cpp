// The Error type, the runtime's error table and the re-raise step of the
// error frame.
#include "crvlib/error.h"

#include <new>
#include <stdexcept>
#include <string>

#include "core/error_frame.h"
#include "core/thread_state.h"

namespace crvlib {

Error::Error(int32_t number, String source, String description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {
  Render();
}

Error Error::Runtime(int32_t number) {
  return Error(number, String(), internal::RuntimeDescription(number));
}

void Error::SetSource(String source) {
  source_ = std::move(source);
  Render();
}

void Error::Render() {
  what_ =
      "error " + std::to_string(number_) + " (" + source_.ToUtf8() + "): " + description_.ToUtf8();
}

namespace internal {

namespace {

struct RuntimeError {
  int32_t number;
  const char16_t* description;
};

// The automation runtime's standard descriptions of the errors the library
// can raise or pass on.
constexpr RuntimeError kRuntimeErrors[] = {
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {14, u"Out of string space"},
    {51, u"Internal error"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {54, u"Bad file mode"},
    {55, u"File already open"},
    {57, u"Device I/O error"},
    {58, u"File already exists"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {67, u"Too many files"},
    {68, u"Device unavailable"},
    {70, u"Permission denied"},
    {71, u"Disk not ready"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
    {91, u"Object variable or With block variable not set"},
    {94, u"Invalid use of Null"},
    {380, u"Invalid property value"},
    {429, u"ActiveX component can't create object"},
};

}  // namespace

String RuntimeDescription(int32_t number) {
  for (const RuntimeError& e : kRuntimeErrors) {
    if (e.number == number) return String(e.description);
  }
  return String(u"Application-defined or object-defined error");
}

void Raise(int32_t number, std::u16string_view source) {
  throw Error(number, String(source), RuntimeDescription(number));
}

int32_t LibraryErrorNumber(vxLibErrorCodes code) {
  if (code == vxInvalidHexString || code == vxInvalidDynamicString) return kObjectErrorBase + code;
  return code;
}

void RaiseLibrary(vxLibErrorCodes code, std::u16string_view source,
                  std::span<const Variant> inserts, std::u16string_view suffix) {
  String text = State().catalogue->GetMessage(code, inserts);
  text.units().append(suffix);
  throw Error(LibraryErrorNumber(code), String(source), std::move(text));
}

int32_t ForeignErrorNumber() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::length_error&) {
    // A string or array beyond what can be allocated at all.
    return kOutOfStringSpace;
  } catch (...) {
    return kInternalError;
  }
}

void RethrowAs(std::u16string_view source, Rename rename) {
  try {
    throw;
  } catch (Error& e) {
    if (rename == Rename::kAll || (rename == Rename::kUnnamed && e.Source().empty())) {
      e.SetSource(String(source));
    }
    throw;
  } catch (...) {
    Raise(ForeignErrorNumber(), source);
  }
}

}  // namespace internal
}  // namespace crvlib
