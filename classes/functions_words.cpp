// NumToWords: a Currency amount in English words for cheque printing.
//
// The amount is first rounded to whole cents, half away from zero, as the
// figures printed beside the words are (12.345 -> 12.35). The whole part is
// cut into groups of three digits; each group reads "<n> Hundred and <rest>"
// ("and" only after Hundred, inside a group) and is followed by its scale.
// The catalogue has words only up to Million, so the larger scales are
// composed from it: Thousand Million (10^9) and Million Million (10^12),
// which covers the whole Currency range (up to 922 Million Million …).
// The cents follow as a two-digit number over 100:
//
//   1234.56  -> "One Thousand Two Hundred and Thirty Four and 56/100"
//   0.05     -> "Zero and 05/100"
//   2000000  -> "Two Million and 00/100"
//   1e9      -> "One Thousand Million and 00/100"
//
// A negative amount raises 5: a cheque cannot carry one, and leaving out the
// sign would misstate it. The number words come from the message catalogue
// (401-419 one to nineteen, 420-490 the tens, 499 zero, 501 thousand, 502
// million), so a translated catalogue translates them.
#include <string>
#include <vector>

#include "core/error_frame.h"
#include "core/thread_state.h"
#include "crvlib/functions.h"

namespace crvlib {
namespace {

constexpr int32_t kOneMessage = 400;  // + 1..19
constexpr int32_t kZeroMessage = 499;
constexpr int32_t kThousandMessage = 501;
constexpr int32_t kMillionMessage = 502;

class Words {
 public:
  void Add(std::u16string_view word) {
    if (!text_.empty()) text_ += u' ';
    text_ += word;
  }
  void AddMessage(int32_t number) {
    Add(internal::State().catalogue->GetMessage(number, {}).view());
  }
  bool empty() const { return text_.empty(); }
  std::u16string Take() { return std::move(text_); }

 private:
  std::u16string text_;
};

// 1..99.
void AddBelowHundred(Words& words, int32_t n) {
  if (n < 20) {
    words.AddMessage(kOneMessage + n);
    return;
  }
  words.AddMessage(kOneMessage + n / 10 * 10);
  if (n % 10 != 0) words.AddMessage(kOneMessage + n % 10);
}

// 1..999.
void AddGroup(Words& words, int32_t n) {
  if (n >= 100) {
    words.AddMessage(kOneMessage + n / 100);
    words.Add(u"Hundred");
    if (n % 100 != 0) words.Add(u"and");
  }
  if (n % 100 != 0) AddBelowHundred(words, n % 100);
}

// The scale of group `index` (0 units, 1 thousands, 2 millions, …): the
// thousand for odd groups, then one million for every two groups.
void AddScale(Words& words, int index) {
  if (index % 2 == 1) words.AddMessage(kThousandMessage);
  for (int i = 0; i < index / 2; ++i) words.AddMessage(kMillionMessage);
}

}  // namespace

String Functions::NumToWords(Currency Amount) {
  return internal::Trap(u"CRVLIB.Functions::NumToWords", [&] {
    if (Amount.scaled < 0) internal::Raise(internal::kInvalidProcedureCall);
    // Ten-thousandths to cents, half away from zero. The largest Currency
    // value ends in .5807, so rounding never carries past the range.
    const int64_t cents_total = Amount.scaled / 100 + (Amount.scaled % 100 >= 50 ? 1 : 0);
    int64_t whole = cents_total / 100;
    const int32_t cents = static_cast<int32_t>(cents_total % 100);

    std::vector<int32_t> groups;  // least significant first
    for (; whole > 0; whole /= 1000) groups.push_back(static_cast<int32_t>(whole % 1000));

    Words words;
    for (int i = static_cast<int>(groups.size()) - 1; i >= 0; --i) {
      if (groups[i] == 0) continue;
      AddGroup(words, groups[i]);
      AddScale(words, i);
    }
    if (words.empty()) words.AddMessage(kZeroMessage);
    words.Add(u"and");
    std::u16string fraction(1, static_cast<char16_t>(u'0' + cents / 10));
    fraction += static_cast<char16_t>(u'0' + cents % 10);
    fraction += u"/100";
    words.Add(fraction);
    return String(words.Take());
  });
}

}  // namespace crvlib
