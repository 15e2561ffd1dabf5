#include "tests/testing/view_family_model.h"

#include <algorithm>

namespace crvlib::testing {

int ViewFamilyModel::SubString(int v, int32_t start, int32_t length) {
  start = std::min(start, views[v].length);
  views.push_back({v, start, std::min(length, views[v].length - start), false});
  return static_cast<int>(views.size()) - 1;
}

void ViewFamilyModel::Invalidate(int v) {
  if (views[v].invalid) return;
  views[v].invalid = true;
  for (int c = 0; c < static_cast<int>(views.size()); ++c) {
    if (views[c].parent == v) Invalidate(c);
  }
}

void ViewFamilyModel::Adjust(int v, int32_t a, int32_t b, int32_t delta) {
  if (views[v].start + views[v].length <= a) return;
  if (views[v].start >= b) {
    views[v].start += delta;
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
  text.replace(Absolute(v) + start, length, s);
  const int32_t delta = static_cast<int32_t>(s.size()) - length;
  Propagate(v, start, length, delta);
  for (int c = 0; c < static_cast<int>(views.size()); ++c) {
    if (views[c].parent == v && !views[c].invalid) Adjust(c, start, start + length, delta);
  }
}

int32_t ViewFamilyModel::Find(int v, std::u16string_view s, int32_t start, int32_t length,
                              bool fold) const {
  auto same = [fold](char16_t x, char16_t y) {
    auto f = [](char16_t c) { return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c; };
    return fold ? f(x) == f(y) : x == y;
  };
  start = std::clamp(start, 0, views[v].length);
  if (length <= 0) return -1;
  length = std::min(length, views[v].length - start);
  const int32_t from = Absolute(v) + start;
  const int32_t n = static_cast<int32_t>(s.size());
  if (from > static_cast<int32_t>(text.size()) - n) return -1;
  if (n == 0) return from;
  for (int32_t r = from; r + n <= from + length; ++r) {
    if (std::equal(s.begin(), s.end(), text.begin() + r, same)) return r;
  }
  return -1;
}

void ViewFamilyModel::ChangeAll(int v, std::u16string_view old_value, std::u16string_view new_value,
                                bool fold) {
  for (int32_t p = 0;;) {
    const int32_t r = Find(v, old_value, p, views[v].length, fold);
    if (r < 0) return;
    // The root-relative hit is used as a position in the view, with
    // Replace's clamps.
    const int32_t start = std::clamp(r, 0, views[v].length);
    Edit(v, start, std::min<int32_t>(old_value.size(), views[v].length - start), new_value);
    p = r + static_cast<int32_t>(new_value.size());
  }
}

}  // namespace crvlib::testing
