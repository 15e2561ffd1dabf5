// SharedString keeps one string in a named shared memory section: a signed
// 32-bit byte length L at offset 0, then L bytes of UTF-16LE text. The
// section is mapped with room for the length and Size bytes of text, so no
// write this object allows can pass the end of the mapping. Reads and writes
// are plain copies with no locking: the last writer wins.
#include "crvlib/shared_string.h"

#include <cstring>

#include "core/error_frame.h"
#include "dynstring/shared_string_impl.h"

namespace crvlib {
namespace internal {

void SharedStringImpl::Create(const String& Name, int32_t Size) {
  if (Name.Len() == 0) Raise(kInvalidProcedureCall);
  // A negative size would ask the system for a section of about 4 GB.
  if (Size < 0) Raise(kInvalidProcedureCall);
  // A new section arrives zero-filled, which is the length 0 of an empty
  // string; one that is in use keeps its content. The previous section of
  // this object (if any) is released only once the new one is mapped, so
  // creating the same name again keeps the content too. A failure leaves the
  // object as it was.
  platform::SharedMemory::Opened opened =
      platform::SharedMemory::Open(Name.view(), int64_t{Size} + kHeaderBytes);
  section_ = std::move(opened.memory);
  this->Size = Size;
}

String SharedStringImpl::Item() {
  if (!section_) Raise(kTypeMismatch);
  int32_t length;
  std::memcpy(&length, section_->data(), sizeof length);
  // A negative length can only come from a foreign writer; it is refused as
  // a string of negative length is.
  if (length < 0) Raise(kInvalidProcedureCall);
  // Another user with a larger Size may have grown the section and written
  // past what is mapped here; a length beyond the whole section is cut to it.
  if (length + kHeaderBytes > section_->size() && !section_->Reach(length + kHeaderBytes)) {
    length = static_cast<int32_t>(section_->size() - kHeaderBytes);
  }
  // An odd length leaves its last byte out: the string holds whole characters.
  std::u16string text(static_cast<size_t>(length / 2), u'\0');
  std::memcpy(text.data(), section_->data() + kHeaderBytes, text.size() * 2);
  return String(std::move(text));
}

void SharedStringImpl::SetItem(const String& Value) {
  if (!section_) Raise(kTypeMismatch);
  // Only the text counts against Size, not the length in front of it; the
  // mapping has room for both.
  int32_t n = Value.LenB();
  if (n > Size) Raise(kOverflow);
  std::memcpy(section_->data(), &n, sizeof n);
  std::memcpy(section_->data() + kHeaderBytes, Value.bytes(), static_cast<size_t>(n));
}

}  // namespace internal

SharedString::SharedString()
    : impl_(internal::TrapUnnamed(u"CRVLIB.SharedString::Class_Initialize",
                                  [] { return std::make_shared<internal::SharedStringImpl>(); })) {}

void SharedString::Create(const String& Name, int32_t Size) {
  internal::TrapUnnamed(u"CRVLIB.SharedString::Create", [&] { impl_->Create(Name, Size); });
}

String SharedString::Item() const {
  return internal::TrapUnnamed(u"CRVLIB.SharedString::Item", [&] { return impl_->Item(); });
}

void SharedString::SetItem(const String& Value) {
  internal::TrapUnnamed(u"CRVLIB.SharedString::Item", [&] { impl_->SetItem(Value); });
}

}  // namespace crvlib
