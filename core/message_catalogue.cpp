// The built-in message catalogue: one table of texts keyed by language, with
// English as the fallback for every locale.
#include "core/message_catalogue.h"

#include <cstdio>
#include <string>

namespace crvlib::internal {
namespace {

struct Message {
  int32_t number;
  const char16_t* text;
};

constexpr Message kEnglish[] = {
    {1003, u"Invalid entry."},
    {1009,
     u"Invalid hex string.%1Each character must be written as ^H followed by its code in "
     u"hexadecimal."},
    {1611, u"Invalid conversion code: "},
    {1701, u"Invalid DynamicString: an edit has cut into the range of this view."},
    // Number words for NumToWords.
    {401, u"One"},
    {402, u"Two"},
    {403, u"Three"},
    {404, u"Four"},
    {405, u"Five"},
    {406, u"Six"},
    {407, u"Seven"},
    {408, u"Eight"},
    {409, u"Nine"},
    {410, u"Ten"},
    {411, u"Eleven"},
    {412, u"Twelve"},
    {413, u"Thirteen"},
    {414, u"Fourteen"},
    {415, u"Fifteen"},
    {416, u"Sixteen"},
    {417, u"Seventeen"},
    {418, u"Eighteen"},
    {419, u"Nineteen"},
    {420, u"Twenty"},
    {430, u"Thirty"},
    {440, u"Forty"},
    {450, u"Fifty"},
    {460, u"Sixty"},
    {470, u"Seventy"},
    {480, u"Eighty"},
    {490, u"Ninety"},
    {499, u"Zero"},
    {501, u"Thousand"},
    {502, u"Million"},
};

// The text of an insertion value. Insertions are strings in practice; other
// types get a plain invariant form.
std::u16string InsertText(const Variant& v) {
  auto ascii = [](const std::string& s) { return std::u16string(s.begin(), s.end()); };
  switch (v.Type()) {
    case VarType::kString:
      return v.AsString().ToU16();
    case VarType::kBoolean:
      return v.AsBoolean() ? u"True" : u"False";
    case VarType::kInteger:
      return ascii(std::to_string(v.AsInteger()));
    case VarType::kLong:
      return ascii(std::to_string(v.AsLong()));
    case VarType::kDouble: {
      char buf[32];
      std::snprintf(buf, sizeof buf, "%.15g", v.AsDouble());
      return ascii(buf);
    }
    default:
      return u"";
  }
}

class BuiltinCatalogue final : public MessageCatalogue {
 public:
  void SetLocale(int32_t lcid) override { lcid_ = lcid; }

  String GetMessage(int32_t number, std::span<const Variant> inserts) override {
    std::u16string_view text;
    for (const Message& m : kEnglish) {
      if (m.number == number) text = m.text;
    }
    std::u16string out;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == u'%' && i + 1 < text.size() && text[i + 1] >= u'1' && text[i + 1] <= u'9') {
        size_t k = text[i + 1] - u'1';
        if (k < inserts.size()) out += InsertText(inserts[k]);
        ++i;
      } else {
        out.push_back(text[i]);
      }
    }
    return String(std::move(out));
  }

 private:
  [[maybe_unused]] int32_t lcid_ = 1033;
};

}  // namespace

std::unique_ptr<MessageCatalogue> MakeBuiltinCatalogue() {
  return std::make_unique<BuiltinCatalogue>();
}

}  // namespace crvlib::internal
