// The delimiter marks. Each is made through Chr$ so that it follows the code
// page, as the marks do on the system the library was written for.
#include "crvlib/constants.h"

#include "runtime/code_page.h"

namespace crvlib {
namespace {
String Mark(int32_t code) {
  return String(std::u16string(1, internal::Chr(code)));
}
}  // namespace

String Constants::vxRM() {
  return Mark(255);
}
String Constants::vxAM() {
  return Mark(254);
}
String Constants::vxVM() {
  return Mark(253);
}
String Constants::vxSVM() {
  return Mark(252);
}
String Constants::vxTM() {
  return Mark(251);
}
String Constants::vxEM() {
  return Mark(250);
}
String Constants::vxVBAR() {
  return Mark(124);
}

}  // namespace crvlib
