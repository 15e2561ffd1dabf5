// A text builder that keeps short results on the stack and moves to the heap
// only when they grow long, so formatting a number or a date allocates
// nothing but its result.
//
//   TextBuffer b;
//   b.Append(u"12");  b.Append(u':');  b.AppendAscii("30", 2);
//   b.view() == u"12:30"
#ifndef CRVLIB_RUNTIME_TEXT_BUFFER_H_
#define CRVLIB_RUNTIME_TEXT_BUFFER_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "crvlib/string.h"

namespace crvlib::internal {

class TextBuffer {
 public:
  TextBuffer() = default;
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;

  void Append(char16_t c) {
    if (heap_.empty() && size_ < kInline) {
      inline_[size_++] = c;
    } else {
      Spill();
      heap_.push_back(c);
    }
  }
  void Append(std::u16string_view s) {
    if (heap_.empty() && size_ + s.size() <= kInline) {
      for (char16_t c : s) inline_[size_++] = c;
    } else {
      Spill();
      heap_.append(s);
    }
  }
  void Append(size_t count, char16_t c) {
    for (size_t k = 0; k < count; ++k) Append(c);
  }
  void AppendAscii(const char* s, size_t n) {
    for (size_t k = 0; k < n; ++k) Append(static_cast<char16_t>(s[k]));
  }
  // A non-negative number in decimal, at least `width` digits.
  void AppendNumber(long long v, int width = 1) {
    char buf[24];
    int n = 0;
    unsigned long long u = v < 0 ? 0ull - static_cast<unsigned long long>(v) : v;
    do {
      buf[n++] = static_cast<char>('0' + u % 10);
      u /= 10;
    } while (u);
    if (v < 0) Append(u'-');
    for (int k = n; k < width; ++k) Append(u'0');
    while (n) Append(static_cast<char16_t>(buf[--n]));
  }

  size_t size() const { return heap_.empty() ? size_ : heap_.size(); }
  std::u16string_view view() const {
    return heap_.empty() ? std::u16string_view(inline_, size_) : std::u16string_view(heap_);
  }
  String ToString() const { return String(view()); }
  void Clear() {
    size_ = 0;
    heap_.clear();
  }

 private:
  static constexpr size_t kInline = 120;

  void Spill() {
    if (heap_.empty() && size_) {
      heap_.assign(inline_, size_);
      size_ = 0;
    }
  }

  char16_t inline_[kInline];
  size_t size_ = 0;
  std::u16string heap_;
};

}  // namespace crvlib::internal

#endif  // CRVLIB_RUNTIME_TEXT_BUFFER_H_
