// The routines of Functions that remove or replace characters and text:
// StripChar and Swap work on single characters directly; Change, QuoteStr
// and DblQuoteStr replace through ChangeAll on a temporary DynamicString, so
// their replacement rules (matches never overlap, replaced text is not
// searched again, an empty search text raises 5) are exactly the engine's.
#include <string>
#include <string_view>

#include "classes/string_limit.h"
#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "platform/clock.h"
#include "runtime/code_page.h"

namespace crvlib {
namespace {

using internal::AppendChecked;
using internal::Trap;

[[noreturn]] void SpinForever() {
  for (;;) platform::YieldProcessor();
}

// Value with every FindValue replaced by ReplaceValue, as ChangeAll does it
// on a fresh object (case-sensitive; an empty FindValue raises 5).
String ChangeAllIn(const String& Value, const String& FindValue, const String& ReplaceValue) {
  DynamicString text;
  text.SetValue(Value);
  text.ChangeAll(FindValue, ReplaceValue, vxCaseSensitive);
  return text.Value();
}

// quote & Value-with-each-quote-doubled & quote.
String Quoted(const String& Value, std::u16string_view quote) {
  const std::u16string doubled = std::u16string(quote) + std::u16string(quote);
  const String changed = ChangeAllIn(Value, String(quote), String(doubled));
  std::u16string text(quote);
  AppendChecked(text, changed.view());
  AppendChecked(text, quote);
  return String(std::move(text));
}

}  // namespace

String Functions::StripChar(const String& Value, const String& Character) {
  return Trap(u"CRVLIB.Functions::StripChar", [&] {
    std::u16string_view value = Value.view();
    if (Character.view().empty()) return String(value);  // nothing equals ""
    const char16_t strip = Character.view().front();
    std::u16string kept;
    kept.reserve(value.size());
    for (char16_t c : value) {
      if (c != strip) kept.push_back(c);
    }
    return String(std::move(kept));
  });
}

String Functions::Swap(const String& Value, int16_t OldCharASCII, int16_t NewCharASCII) {
  return Trap(u"CRVLIB.Functions::Swap", [&] {
    const char16_t old_char = internal::Chr(OldCharASCII);
    const char16_t new_char = internal::Chr(NewCharASCII);
    // Replacing one occurrence and searching again from the start finds the
    // next occurrence, since a replaced character no longer matches; so a
    // single pass gives the same result. The exception is kept on purpose:
    // when both codes name the same character, the search finds it again
    // every time and the routine never returns.
    String result = Value;
    std::u16string& units = result.units();
    const size_t length = static_cast<size_t>(Value.Len());
    for (size_t i = 0; i < length; ++i) {
      if (units[i] != old_char) continue;
      if (old_char == new_char) SpinForever();
      units[i] = new_char;
    }
    return result;
  });
}

String Functions::Change(const String& Value, const String& FindValue, const String& ReplaceValue) {
  return Trap(u"CRVLIB.Functions::Change",
              [&] { return ChangeAllIn(Value, FindValue, ReplaceValue); });
}

String Functions::QuoteStr(const String& Value) {
  return Trap(u"CRVLIB.Functions::QuoteStr", [&] { return Quoted(Value, u"'"); });
}

String Functions::DblQuoteStr(const String& Value) {
  return Trap(u"CRVLIB.Functions::DblQuoteStr", [&] { return Quoted(Value, u"\""); });
}

}  // namespace crvlib
