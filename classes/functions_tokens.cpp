// ReplaceParams: fills the placeholders of a template by overwriting each
// occurrence of the token, in turn, with the text of the next parameter. The
// overwrite never changes the length of the text: a shorter value leaves the
// tail of the token standing, a longer one runs on over what follows.
//
// Every round looks for the first occurrence from the start of the text, so
// a value that leaves (or brings) the token where it wrote is found again.
// Only the characters from the overwritten position on can have changed, so
// the search resumes where a match could first reach them (one token length
// less one before it); that finds exactly what a search from the start would.
#include <algorithm>

#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "runtime/variant_text.h"

namespace crvlib {

String Functions::ReplaceParams(const String& Value, const String& Token,
                                const VariantArray& Parameters) {
  return internal::Trap(u"CRVLIB.Functions::ReplaceParams", [&] {
    String result = Value;
    std::u16string& text = result.units();
    const std::u16string_view token = Token.view();
    const size_t length = static_cast<size_t>(Value.Len());
    size_t from = 0;
    for (const Variant& parameter : Parameters.items) {
      // InStr: an empty token is found at the start of a non-empty text.
      const size_t at = length == 0 ? std::u16string_view::npos
                                    : std::u16string_view(text.data(), length).find(token, from);
      if (at == std::u16string_view::npos) break;
      const String value = internal::VariantToText(parameter);
      const size_t count = std::min(static_cast<size_t>(value.Len()), length - at);
      std::copy_n(value.data(), count, text.begin() + static_cast<ptrdiff_t>(at));
      // An empty token matches at the start again, which is where it was.
      from = token.empty() ? at : at + 1 > token.size() ? at + 1 - token.size() : 0;
    }
    return result;
  });
}

}  // namespace crvlib
