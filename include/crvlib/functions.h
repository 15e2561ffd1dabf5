// Functions: the general routines of the library, callable as global
// functions. They keep no state between calls.
//
// The element routines work on a dynamic string array: one string whose
// elements are separated by a delimiter of one or more characters, matched
// exactly (binary, non-overlapping, left to right). Elements count from 1;
// position 0 means the whole string where a routine gives it a meaning, and
// -1 (vxLastPosition) the last element. An empty string has no elements; a
// non-empty one has one element more than it has delimiters ("a|" holds "a"
// and ""). Each element routine runs the DynamicString element engine on a
// fresh object holding the caller's string and returns the new value; the
// caller's string is not changed unless a routine says so.
//
// Every routine runs in the library's error frame: a failure is raised again
// with its number and description and the source "CRVLIB.Functions::<Routine>"
// (exceptions are noted at the routine).
#ifndef CRVLIB_FUNCTIONS_H_
#define CRVLIB_FUNCTIONS_H_

#include <cstdint>
#include <type_traits>
#include <utility>

#include "crvlib/dynamic_string.h"
#include "crvlib/enums.h"
#include "crvlib/export.h"
#include "crvlib/string.h"
#include "crvlib/variant.h"

namespace crvlib {

class CRVLIB_EXPORT Functions {
 public:
  // --- Extraction and counting ---------------------------------------------

  // Element `Position`; "" past the end (2147483647 included). -1 is the
  // last element, 0 the whole string (the delimiter is then not looked at);
  // below -1 raises 5.
  //   Functions::ExtractElement(u"a|b|c", u"|", 2)  == u"b"
  //   Functions::ExtractElement(u"a|b|c", u"|", -1) == u"c"
  //   Functions::ExtractElement(u"a|||b", u"||", 2) == u"|b"
  static String ExtractElement(const String& ArrayValue, const String& Delimiter, int32_t Position);
  //   Functions::CountElements(u"", u"|") == 0
  //   Functions::CountElements(u"a|b|", u"|") == 3
  static int32_t CountElements(const String& ArrayValue, const String& Delimiter);
  //   Functions::CountDelimiters(u"a|b|", u"|") == 2
  //   Functions::CountDelimiters(u"", u"|") == 0
  static int32_t CountDelimiters(const String& ArrayValue, const String& Delimiter);

  // --- Editing ---------------------------------------------------------------

  // Inserts NewElement so that it becomes element Position; beyond the end
  // the array is padded with empty elements.
  //   Functions::InsertElement(u"a|b|c", u"|", 2, u"x") == u"a|x|b|c"
  //   Functions::InsertElement(u"a|b|c", u"|", 6, u"x") == u"a|b|c|||x"
  //   Functions::InsertElement(u"a|", u"|", 2, u"x")    == u"a|x"   // fills the empty last element
  static String InsertElement(const String& ArrayValue, const String& Delimiter, int32_t Position,
                              const String& NewElement);
  // Removes element Position with one delimiter; 0 deletes everything.
  //   Functions::DeleteElement(u"a|b|c", u"|", 2) == u"a|c"
  static String DeleteElement(const String& ArrayValue, const String& Delimiter, int32_t Position);
  // Replaces element Position (padding beyond the end); a negative Position
  // raises 5.
  //   Functions::ReplaceElement(u"a|b|c", u"|", 5, u"x") == u"a|b|c||x"
  static String ReplaceElement(const String& ArrayValue, const String& Delimiter, int32_t Position,
                               const String& Element);
  //   Functions::ChangeDelimiter(u"a|b|c", u"|", u"||") == u"a||b||c"
  static String ChangeDelimiter(const String& ArrayValue, const String& OldDelimiter,
                                const String& NewDelimiter);

  // --- Search ------------------------------------------------------------------

