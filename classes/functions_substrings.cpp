// The substring utilities of Functions that run on a temporary DynamicString:
// Change, QuoteStr and DblQuoteStr replace through ChangeAll, and Field joins
// elements read with ExtractElement. Each puts its argument into a fresh
// object, runs one operation and reads the value back, so the element and
// replacement rules (empty search text, positions 0 and -1, elements past the
// end) are exactly the engine's.
//
// Field may be asked for billions of elements. Its result is checked against
// the automation string limit before every piece is added (error 14), and
// once the positions have run past the last element every further piece is
// one delimiter and an empty element, so the rest is sized and written at
// once instead of being fetched element by element.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/checked.h"
#include "core/error_frame.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

using internal::Raise;
using internal::Trap;

constexpr int64_t kMaxChars = String::kMaxBytes / 2;

// Appends `piece`, raising 14 first when the text would pass the string limit.
void AppendChecked(std::u16string& text, std::u16string_view piece) {
  if (static_cast<int64_t>(text.size()) + static_cast<int64_t>(piece.size()) > kMaxChars) {
    Raise(internal::kOutOfStringSpace);
  }
  text.append(piece);
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

// Adds the pieces for i = from .. Count once every position from `from` on
// is past the last element: each is the delimiter and an empty element. The
// positions are still computed as Position + i - 1 one by one, left to right,
// so the first i with Position + i beyond the Long range raises 6, unless the
// text has passed the string limit (14) by then.
void AppendPastTheEnd(std::u16string& text, std::u16string_view delimiter, int32_t Position,
                      int64_t from, int32_t Count) {
  const int64_t overflow_at = int64_t{INT32_MAX} - Position + 1;  // first i that overflows
  const int64_t last_fine = std::min<int64_t>(Count, overflow_at - 1);
  const int64_t pieces = last_fine >= from ? last_fine - from + 1 : 0;
  const int64_t room = kMaxChars - static_cast<int64_t>(text.size());
  const int64_t piece = static_cast<int64_t>(delimiter.size());
  if (piece > 0 && pieces > room / piece) Raise(internal::kOutOfStringSpace);
  if (last_fine < Count) Raise(internal::kOverflow);
  text.reserve(text.size() + static_cast<size_t>(pieces * piece));
  for (int64_t k = 0; k < pieces; ++k) text.append(delimiter);
}

String FieldOf(const String& Value, const String& Delimiter, int32_t Position, int32_t Count) {
  DynamicString array;
  array.SetValue(Value);
  bool ignored = false;
  std::u16string text(array.ExtractElement(Delimiter, Position, ignored).Value().view());
  for (int64_t i = 2; i <= Count; ++i) {
    const int32_t position =
        internal::CheckedSub(internal::CheckedAdd(Position, static_cast<int32_t>(i)), 1);
    bool past_end = false;
    const String element = array.ExtractElement(Delimiter, position, past_end).Value();
    AppendChecked(text, Delimiter.view());
    AppendChecked(text, element.view());
    // Past the end for a positive position means every later one is too.
    if (past_end && position > 0) {
      AppendPastTheEnd(text, Delimiter.view(), Position, i + 1, Count);
      break;
    }
  }
  return String(std::move(text));
}

}  // namespace

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

String Functions::Field(const String& Value, const String& Delimiter, int32_t Position,
                        int32_t Count) {
  return Trap(u"CRVLIB.Functions::Field",
              [&] { return FieldOf(Value, Delimiter, Position, Count); });
}

}  // namespace crvlib
