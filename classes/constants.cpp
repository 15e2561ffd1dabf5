// The delimiter marks. Each is made through Chr$ so that it follows the code
// page, as the marks do on the system the library was written for.
#include "crvlib/constants.h"

#include <string_view>

#include "core/error_frame.h"
#include "runtime/code_page.h"

namespace crvlib {
namespace {
String Mark(std::u16string_view source, int32_t code) {
  return internal::Trap(source, [&] { return String(std::u16string(1, internal::Chr(code))); });
}
}  // namespace

String Constants::vxRM() {
  return Mark(u"CRVLIB.Constants::vxRM", 255);
}
String Constants::vxAM() {
  return Mark(u"CRVLIB.Constants::vxAM", 254);
}
String Constants::vxVM() {
  return Mark(u"CRVLIB.Constants::vxVM", 253);
}
String Constants::vxSVM() {
  return Mark(u"CRVLIB.Constants::vxSVM", 252);
}
String Constants::vxTM() {
  return Mark(u"CRVLIB.Constants::vxTM", 251);
}
String Constants::vxEM() {
  return Mark(u"CRVLIB.Constants::vxEM", 250);
}
String Constants::vxVBAR() {
  return Mark(u"CRVLIB.Constants::vxVBAR", 124);
}

}  // namespace crvlib
