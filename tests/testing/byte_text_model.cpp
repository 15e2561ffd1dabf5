#include "tests/testing/byte_text_model.h"

#include <algorithm>

#include "platform/collation.h"

namespace crvlib::testing {
namespace {

bool Odd(int32_t v) {
  return (v & 1) != 0;
}

std::string BytesOf(const String& v) {
  return std::string(reinterpret_cast<const char*>(v.bytes()), static_cast<size_t>(v.LenB()));
}

}  // namespace

String ByteTextModel::Read(int32_t start, int32_t count) {
  start = std::max(start, 0);
  if (start >= Length() || count <= 0) return String();
  count = std::min(count, Length() - start);
  if (Odd(start) || Odd(count)) binary = true;
  return String::FromBytes(bytes.data() + start, static_cast<size_t>(count));
}

void ByteTextModel::Append(const String& v) {
  if (Odd(v.LenB())) binary = true;
  bytes += BytesOf(v);
}

void ByteTextModel::Prefix(const String& v) {
  if (Odd(v.LenB())) binary = true;
  bytes.insert(0, BytesOf(v));
}

void ByteTextModel::Insert(const String& v, int32_t position) {
  if (position <= 0) return Prefix(v);
  if (position >= Length()) return Append(v);
  if (Odd(v.LenB()) || Odd(position)) binary = true;
  bytes.insert(static_cast<size_t>(position), BytesOf(v));
}

void ByteTextModel::Delete(int32_t start, int32_t count) {
  start = std::max(start, 0);
  if (start >= Length() || count < 1) return;
  count = std::min(count, Length() - start);
  if (Odd(start) || Odd(count)) binary = true;
  if (start == 0 && count == Length()) return Clear();
  bytes.erase(static_cast<size_t>(start), static_cast<size_t>(count));
}

void ByteTextModel::Replace(const String& v, int32_t start, int32_t count) {
  start = std::max(start, 0);
  if (start >= Length()) return Append(v);
  count = count > 0 ? std::min(count, Length() - start) : 0;
  if (Odd(start) || Odd(count)) binary = true;
  Delete(start, count);
  Insert(v, start);
}

bool ByteTextModel::MatchesAt(int32_t r, const String& v, bool fold) const {
  const auto* t = reinterpret_cast<const uint8_t*>(bytes.data()) + r;
  const uint8_t* n = v.bytes();
  const int32_t len = v.LenB();
  if (!fold) return std::equal(n, n + len, t);
  if (binary) {
    for (int32_t k = 0; k < len; ++k) {
      if (platform::FoldCase(t[k]) != platform::FoldCase(n[k])) return false;
    }
    return true;
  }
  for (int32_t k = 0; k + 1 < len; k += 2) {
    auto unit = [](const uint8_t* p) { return static_cast<char16_t>(p[0] | p[1] << 8); };
    if (platform::FoldCase(unit(t + k)) != platform::FoldCase(unit(n + k))) return false;
  }
  return true;
}

int32_t ByteTextModel::Find(const String& v, int32_t start, int32_t count, int32_t case_type) {
  const int32_t n = v.LenB();
  if (start >= 0 && start > Length() - n) return -1;
  start = std::max(start, 0);
  if (n == 0) return start;
  if (count < 1 || n > count) return -1;
  count = std::min(count, Length() - start);
  if (Odd(n) || Odd(start) || Odd(count)) binary = true;
  const int32_t step = binary ? 1 : 2;
  for (int32_t r = start; r + n <= start + count; r += step) {
    if (MatchesAt(r, v, case_type == 0)) return r;
  }
  return -1;
}

}  // namespace crvlib::testing
