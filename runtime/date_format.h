// Dates and times written with the locale's Windows pictures, and the
// runtime's text form of a Date (CStr): the short date and the long time,
// the date alone at midnight, the time alone on day 0.
//
// Picture letters: d dd (day), ddd dddd (day name), M MM (month), MMM MMMM
// (month name), y (year without century, no padding), yy, yyyy, h hh (12-hour),
// H HH (24-hour), m mm (minutes), s ss (seconds), t tt (first letter of / the
// whole AM or PM designator); '...' is quoted text ('' a quote); any other
// character stands for itself.
//   en-US: DateToText(38352.75) == u"12/31/2004 6:00:00 PM"
//          DateToText(38352)    == u"12/31/2004"      DateToText(0.5) == u"12:00:00 PM"
#ifndef CRVLIB_RUNTIME_DATE_FORMAT_H_
#define CRVLIB_RUNTIME_DATE_FORMAT_H_

#include <string_view>

#include "core/locale_settings.h"
#include "crvlib/string.h"
#include "runtime/date_time.h"
#include "runtime/text_buffer.h"

namespace crvlib::internal {

void AppendPicture(TextBuffer& out, std::u16string_view picture, const DateParts& parts,
                   const LocaleSettings& locale);

// False (and nothing written) for a serial outside the date range.
bool AppendDateText(TextBuffer& out, double serial, const LocaleSettings& locale);

// The time part alone in the long time picture (the Format token ttttt).
void AppendTimeText(TextBuffer& out, const DateParts& parts, const LocaleSettings& locale);

// CStr of a Date; error 6 outside the date range.
String DateToText(double serial, const LocaleSettings& locale);

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_DATE_FORMAT_H_
