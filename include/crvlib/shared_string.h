// SharedString: one string shared between processes through a named shared
// memory section. Each process creates an object, calls Create with the same
// name, then reads and writes Item. There is no locking: the last writer
// wins. A section lives while any object in any process maps it.
//
// Layout of the section: a 4-byte little-endian byte length L, then L bytes
// of UTF-16LE text.
//
//   SharedString a, b;
//   a.Create(u"orders");
//   b.Create(u"orders");
//   a.SetItem(u"x");
//   b.Item() == u"x"
#ifndef CRVLIB_SHARED_STRING_H_
#define CRVLIB_SHARED_STRING_H_

#include <cstdint>
#include <memory>

#include "crvlib/export.h"
#include "crvlib/string.h"

namespace crvlib {

namespace internal {
class SharedStringImpl;
}

class CRVLIB_EXPORT SharedString {
 public:
  SharedString();

  // True for a reference to no object (Nothing).
  bool IsNothing() const { return impl_ == nullptr; }
  // True when both refer to the same object.
  bool Is(const SharedString& other) const { return impl_ == other.impl_; }

  // Maps the section `Name` of `Size` bytes, creating it (empty) when it
  // does not exist yet and keeping its content when it does. An empty Name
  // raises 5; a failing system call raises the system's error code. Size 0
  // gives a section that holds only the empty string; a negative Size raises
  // 5. Calling Create again on the same object maps the new section and lets
  // go of this object's mapping of the first one, which stays alive for its
  // other users (and disappears when it has none).
  void Create(const String& Name, int32_t Size = 65535);

  // The stored string (the default member). Before a successful Create both
  // raise 13; storing more than Size bytes raises 6 and changes nothing.
  String Item() const;
  void SetItem(const String& Value);

  internal::SharedStringImpl& impl() const { return *impl_; }

 private:
  std::shared_ptr<internal::SharedStringImpl> impl_;
};

}  // namespace crvlib

#endif  // CRVLIB_SHARED_STRING_H_
