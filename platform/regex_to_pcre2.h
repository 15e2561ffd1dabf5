// The pattern dialect of platform::RegExp (VBScript 5.5, an ECMAScript
// dialect) rewritten as an explicit PCRE2 pattern, for the PCRE2 backend.
//
// Rather than compile patterns directly and inherit Perl's meaning of `\A`,
// `(?i)`, `(?<=`, `\v` or `[[:alpha:]]`, each pattern is parsed once in the
// VBScript grammar and written out again in a form that leaves PCRE2 nothing
// to interpret: every character that is not an ASCII letter or digit becomes
// `\x{hhhh}`, every character class becomes an explicit list of ranges, and
// only the structure (groups, alternatives, quantifiers, look-aheads,
// back-references) is passed through. A pattern the grammar rejects is a
// syntax error, as it is for the scripting runtime's RegExp object.
//
// The dialect, as translated:
//   .            any unit but line feed (a carriage return matches)
//   \d \w \s     [0-9], [A-Za-z0-9_], [ \f\n\r\t\v]; \D \W \S their complements
//   \b \B        word boundaries with \w as the word characters
//   ^ $          start and very end of the subject ($ is written \z)
//   \f \n \r \t \v \0, \cX, \xhh, \uhhhh, legacy octal \ooo
//   \N           back-reference \g{N} when N is at most the number of groups
//                in the whole pattern; otherwise octal (\8 and \9 are the
//                digits)
//   \ + other    that character itself (\A is "A", \z is "z")
//   [] [^]       the empty class (never matches) and the class of every unit
//   [\d-z]       a class escape next to "-" makes the dash literal
//   { }  ]       literal unless "{" starts a well-formed {n}, {n,} or {n,m}
//   (?: (?= (?!  groups and look-aheads; any other "(?" is a syntax error, as
//                is a quantifier with nothing to repeat (a**, ^*, \b+, {2}).
// Quantifier counts above 65535 (PCRE2's largest) are syntax errors too.
//
// IgnoreCase compares canonical forms, the simple upper-case mapping of each
// unit, where a unit above 127 never maps into ASCII (so "ſ" and the Kelvin
// sign stay apart from "s" and "k"). Literals and classes are expanded to
// their case closure here, so the engine matches case-sensitively; only a
// back-reference is left to the engine's caseless comparison, written
// (?i:\g{N}). Because that needs PCRE2_UCP, under which \b would look at
// Unicode letters, caseless word boundaries are written as look-arounds over
// the ASCII word characters.
//
//   TranslateToPcre2(u"^a.$", nullptr, &out)        out == u"^a[\x{0}-\x{9}\x{b}-\x{ffff}]\z"
//   TranslateToPcre2(u"\u00e9", &cases, &out)       out == u"[\x{c9}\x{e9}]"
//   TranslateToPcre2(u"(?<=a)", nullptr, &out)      == false
#ifndef CRVLIB_PLATFORM_REGEX_TO_PCRE2_H_
#define CRVLIB_PLATFORM_REGEX_TO_PCRE2_H_

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace crvlib::platform {

// The translated form may grow (escapes, case closure); past this it is
// abandoned as too large.
inline constexpr size_t kMaxTranslatedUnits = 1 << 20;

// Units that compare equal when case is ignored, linked in rings: Next(c)
// walks every unit with c's canonical form and comes back to c. Building it
// takes 65536 lookups of the simple upper-case mapping, so a thread builds
// it once, on its first caseless pattern.
class CaseClasses {
 public:
  CaseClasses();

  char16_t Next(char16_t c) const { return ring_[c]; }
  bool Folds(char16_t c) const { return ring_[c] != c; }
  // The units that share their canonical form with another unit, ascending.
  std::span<const char16_t> Folding() const { return folding_; }

 private:
  std::unique_ptr<char16_t[]> ring_;
  std::vector<char16_t> folding_;
};

// Writes the PCRE2 form of `pattern` to `*out`, replacing its contents; with
// `cases` the pattern ignores case. False for a syntax error or a pattern too
// large to compile. `*back_references` (when given) tells whether the pattern
// holds a back-reference.
bool TranslateToPcre2(std::u16string_view pattern, const CaseClasses* cases, std::u16string* out,
                      bool* back_references = nullptr);

}  // namespace crvlib::platform

#endif  // CRVLIB_PLATFORM_REGEX_TO_PCRE2_H_
