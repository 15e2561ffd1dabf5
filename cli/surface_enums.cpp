// The enumerations of the type library, members in declaration order. Each
// member's help string is its own name, so only names and values are kept.
#include "crvlib/enums.h"

#include "cli/surface.h"

namespace crvlib::cli {

const std::vector<EnumInfo>& Enumerations() {
  static const std::vector<EnumInfo> enums = {
      {"vxLibErrorCodes",
       {{"vxInvalidEntry", vxInvalidEntry},
        {"vxInvalidHexString", vxInvalidHexString},
        {"vxInvalidConversionCode", vxInvalidConversionCode},
        {"vxInvalidDynamicString", vxInvalidDynamicString}}},
      {"vxCaseEnum",
       {{"vxCaseNotSensitive", vxCaseNotSensitive}, {"vxCaseSensitive", vxCaseSensitive}}},
      {"vxMatchOptionsEnum",
       {{"vxNoOptionsSet", vxNoOptionsSet},
        {"vxIgnoreCase", vxIgnoreCase},
        {"vxIgnorePatternWhiteSpaces", vxIgnorePatternWhiteSpaces},
        {"vxDotMatchesAllMode", vxDotMatchesAllMode},
        {"vxEnhancedLineAnchorMode", vxEnhancedLineAnchorMode},
        {"vxExplicitCapture", vxExplicitCapture},
        {"vxRightToLeft", vxRightToLeft},
        {"vxLiteralTextMode", vxLiteralTextMode}}},
      {"vxSortOrderEnum", {{"vxAscending", vxAscending}, {"vxDescending", vxDescending}}},
      {"vxJustificationEnum",
       {{"vxLeftJustify", vxLeftJustify}, {"vxRightJustify", vxRightJustify}}},
      {"vxDuplicatesEnum",
       {{"vxNoDuplicates", vxNoDuplicates}, {"vxAllowDuplicates", vxAllowDuplicates}}},
      {"vxPositionEnum",
       {{"vxFirstPosition", vxFirstPosition}, {"vxLastPosition", vxLastPosition}}},
      {"vxMatchingEnum",
       {{"vxExactMatch", vxExactMatch},
        {"vxFirstCharMatch", vxFirstCharMatch},
        {"vxLastCharMatch", vxLastCharMatch},
        {"vxSubStringMatch", vxSubStringMatch},
        {"vxRegexMatch", vxRegexMatch}}},
      {"vxArrayBaseEnum", {{"vxZeroBased", vxZeroBased}, {"vxOneBased", vxOneBased}}},
  };
  return enums;
}

}  // namespace crvlib::cli
