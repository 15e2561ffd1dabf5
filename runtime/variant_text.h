// The text form of a Variant as the runtime writes it (CStr, and the
// conversion a Variant undergoes where a string is expected): Empty is "",
// Null is error 94, Booleans are "True" and "False", numbers and dates take
// the forms of number_format.h and date_format.h, in the thread's locale.
//
//   VariantToText(Variant(1.5))        == u"1.5"
//   VariantToText(Variant(true))       == u"True"
//   VariantToText(Variant(Date{0.5}))  == u"12:00:00 PM"
//   VariantToText(Variant(kNull))      raises 94
#ifndef CRVLIB_RUNTIME_VARIANT_TEXT_H_
#define CRVLIB_RUNTIME_VARIANT_TEXT_H_

#include "core/locale_settings.h"
#include "crvlib/variant.h"
#include "runtime/text_buffer.h"

namespace crvlib::internal {

String VariantToText(const Variant& value);
String VariantToText(const Variant& value, const LocaleSettings& locale);

// Appends the text of a non-Null value; false for Null (nothing written) or
// a Date outside the date range.
bool AppendVariantText(TextBuffer& out, const Variant& value, const LocaleSettings& locale);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_VARIANT_TEXT_H_
