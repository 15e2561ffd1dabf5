// The dialect translation: one iterative pass over the pattern in the
// VBScript grammar, writing the PCRE2 form as it goes. Character classes are
// built as sets of ranges, normalized, closed over case when the pattern
// ignores case, and written out explicitly; literals that fold are written
// as the class of their case closure. Back-references are told from octal
// escapes by the number of groups in the whole pattern, counted first.
#include "platform/regex_to_pcre2.h"

#include <algorithm>
#include <cstdint>

#include "platform/char_props.h"

namespace crvlib::platform {
namespace {

// Patterns longer than this are refused before translation: PCRE2's compiled
// form (16-bit links) cannot hold one anyway, and the refusal bounds the work
// of translating it.
constexpr size_t kMaxPatternUnits = 1 << 18;
// PCRE2's largest quantifier count.
constexpr uint32_t kMaxRepeat = 65535;

// --- Character sets -----------------------------------------------------

struct Range {
  char16_t lo;
  char16_t hi;
};

constexpr Range kDigitRanges[] = {{u'0', u'9'}};
constexpr Range kWordRanges[] = {{u'0', u'9'}, {u'A', u'Z'}, {u'_', u'_'}, {u'a', u'z'}};
constexpr Range kSpaceRanges[] = {{u'\t', u'\r'}, {u' ', u' '}};

// A set of code units as ranges; Normalize sorts and merges them.
class CharSet {
 public:
  void Add(char16_t c) { ranges_.push_back({c, c}); }
  void Add(char16_t lo, char16_t hi) { ranges_.push_back({lo, hi}); }
  void Add(std::span<const Range> ranges, bool complement) {
    if (!complement) {
      ranges_.insert(ranges_.end(), ranges.begin(), ranges.end());
      return;
    }
    uint32_t next = 0;
    for (const Range& r : ranges) {
      if (r.lo > next) Add(static_cast<char16_t>(next), static_cast<char16_t>(r.lo - 1));
      next = r.hi + 1u;
    }
    if (next <= 0xFFFF) Add(static_cast<char16_t>(next), u'\xFFFF');
  }

  void Normalize() {
    std::sort(ranges_.begin(), ranges_.end(),
              [](const Range& a, const Range& b) { return a.lo < b.lo; });
    size_t out = 0;
    for (const Range& r : ranges_) {
      if (out > 0 && r.lo <= ranges_[out - 1].hi + 1u) {
        ranges_[out - 1].hi = std::max(ranges_[out - 1].hi, r.hi);
      } else {
        ranges_[out++] = r;
      }
    }
    ranges_.resize(out);
  }

  // Normalized sets only.
  void Invert() {
    std::vector<Range> old;
    old.swap(ranges_);
    Add(old, true);
  }

  // Adds every unit that equals a member when case is ignored. Normalized
  // sets only; only units that fold at all are visited.
  void CloseOverCase(const CaseClasses& cases) {
    std::span<const char16_t> folding = cases.Folding();
    size_t count = ranges_.size();
    for (size_t i = 0; i < count; ++i) {
      Range r = ranges_[i];
      auto it = std::lower_bound(folding.begin(), folding.end(), r.lo);
      for (; it != folding.end() && *it <= r.hi; ++it) {
        for (char16_t m = cases.Next(*it); m != *it; m = cases.Next(m)) {
          if (m < r.lo || m > r.hi) Add(m);
        }
      }
    }
    if (ranges_.size() != count) Normalize();
  }

  const std::vector<Range>& ranges() const { return ranges_; }

