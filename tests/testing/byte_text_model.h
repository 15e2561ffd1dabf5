// A deliberately plain twin of the gap buffer: the text as one contiguous
// byte string, every edit done with std::string operations, every search a
// loop over all start positions. It keeps the Binary flag by the same rules
// as the buffer (odd offsets and counts set it, clearing the text resets it)
// but knows nothing of layouts, gaps or growth.
#ifndef CRVLIB_TESTS_TESTING_BYTE_TEXT_MODEL_H_
#define CRVLIB_TESTS_TESTING_BYTE_TEXT_MODEL_H_

#include <cstdint>
#include <string>

#include "crvlib/string.h"

namespace crvlib::testing {

class ByteTextModel {
 public:
  std::string bytes;
  bool binary = false;

  int32_t Length() const { return static_cast<int32_t>(bytes.size()); }
  String Text() const { return String::FromBytes(bytes.data(), bytes.size()); }

  String Read(int32_t start, int32_t count);
  void Append(const String& v);
  void Prefix(const String& v);
  void Insert(const String& v, int32_t position);
  void Delete(int32_t start, int32_t count);
  void Replace(const String& v, int32_t start, int32_t count);
  // Assumes a valid case type (0 or 1).
  int32_t Find(const String& v, int32_t start, int32_t count, int32_t case_type);
  void Clear() {
    bytes.clear();
    binary = false;
  }

 private:
  bool MatchesAt(int32_t r, const String& v, bool fold) const;
};

}  // namespace crvlib::testing

#endif  // CRVLIB_TESTS_TESTING_BYTE_TEXT_MODEL_H_
