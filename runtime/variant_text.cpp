// Dispatch on the Variant's type to the number and date writers.
#include "runtime/variant_text.h"

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "runtime/date_format.h"
#include "runtime/number_format.h"

namespace crvlib::internal {

bool AppendVariantText(TextBuffer& out, const Variant& value, const LocaleSettings& locale) {
  switch (value.Type()) {
    case VarType::kEmpty:
      return true;
    case VarType::kNull:
      return false;
    case VarType::kBoolean:
      out.Append(value.AsBoolean() ? u"True" : u"False");
      return true;
    case VarType::kInteger:
      out.AppendNumber(value.AsInteger());
      return true;
    case VarType::kLong:
      out.AppendNumber(value.AsLong());
      return true;
    case VarType::kDouble:
      AppendDoubleText(out, value.AsDouble(), locale);
      return true;
    case VarType::kCurrency:
      AppendCurrencyText(out, value.AsCurrency(), locale);
      return true;
    case VarType::kDate:
      return AppendDateText(out, value.AsDate().serial, locale);
    case VarType::kString:
      out.Append(value.AsString().view());
      return true;
  }
  return false;
}

String VariantToText(const Variant& value, const LocaleSettings& locale) {
  if (value.Type() == VarType::kString) return value.AsString();
  if (value.IsNull()) Raise(kInvalidUseOfNull);
  TextBuffer b;
  if (!AppendVariantText(b, value, locale)) Raise(kOverflow);
  return b.ToString();
}

String VariantToText(const Variant& value) {
  return VariantToText(value, State().locale);
}

}  // namespace crvlib::internal
