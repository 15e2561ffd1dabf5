#include "tests/testing/view_family_model.h"

#include <algorithm>

#include "crvlib/error.h"

namespace crvlib::testing {
namespace {

constexpr int32_t kInvalidView = kObjectErrorBase + 1701;
constexpr int32_t kOverflow = 6;
constexpr int32_t kBadArgument = 5;

// Whether a character count still fits a Long once doubled to bytes.
bool Doubles(int32_t chars) {
  const int64_t bytes = int64_t{chars} * 2;
  return bytes >= INT32_MIN && bytes <= INT32_MAX;
}

char16_t Fold(char16_t c) {
  return c >= u'A' && c <= u'Z' ? c + 32 : c;
}

}  // namespace

int32_t ViewFamilyModel::AbsoluteStart(int v) const {
  return v < 0 ? 0 : views[v].start + AbsoluteStart(views[v].parent);
}

std::u16string ViewFamilyModel::Value(int v) const {
  const size_t start = static_cast<size_t>(AbsoluteStart(v));
  if (start >= text.size()) return u"";
  return text.substr(start, static_cast<size_t>(views[v].length));
}

void ViewFamilyModel::Invalidate(int v) {
  if (views[v].invalid) return;
  views[v].invalid = true;
  for (int c = 0; c < static_cast<int>(views.size()); ++c) {
    if (views[c].parent == v) Invalidate(c);
  }
}

void ViewFamilyModel::Adjust(int v, int32_t a, int32_t b, int32_t delta) {
  View& w = views[v];
  if (w.start + w.length <= a) return;
  if (w.start >= b) {
    w.start += delta;
  } else {
    Invalidate(v);
  }
}

void ViewFamilyModel::Propagate(int v, int32_t edit_start, int32_t edit_length, int32_t delta) {
  const int32_t old_length = views[v].length;
  views[v].length += delta;
  const int p = views[v].parent;
  if (p < 0) return;
  Propagate(p, views[v].start, old_length, delta);
  const int32_t a = views[v].start + edit_start;
  for (int s = 0; s < static_cast<int>(views.size()); ++s) {
    if (s != v && views[s].parent == p && !views[s].invalid) Adjust(s, a, a + edit_length, delta);
  }
}

void ViewFamilyModel::Edit(int v, int32_t start, int32_t length, std::u16string_view s) {
  text.replace(static_cast<size_t>(AbsoluteStart(v) + start), static_cast<size_t>(length), s);
  const int32_t delta = static_cast<int32_t>(s.size()) - length;
  Propagate(v, start, length, delta);
  for (int c = 0; c < static_cast<int>(views.size()); ++c) {
    if (views[c].parent == v && !views[c].invalid) Adjust(c, start, start + length, delta);
  }
}

int32_t ViewFamilyModel::SetValue(int v, std::u16string_view s) {
  if (views[v].invalid) return kInvalidView;
  Edit(v, 0, views[v].length, s);
  return 0;
}

int32_t ViewFamilyModel::SubString(int v, int32_t start, int32_t length, int* child) {
  if (views[v].invalid) return kInvalidView;
  if (!Doubles(start) || !Doubles(length)) return kOverflow;
  if (start < 0 || length < 0) return kBadArgument;
  start = std::min(start, views[v].length);
  length = std::min(length, views[v].length - start);
  views.push_back(View{v, start, length, false});
  *child = static_cast<int>(views.size()) - 1;
  return 0;
}

int32_t ViewFamilyModel::Insert(int v, std::u16string_view s, int32_t start) {
  if (views[v].invalid) return kInvalidView;
  if (!Doubles(start)) return kOverflow;
  Edit(v, std::clamp(start, 0, views[v].length), 0, s);
  return 0;
}

int32_t ViewFamilyModel::Append(int v, std::u16string_view s) {
  if (views[v].invalid) return kInvalidView;
  Edit(v, views[v].length, 0, s);
  return 0;
}

int32_t ViewFamilyModel::Prefix(int v, std::u16string_view s) {
  if (views[v].invalid) return kInvalidView;
  Edit(v, 0, 0, s);
  return 0;
}

int32_t ViewFamilyModel::Delete(int v, int32_t start, int32_t length) {
  if (views[v].invalid) return kInvalidView;
  if (!Doubles(start) || !Doubles(length)) return kOverflow;
  start = std::clamp(start, 0, views[v].length);
  if (length > 0) Edit(v, start, std::min(length, views[v].length - start), u"");
  return 0;
}

int32_t ViewFamilyModel::Replace(int v, std::u16string_view s, int32_t start, int32_t length) {
  if (views[v].invalid) return kInvalidView;
  if (!Doubles(start) || !Doubles(length)) return kOverflow;
  start = std::clamp(start, 0, views[v].length);
  Edit(v, start, std::clamp(length, 0, views[v].length - start), s);
  return 0;
}

int32_t ViewFamilyModel::FindChars(int v, std::u16string_view s, int32_t start, int32_t length,
                                   bool fold) {
  start = std::clamp(start, 0, views[v].length);
  if (length <= 0) return -1;
  length = std::min(length, views[v].length - start);
  const int32_t from = AbsoluteStart(v) + start;
  const int32_t n = static_cast<int32_t>(s.size());
  if (from > static_cast<int32_t>(text.size()) - n) return -1;
  if (n == 0) return from;
  if (n > length) return -1;
  for (int32_t r = from; r + n <= from + length; ++r) {
    bool match = true;
    for (int32_t k = 0; k < n && match; ++k) {
      match = fold ? Fold(text[size_t(r + k)]) == Fold(s[size_t(k)])
                   : text[size_t(r + k)] == s[size_t(k)];
    }
    if (match) return r;
  }
  return -1;
}

int32_t ViewFamilyModel::Find(int v, std::u16string_view s, int32_t start, int32_t length,
                              int32_t case_type, int32_t* result) {
  if (views[v].invalid) return kInvalidView;
  if (!Doubles(start) || !Doubles(length)) return kOverflow;
  *result = FindChars(v, s, start, length, case_type == 0);
  return 0;
}

int32_t ViewFamilyModel::ChangeAll(int v, std::u16string_view old_value,
                                   std::u16string_view new_value, int32_t case_type) {
  if (views[v].invalid) return kInvalidView;
  if (old_value.empty()) return kBadArgument;
  int32_t p = 0;
  for (;;) {
    const int32_t r = FindChars(v, old_value, p, views[v].length, case_type == 0);
    if (r < 0) break;
    // The root-relative hit is used as a position in the view, as is.
    const int32_t start = std::clamp(r, 0, views[v].length);
    const int32_t length =
        std::clamp(static_cast<int32_t>(old_value.size()), 0, views[v].length - start);
    Edit(v, start, length, new_value);
    p = r + static_cast<int32_t>(new_value.size());
  }
  return 0;
}

}  // namespace crvlib::testing
