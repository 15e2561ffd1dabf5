// The Functions class: dynamic string arrays and the general string, path,
// hex, token, file and number-to-words routines, in type-library order.
#include "crvlib/functions.h"
#include "typelib/surface.h"

namespace crvlib::typelib {

// The overloads of ParseStr and ReplaceParams that the type library shows:
// ParseStr with its by-reference Position, ReplaceParams with its
// parameters as one array.
using ParseStrWithPosition = String (*)(const String&, const String&, int32_t&);
using ReplaceParamsWithArray = String (*)(const String&, const String&, const VariantArray&);

ClassInfo FunctionsClass() {
  return GlobalClass(
      "Functions",
      {.clsid = "7CE37537-6A3E-4197-BFF8-335A393746D7",
       .iid = "1B71CBFF-E4B6-458D-A164-EE1955785323"},
      "Dynamic string arrays and general string, path, file and number routines.",
      {
          // Dynamic string arrays.
          CRV_METHOD(
              Functions, ExtractElement,
              "Returns element Position of a dynamic string array (1 the first, -1 the last, 0 "
              "the whole string); \"\" beyond the end.",
              ByRef("ArrayValue"), ByRef("Delimiter"), In("Position")),
          CRV_METHOD(Functions, CountElements,
                     "Returns the number of elements in a dynamic string "
                     "array.",
                     ByRef("ArrayValue"), ByRef("Delimiter")),
          CRV_METHOD(Functions, CountDelimiters,
                     "Returns the number of delimiters in a dynamic "
                     "string array.",
                     ByRef("ArrayValue"), ByRef("Delimiter")),
          CRV_METHOD(
              Functions, InsertElement,
              "Returns the dynamic string array with NewElement inserted as element Position, "
              "padded with empty elements beyond the end.",
              ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"), ByRef("NewElement")),
          CRV_METHOD(Functions, DeleteElement,
                     "Returns the dynamic string array without element "
                     "Position and one delimiter.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), In("Position")),
          CRV_METHOD(Functions, ReplaceElement,
                     "Returns the dynamic string array with element Position replaced by Element, "
                     "padded with empty elements beyond the end.",
                     ByRef("ArrayValue"), ByRef("Delimiter"), In("Position"), ByRef("Element")),
          CRV_METHOD(Functions, ChangeDelimiter,
                     "Returns the dynamic string array with every "
                     "OldDelimiter replaced by NewDelimiter.",
                     ByRef("ArrayValue"), ByRef("OldDelimiter"), ByRef("NewDelimiter")),
          CRV_METHOD(
              Functions, LocateElement,
              "Returns the position of the first element from Position on that equals, begins "
              "with, ends with or contains Element; 0 when there is none.",
              ByRef("ArrayValue"), ByRef("Element"), ByRef("Delimiter"), In("Position"),
              Optional("SearchType", vxExactMatch), Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(
              Functions, MatchElement,
              "Regular-expression location of an element; not offered in this version: always "
              "returns 0.",
              ByRef("ArrayValue"), ByRef("Pattern"), ByRef("Delimiter"), In("Position"),
              Optional("RegexOptions", vxNoOptionsSet)),
          CRV_METHOD(
              Functions, InsertSorted,
              "Inserts NewElement into an ordered dynamic string array held in ArrayValue and "
              "returns its position, or 0 when a duplicate was refused.",
              ByRef("ArrayValue"), ByRef("Delimiter"), ByRef("NewElement"),
              Optional("SortOrder", vxAscending), Optional("Justification", vxLeftJustify),
              Optional("CaseType", vxCaseSensitive),
              Optional("AllowDuplication", vxAllowDuplicates)),
          CRV_METHOD(
              Functions, SortElements,
              "Returns the dynamic string array with its elements sorted (equal elements keep "
              "their order).",
              ByRef("ArrayValue"), ByRef("Delimiter"), Optional("SortOrder", vxAscending),
              Optional("Justification", vxLeftJustify), Optional("CaseType", vxCaseSensitive)),
          CRV_METHOD(
              Functions, DynArrayToArray,
              "Copies the elements of a dynamic string array into NewArray and returns their "
              "number.",
              ByRef("ArrayValue"), ByRef("Delimiter"), ByRef("NewArray"),
              Optional("ArrayBase", vxZeroBased)),
          CRV_METHOD(Functions, ArrayToDynArray,
                     "Returns a dynamic string array made of the items "
                     "of an array of strings.",
                     ByRef("ArrayValue"), ByRef("Delimiter")),
          CRV_METHOD(Functions, ToDynamicString, "Returns a new DynamicString holding Value.",
                     ByRef("Value")),
          // Substrings and characters.
          CRV_METHOD(Functions, Change,
                     "Replaces one sub-string within a string with another sub-string.",
                     ByRef("Value"), ByRef("FindValue"), ByRef("ReplaceValue")),
          CRV_METHOD(Functions, StripChar,
                     "Returns a modified string by stripping out a supplied "
                     "character from the supplied string.",
                     ByRef("Value"), In("Character")),
          CRV_METHOD(Functions, Swap,
                     "Replaces a character within a string with another character, returning a "
                     "converted string. Characters are identified by their ASCII number.",
                     In("Value"), ByRef("OldCharASCII"), ByRef("NewCharASCII"))
              .Note("with two equal codes and the character in Value, Swap never returns."),
          CRV_METHOD(
              Functions, Field,
              "Returns a sub-string from a delimited string after specifying delimiter, starting "
              "position, and the number of sub-strings to returned.",
              ByRef("Value"), ByRef("Delimiter"), In("Position"), Optional("Count", int32_t{1})),
          CRV_METHOD_OVERLOAD(
              Functions, ParseStr, ParseStrWithPosition,
              "Parses a given string returning the next segment based on a starting position "
              "within the string and a set of delimiters that can be used to separate different "
              "segments. Returns the next segment or sub-string from the given string.",
              ByRef("Value"), ByRef("Delimiters"), OptionalByRef("Position", int32_t{1})),
          CRV_METHOD(Functions, RevInStr,
                     "Returns a long integer specifying the position of the "
                     "last occurance of one string within another.",
                     In("Start"), ByRef("Value"), ByRef("FindStr")),
          CRV_METHOD(
              Functions, Pad,
              "Pads a given string with leading characters to fill a given length. The character "
              "to use as the Pad character is also passed as an argument. Returns modified "
              "string.",
              ByRef("Value"), ByRef("PadCharacter"), In("Length")),
          CRV_METHOD(Functions, QuoteStr,
                     "Wraps the passed string in single quotes. Returns modified string.",
                     ByRef("Value")),
          CRV_METHOD(Functions, DblQuoteStr,
                     "Wraps the passed string in double quotes. Returns modified string.",
                     ByRef("Value")),
          CRV_METHOD(
              Functions, CenterJustify,
              "Centers a string into a string of given characters of a specified length. Default "
              "character is a space.",
              ByRef("Value"), In("Length"), Optional("FillCharacter", String(u" "))),
          CRV_METHOD(
              Functions, LeftJustify,
              "Left justifies a string within a string of given characters of a specified length. "
              "Default character is a space.",
              ByRef("Value"), In("Length"), Optional("FillCharacter", String(u" "))),
          CRV_METHOD(Functions, RightJustify,
                     "Right justifies a string within a string of given characters of a specified "
                     "length. Default character is a space.",
                     ByRef("Value"), ByRef("Length"), Optional("FillCharacter", String(u" "))),
          // Paths.
          CRV_METHOD(
              Functions, ParseGetDrive,
              "Returns the drive letter from supplied string, assuming the supplied string is a "
              "full qualified path and file name.",
              ByRef("FileName")),
          CRV_METHOD(
              Functions, ParseGetPath,
              "Returns the path segment from supplied string, assuming the supplied string is a "
              "full qualified path and file name.",
              ByRef("FileName")),
          CRV_METHOD(
              Functions, ParseGetFullPath,
              "Returns the path segment from supplied string, assuming the supplied string is a "
              "full qualified path and file name. The full path includes the drive letter.",
              ByRef("FileName")),
          CRV_METHOD(
              Functions, ParseGetFileName,
              "Returns the file name segment from supplied string, assuming the supplied string "
              "is a full qualified path and file name.",
              ByRef("FileName")),
          CRV_METHOD(
              Functions, ParseGetFullFileName,
              "Returns the file name segment from supplied string, assuming the supplied string "
              "is a full qualified path and file name. The full name includes the file "
              "extension.",
              ByRef("FileName")),
          CRV_METHOD(
              Functions, ParseGetExtension,
              "Returns the file extension segment from supplied string, assuming the supplied "
              "string is a full qualified path and file name.",
              ByRef("FileName")),
          CRV_METHOD(
              Functions, ParseFileName,
              "Returns the different segments from supplied string, assuming the supplied string "
              "is a full qualified path and file name. Updates the Drive, Path, FileName, and "
              "Extension arguments that are passed by reference.",
              ByRef("FileName"), ByRef("Drive"), ByRef("Path"), ByRef("Name"), ByRef("Extension")),
          CRV_METHOD(Functions, GetMyDocumentsPath,
                     "Returns the path to the system's My Documents folder."),
          // Hex and C strings.
          CRV_METHOD(Functions, ConvertStrToHex,
                     "Convert a string to a Hex representation of the string. Each character's Hex "
                     "representation is prefixed with \"^H\".",
                     ByRef("Value")),
          CRV_METHOD(Functions, ConvertHexToStr,
                     "Convert a Hex respresentation of a string to the original string.",
                     ByRef("HexString")),
          CRV_METHOD(Functions, CStrToBStr,
                     "Converts a null terminated C string into a Basic string.", ByRef("CString")),
          // Tokens.
          CRV_METHOD_OVERLOAD(Functions, ReplaceParams, ReplaceParamsWithArray,
                              "Replaces tokens within a string with one or more parameter "
                              "values. Returns new string with tokens replaced with values.",
                              In("Value"), ByRef("Token"), ParamArray("Parameters")),
          // Files, pause and words.
          CRV_METHOD(
              Functions, OpenTextFile,
              "Returns the data from a text file after opening the file using the supplied File "
              "name.",
              ByRef("FileName")),
          CRV_METHOD(Functions, SaveTextFile, "Save supplied text data to file specified.",
                     ByRef("FileName"), ByRef("Text")),
          CRV_METHOD(Functions, Pause,
                     "Causes program to wait for a given number of milliseconds. "
                     "This routine executes a DoEvents.",
                     In("TimePeriod"))
              .Note("a wait whose end falls at or after midnight never returns."),
          CRV_METHOD(
              Functions, NumToWords,
              "Returns a currency amount written out in English words, as for printing a cheque.",
              In("Amount")),
      });
}

}  // namespace crvlib::typelib
