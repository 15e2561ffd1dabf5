// The message catalogue: the texts of the library's own error numbers and the
// number words of NumToWords, looked up by number for the thread's locale.
// The library uses exactly two operations, as it would use a separate
// catalogue component: SetLocale once at start-up, then GetMessage.
//
//   catalogue.GetMessage(1611, {})           == u"Invalid conversion code: "
//   catalogue.GetMessage(1009, {u"\r"})       inserts "\r" where the text says %1
//   catalogue.GetMessage(403, {})             == u"Three"
#ifndef CRVLIB_CORE_MESSAGE_CATALOGUE_H_
#define CRVLIB_CORE_MESSAGE_CATALOGUE_H_

#include <cstdint>
#include <memory>
#include <span>

#include "crvlib/variant.h"

namespace crvlib::internal {

class MessageCatalogue {
 public:
  virtual ~MessageCatalogue() = default;
  virtual void SetLocale(int32_t lcid) = 0;
  // The text of message `number` with "%1" … "%9" replaced by the text of the
  // matching insertion value; "" for a number the catalogue does not hold.
  virtual String GetMessage(int32_t number, std::span<const Variant> inserts) = 0;
};

// The built-in catalogue. It holds English texts, which it serves for every
// locale until a translated table is added.
std::unique_ptr<MessageCatalogue> MakeBuiltinCatalogue();

}  // namespace crvlib::internal

#endif  // CRVLIB_CORE_MESSAGE_CATALOGUE_H_