  // The first element at or after Position (0 means 1) that equals, begins
  // with, ends with or contains Element; 0 when none.
  //   Functions::LocateElement(u"Apple|Banana", u"Ban", u"|", 1, vxFirstCharMatch) == 2
  static int32_t LocateElement(const String& ArrayValue, const String& Element,
                               const String& Delimiter, int32_t Position,
                               vxMatchingEnum SearchType = vxExactMatch,
                               vxCaseEnum CaseType = vxCaseSensitive);
  // Regular-expression location is not offered: always 0. A failure reports
  // the source of LocateElement.
  static int32_t MatchElement(const String& ArrayValue, const String& Pattern,
                              const String& Delimiter, int32_t Position,
                              vxMatchOptionsEnum RegexOptions = vxNoOptionsSet);

  // --- Sorting -----------------------------------------------------------------

  // Inserts NewElement into an ordered array and writes the new array back
  // into ArrayValue (also when nothing was inserted). Returns the position
  // given to it, 0 when a duplicate was refused. Equal elements keep their
  // order of arrival.
  //   String s = u"a|c";
  //   Functions::InsertSorted(s, u"|", u"b") == 2
  //   s == u"a|b|c"
  static int32_t InsertSorted(String& ArrayValue, const String& Delimiter, const String& NewElement,
                              vxSortOrderEnum SortOrder = vxAscending,
                              vxJustificationEnum Justification = vxLeftJustify,
                              vxCaseEnum CaseType = vxCaseSensitive,
                              vxDuplicatesEnum AllowDuplication = vxAllowDuplicates);
  // The array sorted by inserting its elements one by one (stable). Empty
  // elements at the very start of the input vanish.
  //   Functions::SortElements(u"10|9|100", u"|") == u"10|100|9"
  //   Functions::SortElements(u"10|9|100", u"|", vxAscending, vxRightJustify) == u"9|10|100"
  static String SortElements(const String& ArrayValue, const String& Delimiter,
                             vxSortOrderEnum SortOrder = vxAscending,
                             vxJustificationEnum Justification = vxLeftJustify,
                             vxCaseEnum CaseType = vxCaseSensitive);

  // --- Array conversions -----------------------------------------------------

  // Splits ArrayValue into NewArray and returns the element count. With
  // vxOneBased the array runs 1..n; with any other base it is zero-based. An
  // empty ArrayValue raises 9.
  static int32_t DynArrayToArray(const String& ArrayValue, const String& Delimiter,
                                 StringArray& NewArray, vxArrayBaseEnum ArrayBase = vxZeroBased);
  // Joins the items by appending each as the last element (so leading empty
  // items vanish).
  static String ArrayToDynArray(const StringArray& ArrayValue, const String& Delimiter);
  // A new DynamicString holding Value.
  static DynamicString ToDynamicString(const String& Value);

  // --- Substrings and characters ---------------------------------------------

  // Replaces every occurrence of FindValue, case-sensitively.
  static String Change(const String& Value, const String& FindValue, const String& ReplaceValue);
  // Value without every occurrence of the first character of Character.
  static String StripChar(const String& Value, const String& Character);
  // Replaces every character of code OldCharASCII by the one of NewCharASCII.
  // Deliberately never returns (it loops for ever) when both codes name the
  // same character and Value holds it: a caller must not pass two equal codes.
  static String Swap(const String& Value, int16_t OldCharASCII, int16_t NewCharASCII);
  // Count elements from Position, joined by Delimiter.
  //   Functions::Field(u"a|b|c", u"|", 2, 2) == u"b|c"
  static String Field(const String& Value, const String& Delimiter, int32_t Position,
                      int32_t Count = 1);
  // The next segment of Value from Position, where every character of
  // Delimiters separates segments; Position is moved on.
  static String ParseStr(const String& Value, const String& Delimiters, int32_t& Position);
  static String ParseStr(const String& Value, const String& Delimiters);
  // The last occurrence of FindStr starting at or before Start; 0 when none.
  static int32_t RevInStr(int32_t Start, const String& Value, const String& FindStr);
  // Pads Value on the left with the first character of PadCharacter to Length.
  static String Pad(const String& Value, const String& PadCharacter, int32_t Length);
  //   Functions::QuoteStr(u"it's") == u"'it''s'"
  static String QuoteStr(const String& Value);
  static String DblQuoteStr(const String& Value);
  static String CenterJustify(const String& Value, int32_t Length,
                              const String& FillCharacter = u" ");
  static String LeftJustify(const String& Value, int32_t Length,
                            const String& FillCharacter = u" ");
  static String RightJustify(const String& Value, int32_t Length,
                             const String& FillCharacter = u" ");