 private:
  std::vector<Range> ranges_;
};

// --- Translation --------------------------------------------------------

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}
bool IsOctal(char16_t c) {
  return c >= u'0' && c <= u'7';
}
bool IsAsciiLetter(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

int HexValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// The character of a one-letter control escape (\f \n \r \t \v), or 0.
char16_t ControlEscape(char16_t c) {
  switch (c) {
    case u'f':
      return u'\f';
    case u'n':
      return u'\n';
    case u'r':
      return u'\r';
    case u't':
      return u'\t';
    case u'v':
      return u'\v';
    default:
      return 0;
  }
}

bool IsClassEscape(char16_t c) {
  switch (c) {
    case u'd':
    case u'D':
    case u's':
    case u'S':
    case u'w':
    case u'W':
      return true;
    default:
      return false;
  }
}

void AddClassEscape(char16_t letter, CharSet& set) {
  bool complement = letter >= u'A' && letter <= u'Z';
  switch (letter | 0x20) {
    case u'd':
      set.Add(kDigitRanges, complement);
      break;
    case u's':
      set.Add(kSpaceRanges, complement);
      break;
    default:
      set.Add(kWordRanges, complement);
      break;
  }
}

// Grammar (ECMAScript with the web browsers' leniencies, which the scripting
// runtime shares):
//   pattern     := alternative ("|" alternative)*
//   alternative := term*
//   term        := assertion | atom quantifier?
//   assertion   := "^" | "$" | "\b" | "\B"
//   atom        := char | "." | escape | class | "(" pattern ")"
//                | "(?:" pattern ")" | "(?=" pattern ")" | "(?!" pattern ")"
//   quantifier  := ("*" | "+" | "?" | "{" n "}" | "{" n ",}" | "{" n "," m "}") "?"?
// The scan is iterative: nesting depth costs no stack here (PCRE2 limits it).
class Translator {
 public:
  Translator(std::u16string_view source, const CaseClasses* cases, std::u16string& out)
      : src_(source), cases_(cases), out_(out) {}

  // Writes the PCRE2 form of the pattern to `out`; false for a syntax error
  // or a pattern too large to compile.
  bool Run() {
    if (src_.size() > kMaxPatternUnits) return false;
    captures_ = CountCaptures();
    while (i_ < src_.size()) {
      if (out_.size() > kMaxTranslatedUnits) return false;
      char16_t c = src_[i_++];
      switch (c) {
        case u'|':
          out_ += u'|';
          last_ = Last::kNothing;
          break;
        case u'(':
          if (!OpenGroup()) return false;
          break;
        case u')':
          if (depth_ == 0) return false;
          --depth_;
          out_ += u')';
          last_ = Last::kAtom;
          break;
        case u'^':
          out_ += u'^';
          last_ = Last::kAssertion;
          break;
        case u'$':
          out_ += u"\\z";
          last_ = Last::kAssertion;
          break;
        case u'*':
        case u'+':
        case u'?':
          if (!Quantify(std::u16string_view(&c, 1))) return false;
          break;
        case u'{':
          if (!Brace()) return false;
          break;
        case u'.': {
          CharSet set;
          set.Add(u'\n');
          set.Normalize();
          set.Invert();
          EmitSet(set);
          break;
        }
        case u'[':
          if (!Class()) return false;
          break;
        case u'\\':
          if (!Escape()) return false;
          break;
        default:
          EmitLiteral(c);
          break;
      }
    }
    return depth_ == 0 && out_.size() <= kMaxTranslatedUnits;
  }

  // Whether the pattern holds a back-reference (after a successful Run).
  bool back_references() const { return back_references_; }

 private:
  enum class Last { kNothing, kAtom, kQuantifier, kAssertion };

  // The number of capturing groups in the whole pattern, which decides
  // whether \N is a back-reference.
  uint32_t CountCaptures() const {
    uint32_t count = 0;
    for (size_t i = 0; i < src_.size(); ++i) {
      char16_t c = src_[i];
      if (c == u'\\') {
        ++i;
      } else if (c == u'[') {
        // A class ends at the first unescaped "]" ("[]" is empty).
        for (++i; i < src_.size() && src_[i] != u']'; ++i) {
          if (src_[i] == u'\\') ++i;
        }
      } else if (c == u'(' && (i + 1 >= src_.size() || src_[i + 1] != u'?')) {
        ++count;
      }
    }
    return count;
  }

  bool OpenGroup() {
    if (i_ < src_.size() && src_[i_] == u'?') {
      if (i_ + 1 >= src_.size()) return false;
      char16_t kind = src_[i_ + 1];
      if (kind != u':' && kind != u'=' && kind != u'!') return false;
      out_ += u"(?";
      out_ += kind;
      i_ += 2;
    } else {
      out_ += u'(';
    }
    ++depth_;
    last_ = Last::kNothing;
    return true;
  }

  // Appends quantifier `q` (and a lazy "?" after it) to the atom just written.
  bool Quantify(std::u16string_view q) {
    if (last_ != Last::kAtom) return false;
    out_ += q;
    if (i_ < src_.size() && src_[i_] == u'?') {
      out_ += u'?';
      ++i_;
    }
    last_ = Last::kQuantifier;
    return true;
  }

  // After "{": a well-formed {n}, {n,} or {n,m} is a quantifier, anything else
  // a literal brace.
  bool Brace() {
    size_t j = i_;
    uint32_t min = 0;
    uint32_t max = 0;
    bool bounded = true;
    if (!ReadCount(j, min)) {
      EmitLiteral(u'{');
      return true;
    }
    if (j < src_.size() && src_[j] == u',') {
      ++j;
      bounded = j < src_.size() && IsDigit(src_[j]);
      if (bounded) ReadCount(j, max);
    } else {
      max = min;
    }
    if (j >= src_.size() || src_[j] != u'}') {
      EmitLiteral(u'{');
      return true;
    }
    i_ = j + 1;
    if (bounded && min > max) return false;
    if (min > kMaxRepeat || (bounded && max > kMaxRepeat)) return false;
    std::u16string q = u"{";
    AppendDecimal(q, min);
    if (!bounded || max != min) q += u',';
    if (bounded && max != min) AppendDecimal(q, max);
    q += u'}';
    return Quantify(q);
  }

  // Reads a run of decimal digits at `j`, saturating above kMaxRepeat.
  bool ReadCount(size_t& j, uint32_t& value) const {
    if (j >= src_.size() || !IsDigit(src_[j])) return false;
    value = 0;
    for (; j < src_.size() && IsDigit(src_[j]); ++j) {
      value = std::min<uint32_t>(value * 10 + (src_[j] - u'0'), kMaxRepeat + 1);
    }
    return true;
  }

  static void AppendDecimal(std::u16string& s, uint32_t v) {
    char16_t digits[10];
    int n = 0;
    do {
      digits[n++] = static_cast<char16_t>(u'0' + v % 10);
      v /= 10;
    } while (v != 0);
    while (n > 0) s += digits[--n];
  }

  // Reads an octal escape whose first digit is at i_: up to three digits with
  // a value of at most 0377.
  char16_t ReadOctal() {
    uint32_t v = src_[i_++] - u'0';
    int max_digits = v <= 3 ? 3 : 2;
    for (int n = 1; n < max_digits && i_ < src_.size() && IsOctal(src_[i_]); ++n) {
      v = v * 8 + (src_[i_++] - u'0');
    }
    return static_cast<char16_t>(v);
  }

  // Reads `digits` hex digits at i_ into `c`; false (reading nothing) when
  // they are not all there.
  bool ReadHex(int digits, char16_t& c) {
    if (src_.size() - i_ < static_cast<size_t>(digits)) return false;
    uint32_t v = 0;
    for (int k = 0; k < digits; ++k) {
      int h = HexValue(src_[i_ + k]);
      if (h < 0) return false;
      v = v * 16 + static_cast<uint32_t>(h);
    }
    i_ += digits;
    c = static_cast<char16_t>(v);
    return true;
  }

  // After "\" outside a class.
  bool Escape() {
    if (i_ >= src_.size()) return false;
    char16_t c = src_[i_++];
    if (c == u'b' || c == u'B') {
      EmitWordBoundary(c == u'b');
      last_ = Last::kAssertion;
      return true;
    }
    if (IsClassEscape(c)) {
      CharSet set;
      AddClassEscape(c, set);
      set.Normalize();
      EmitSet(set);
      return true;
    }
    if (c >= u'1' && c <= u'9') {
      size_t start = i_ - 1;
      uint32_t n = 0;
      size_t end = start;
      ReadCount(end, n);
      if (n <= captures_) {
        i_ = end;
        EmitBackReference(n);
        return true;
      }
      if (c >= u'8') {
        EmitLiteral(c);
      } else {
        i_ = start;
        EmitLiteral(ReadOctal());
      }
      return true;
    }
    EmitLiteral(CharacterEscape(c));
    return true;
  }

  // The character of escape `\c` that is no class escape, assertion or
  // back-reference; i_ is just past `c`. An escape that does not complete
  // (\x without two hex digits, \c without a letter) stands for its letter,
  // or for the backslash itself in the case of \c.
  char16_t CharacterEscape(char16_t c) {
    if (char16_t control = ControlEscape(c)) return control;
    char16_t value = c;
    switch (c) {
      case u'0':
        --i_;
        return ReadOctal();
      case u'x':
        ReadHex(2, value);
        return value;
      case u'u':
        ReadHex(4, value);
        return value;
      case u'c':
        if (i_ < src_.size() && IsAsciiLetter(src_[i_])) return src_[i_++] % 32;
        --i_;  // "c" is read again as a character of its own
        return u'\\';
      default:
        return c;
    }
  }

  // After "[". Builds the set of the class and writes it out.
  bool Class() {
    bool negate = i_ < src_.size() && src_[i_] == u'^';
    if (negate) ++i_;
    CharSet set;
    for (;;) {
      if (i_ >= src_.size()) return false;
      if (src_[i_] == u']') {
        ++i_;
        break;
      }
      ClassAtom a;
      if (!ReadClassAtom(a)) return false;
      if (i_ + 1 < src_.size() && src_[i_] == u'-' && src_[i_ + 1] != u']') {
        ++i_;
        ClassAtom b;
        if (!ReadClassAtom(b)) return false;
        if (a.escape != 0 || b.escape != 0) {
          // A range cannot end in a class escape: both atoms and the dash
          // are members.
          Add(a, set);
          set.Add(u'-');
          Add(b, set);
        } else {
          if (a.c > b.c) return false;
          set.Add(a.c, b.c);
        }
      } else {
        Add(a, set);
      }
    }
    set.Normalize();
    if (cases_ != nullptr) set.CloseOverCase(*cases_);
    if (negate) set.Invert();
    WriteSet(set);
    last_ = Last::kAtom;
    return true;
  }

  struct ClassAtom {
    char16_t c = 0;
    char16_t escape = 0;  // d, D, s, S, w or W for a class escape
  };

  static void Add(const ClassAtom& a, CharSet& set) {
    if (a.escape != 0) {
      AddClassEscape(a.escape, set);
    } else {
      set.Add(a.c);
    }
  }

  bool ReadClassAtom(ClassAtom& a) {
    if (i_ >= src_.size()) return false;
    char16_t c = src_[i_++];
    if (c != u'\\') {
      a.c = c;
      return true;
    }
    if (i_ >= src_.size()) return false;
    c = src_[i_++];
    if (IsClassEscape(c)) {
      a.escape = c;
    } else if (c == u'b') {
      a.c = u'\b';
    } else if (c >= u'1' && c <= u'7') {
      // Inside a class a decimal escape is always octal.
      --i_;
      a.c = ReadOctal();
    } else if (c == u'c' && i_ < src_.size() && (IsDigit(src_[i_]) || src_[i_] == u'_')) {
      a.c = src_[i_++] % 32;
    } else {
      a.c = CharacterEscape(c);
    }
    return true;
  }

  void EmitBackReference(uint32_t n) {
    back_references_ = true;
    out_ += cases_ != nullptr ? u"(?i:\\g{" : u"\\g{";
    AppendDecimal(out_, n);
    out_ += cases_ != nullptr ? u"})" : u"}";
    last_ = Last::kAtom;
  }

  void EmitWordBoundary(bool boundary) {
    if (cases_ == nullptr) {
      out_ += boundary ? u"\\b" : u"\\B";
      return;
    }
    // Under PCRE2_UCP, \b would look at Unicode letters; spell out the ASCII
    // word characters instead.
    constexpr std::u16string_view w = u"[0-9A-Z_a-z]";
    std::u16string_view after_word = boundary ? u"(?!" : u"(?=";
    std::u16string_view after_other = boundary ? u"(?=" : u"(?!";
    out_ += u"(?:(?<=";
    out_ += w;
    out_ += u')';
    out_ += after_word;
    out_ += w;
    out_ += u")|(?<!";
    out_ += w;
    out_ += u')';
    out_ += after_other;
    out_ += w;
    out_ += u"))";
  }

  void EmitLiteral(char16_t c) {
    if (cases_ != nullptr && cases_->Folds(c)) {
      CharSet set;
      set.Add(c);
      set.CloseOverCase(*cases_);
      WriteSet(set);
    } else {
      WriteUnit(c);
    }
    last_ = Last::kAtom;
  }

  // A set built from class escapes or "."; those are closed under case
  // already, except that "." and the complements hold folding letters too,
  // so the closure is applied all the same.
  void EmitSet(CharSet& set) {
    if (cases_ != nullptr) set.CloseOverCase(*cases_);
    WriteSet(set);
    last_ = Last::kAtom;
  }

  void WriteSet(const CharSet& set) {
    const std::vector<Range>& ranges = set.ranges();
    if (ranges.empty()) {
      out_ += u"[^\\x{0}-\\x{ffff}]";
      return;
    }
    if (ranges.size() == 1 && ranges[0].lo == ranges[0].hi) {
      WriteUnit(ranges[0].lo);
      return;
    }
    out_ += u'[';
    for (const Range& r : ranges) {
      WriteUnit(r.lo);
      if (r.hi == r.lo) continue;
      if (r.hi > r.lo + 1) out_ += u'-';
      WriteUnit(r.hi);
    }
    out_ += u']';
  }

  // ASCII letters and digits as they are, everything else as \x{hhhh}: no
  // character of the output has a meaning PCRE2 could read into it.
  void WriteUnit(char16_t c) {
    if (IsAsciiLetter(c) || IsDigit(c)) {
      out_ += c;
      return;
    }
    static constexpr char16_t kHex[] = u"0123456789abcdef";
    out_ += u"\\x{";
    bool started = false;
    for (int shift = 12; shift >= 0; shift -= 4) {
      unsigned d = (c >> shift) & 0xF;
      if (d != 0 || started || shift == 0) {
        out_ += kHex[d];
        started = true;
      }
    }
    out_ += u'}';
  }

  std::u16string_view src_;
  const CaseClasses* cases_;
  std::u16string& out_;
  size_t i_ = 0;
  size_t depth_ = 0;
  uint32_t captures_ = 0;
  bool back_references_ = false;
  Last last_ = Last::kNothing;
};

}  // namespace

CaseClasses::CaseClasses() : ring_(new char16_t[0x10000]) {
  std::vector<int32_t> first(0x10000, -1);
  for (uint32_t c = 0; c < 0x10000; ++c) {
    const char32_t upper = SimpleUpperCase(c);
    uint32_t canonical = c;
    if (upper <= 0xFFFF && !(c >= 128 && upper < 128)) canonical = static_cast<uint32_t>(upper);
    int32_t& head = first[canonical];
    if (head < 0) {
      head = static_cast<int32_t>(c);
      ring_[c] = static_cast<char16_t>(c);
    } else {
      ring_[c] = ring_[head];
      ring_[head] = static_cast<char16_t>(c);
    }
  }
  for (uint32_t c = 0; c < 0x10000; ++c) {
    if (ring_[c] != c) folding_.push_back(static_cast<char16_t>(c));
  }
}

bool TranslateToPcre2(std::u16string_view pattern, const CaseClasses* cases, std::u16string* out,
                      bool* back_references) {
  out->clear();
  Translator translator(pattern, cases, *out);
  const bool ok = translator.Run();
  if (back_references != nullptr) *back_references = translator.back_references();
  return ok;
}

}  // namespace crvlib::platform
