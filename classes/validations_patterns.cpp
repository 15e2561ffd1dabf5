// The pattern checks of Validations.
//
// IsValid and EmailAddressCheck test a regular expression on a fresh
// platform::RegExp for each call. Creating the object is the one step that
// may raise: a missing engine is error 429 with a hint on installing it.
// Everything after that runs under "resume next" and answers False on any
// failure, an invalid pattern included.
//
// Matches runs the library's picture patterns. A picture is parsed into items
// first and then matched against the value left to right, greedily and
// without backtracking:
//
//   picture := item*
//   item    := count class      exactly `count` characters of the class; a
//                               count of 0 takes as many as follow (possibly
//                               none) and never gives any back
//            | count other      a count followed by any other character, or
//                               by nothing, is skipped together with that
//                               character: it matches nothing
//            | "'" text "'"     `text` exactly; "''" stands for one "'"
//            | char             that character exactly (binary)
//   count   := digit+           a 32-bit value; a larger one fails the match
//   class   := "N" | "n"        ASCII digits
//            | "A" | "a"        ASCII letters
//            | "X" | "x"        any character
//
// A run of digits is always a count, so a digit can only be matched through a
// class or a quoted literal ("3" alone matches nothing; "'3'" matches "3").
// A quote that is never closed makes the picture invalid: the value cannot
// match it.
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "core/error_frame.h"
#include "crvlib/error.h"
#include "crvlib/validations.h"
#include "platform/regex.h"

namespace crvlib {
namespace {

constexpr std::u16string_view kRegExpSource = u"CRVLIB.Validations::IsValid";
constexpr std::u16string_view kInstallHint =
    u" Class RegExp from vpscript.dll. Need to install Windows Script 5.5 or 5.6 (scripten.exe).";

// The e-mail pattern, built from its pieces as the library has always had it:
// a local part of ordinary characters and backslash escapes, or a quoted
// string framed by three quotation marks on each side; then domain labels of
// at least two lower-case characters (or "#" and digits) and a last label of
// two to four lower-case letters. Nothing anchors the end, so text after a
// valid address is accepted.
constexpr std::u16string_view kEmailPattern =
    uR"re(^(([^<>()\[\]\\.,;:@)re"
    u"\""
    uR"re(\x00-\x20\x7F]|\\.)+|()re"
    u"\"\"\""
    uR"re(([^\x0A\x0D)re"
    u"\""
    uR"re(\\]|\\\\)+)re"
    u"\"\"\""
    uR"re())@(([a-z]|#\d+?)([a-z0-9-]|#\d+?)*([a-z0-9]|#\d+?)\.)+([a-z]{2,4}))re";

[[noreturn]] void RaiseMissingEngine(int32_t creation_error) {
  String description = internal::RuntimeDescription(creation_error);
  description.units().append(kInstallHint);
  throw Error(internal::kCannotCreateObject, String(kRegExpSource), std::move(description));
}

bool TestRegExp(std::u16string_view value, std::u16string_view pattern, bool ignore_case) {
  internal::ResumeNext on_error;
  std::optional<platform::RegExp> regexp;
  on_error([&] { regexp.emplace(); });
  if (on_error.Number() != 0) {
    internal::TrapForeign(kRegExpSource, [&] { RaiseMissingEngine(on_error.Number()); });
  }
  bool result = false;
  on_error([&] {
    regexp->SetIgnoreCase(ignore_case);
    regexp->SetPattern(pattern);
    result = regexp->Test(value);
  });
  return result;
}

// --- Pictures -----------------------------------------------------------

struct PictureItem {
  enum class Kind : uint8_t {
    kClass,  // `count` characters of class `letter`
    kText,   // `text` exactly
    kSkip,   // a count without a class letter
  };
  Kind kind;
  char16_t letter = 0;  // N, A or X
  int32_t count = 0;
  std::u16string_view text;
};

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}
bool IsLetter(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

char16_t ClassLetter(char16_t c) {
  switch (c) {
    case u'N':
    case u'n':
      return u'N';
    case u'A':
    case u'a':
      return u'A';
    case u'X':
    case u'x':
      return u'X';
    default:
      return 0;
  }
}

// The items of `pattern`; nothing when a count overflows or a quote is not
// closed.
std::optional<std::vector<PictureItem>> ParsePicture(std::u16string_view pattern) {
  std::vector<PictureItem> items;
  size_t i = 0;
  while (i < pattern.size()) {
    char16_t c = pattern[i];
    if (IsDigit(c)) {
      int64_t count = 0;
      for (; i < pattern.size() && IsDigit(pattern[i]); ++i) {
        count = count * 10 + (pattern[i] - u'0');
        if (count > INT32_MAX) return std::nullopt;
      }
      char16_t letter = i < pattern.size() ? ClassLetter(pattern[i]) : 0;
      if (i < pattern.size()) ++i;  // the class letter, or the character skipped with the count
      if (letter != 0) {
        items.push_back({PictureItem::Kind::kClass, letter, static_cast<int32_t>(count), {}});
      } else {
        items.push_back({PictureItem::Kind::kSkip, 0, static_cast<int32_t>(count), {}});
      }
    } else if (c == u'\'') {
      size_t close = pattern.find(u'\'', i + 1);
      if (close == std::u16string_view::npos) return std::nullopt;
      // An empty literal compares the closing quote itself.
      std::u16string_view text =
          close == i + 1 ? pattern.substr(close, 1) : pattern.substr(i + 1, close - i - 1);
      items.push_back({PictureItem::Kind::kText, 0, 0, text});
      i = close + 1;
    } else {
      items.push_back({PictureItem::Kind::kText, 0, 0, pattern.substr(i, 1)});
      ++i;
    }
  }
  return items;
}

bool InClass(char16_t letter, char16_t c) {
  switch (letter) {
    case u'N':
      return IsDigit(c);
    case u'A':
      return IsLetter(c);
    default:
      return true;
  }
}

bool MatchPicture(const std::vector<PictureItem>& items, std::u16string_view value) {
  size_t pos = 0;
  for (const PictureItem& item : items) {
    switch (item.kind) {
      case PictureItem::Kind::kSkip:
        break;
      case PictureItem::Kind::kText:
        if (value.substr(pos).substr(0, item.text.size()) != item.text) return false;
        pos += item.text.size();
        break;
      case PictureItem::Kind::kClass:
        if (item.count == 0) {
          while (pos < value.size() && InClass(item.letter, value[pos])) ++pos;
          break;
        }
        if (value.size() - pos < static_cast<size_t>(item.count)) return false;
        for (size_t end = pos + static_cast<size_t>(item.count); pos < end; ++pos) {
          if (!InClass(item.letter, value[pos])) return false;
        }
        break;
    }
  }
  return pos == value.size();
}

}  // namespace

bool Validations::IsValid(const String& Value, const String& RegexPattern,
                          vxMatchOptionsEnum MatchOptions) {
  // Only vxIgnoreCase has an effect; the other option bits are accepted and
  // ignored.
  return TestRegExp(Value.view(), RegexPattern.view(), (MatchOptions & vxIgnoreCase) != 0);
}

bool Validations::EmailAddressCheck(const String& Value) {
  return TestRegExp(Value.view(), kEmailPattern, false);
}

bool Validations::Matches(const String& Value, const String& Pattern) {
  bool result = false;
  internal::ResumeNext on_error;
  on_error([&] {
    std::optional<std::vector<PictureItem>> items = ParsePicture(Pattern.view());
    result = items && MatchPicture(*items, Value.view());
  });
  return result;
}

}  // namespace crvlib