  // --- Paths -------------------------------------------------------------------

  //   Functions::ParseGetDrive(u"C:\\dir\\file.txt")        == u"C"
  //   Functions::ParseGetDrive(u"\\\\srv\\share\\f.txt")    == u"\\\\srv\\share"
  static String ParseGetDrive(const String& FileName);
  //   Functions::ParseGetPath(u"C:\\dir\\sub\\file.txt")    == u"\\dir\\sub\\"
  static String ParseGetPath(const String& FileName);
  //   Functions::ParseGetFullPath(u"C:\\dir\\sub\\file.txt") == u"C:\\dir\\sub\\"
  static String ParseGetFullPath(const String& FileName);
  //   Functions::ParseGetFileName(u"archive.tar.gz") == u"tar"
  static String ParseGetFileName(const String& FileName);
  static String ParseGetFullFileName(const String& FileName);
  //   Functions::ParseGetExtension(u"README") == u"README"
  static String ParseGetExtension(const String& FileName);
  // All four segments at once; the outputs are left unchanged for an empty
  // FileName.
  static void ParseFileName(const String& FileName, String& Drive, String& Path, String& Name,
                            String& Extension);
  // The user's documents folder with a trailing separator, created when
  // missing; "" when there is none. Runs without the error frame.
  static String GetMyDocumentsPath();

  // --- Hex and C strings -----------------------------------------------------

  //   Functions::ConvertStrToHex(u"AB\n") == u"^H41^H42^HA"
  static String ConvertStrToHex(const String& Value);
  // The reverse; a HexString not starting with "^H" raises
  // kObjectErrorBase + 1009 with this routine's source.
  static String ConvertHexToStr(const String& HexString);
  // CString up to its first NUL character.
  static String CStrToBStr(const String& CString);

  // --- Tokens --------------------------------------------------------------------

  // Overwrites each occurrence of Token, in turn, with the text of the next
  // parameter, without changing the length of Value.
  //   Functions::ReplaceParams(u"Hello %1!", u"%1", u"X")   == u"Hello X1!"
  //   Functions::ReplaceParams(u"a%1b", u"%1", u"ABCD")     == u"aABC"
  static String ReplaceParams(const String& Value, const String& Token,
                              const VariantArray& Parameters);
  template <class... Params>
  requires(!(std::is_same_v<std::remove_cvref_t<Params>, VariantArray> || ...)) static String
      ReplaceParams(const String& Value, const String& Token, Params&&... parameters) {
    return ReplaceParams(Value, Token,
                         VariantArray{0, {Variant(std::forward<Params>(parameters))...}});
  }

  // --- Files, pause and words ------------------------------------------------

  // The whole content of a text file, through the code page.
  static String OpenTextFile(const String& FileName);
  // Writes Text and a CR LF to FileName, replacing the file. The file is
  // truncated first and then written, so a write that fails part-way (a full
  // disk, say) leaves a partial file behind.
  static void SaveTextFile(const String& FileName, const String& Text);
  // Waits TimePeriod milliseconds on the seconds-since-midnight timer,
  // yielding the processor each round. A wait whose end falls at or after
  // midnight never returns, as the timer starts again from 0 there.
  static void Pause(int32_t TimePeriod);
  // A currency amount in English words for cheque printing.
  static String NumToWords(Currency Amount);
};

}  // namespace crvlib

#endif  // CRVLIB_FUNCTIONS_H_
