// The state behind a SharedString: the mapped section and the size limit of
// the strings stored through this object.
#ifndef CRVLIB_DYNSTRING_SHARED_STRING_IMPL_H_
#define CRVLIB_DYNSTRING_SHARED_STRING_IMPL_H_

#include <cstdint>
#include <memory>

#include "crvlib/string.h"
#include "platform/shared_memory.h"

namespace crvlib::internal {

class SharedStringImpl {
 public:
  // Bytes in front of the text: the signed 32-bit little-endian length.
  static constexpr int64_t kHeaderBytes = 4;
  static constexpr int32_t kDefaultSize = 65535;

  void Create(const String& Name, int32_t Size);
  String Item();
  void SetItem(const String& Value);

 private:
  // Stands for the mapping handle and the view; null until Create succeeds.
  std::unique_ptr<platform::SharedMemory> section_;
  // The most bytes of text SetItem stores.
  int32_t Size = kDefaultSize;
};

}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_SHARED_STRING_IMPL_H_
