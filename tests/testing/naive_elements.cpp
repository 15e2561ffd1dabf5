#include "tests/testing/naive_elements.h"

#include "crvlib/string.h"
#include "dynstring/dynamic_string_impl.h"
#include "platform/collation.h"
#include "runtime/compare.h"

namespace crvlib::testing {
namespace {

// Where element `k` (1-based) starts, counted in code units.
size_t StartOf(std::u16string_view text, std::u16string_view delim, int32_t k) {
  size_t start = 0;
  for (int32_t i = 1; i < k; ++i) start = text.find(delim, start) + delim.size();
  return start;
}

int Compare(std::u16string_view a, std::u16string_view b, int32_t justification,
            int32_t case_type) {
  return internal::CompareElementValues(String(a), String(b), justification, case_type, false);
}

// InsertElement at 1 <= position <= n + 1 of an array of n elements: the
// value goes before element `position`, or fills it when it is the empty
// last one; n + 1 appends after a delimiter.
std::u16string InsertAt(std::u16string text, std::u16string_view delim, int32_t position,
                        std::u16string_view value) {
  const std::u16string d(delim), v(value);
  if (position > static_cast<int32_t>(NaiveSplit(text, delim).size())) return text + d + v;
  const size_t start = StartOf(text, delim, position);
  return start < text.size() ? text.insert(start, v + d) : text + v;
}

bool After(int32_t order, int c) {
  return (order == 0 ? c : -c) >= 0;
}

}  // namespace

std::vector<std::u16string> NaiveSplit(std::u16string_view text, std::u16string_view delim) {
  std::vector<std::u16string> out;
  if (text.empty()) return out;
  size_t start = 0;
  for (size_t r; (r = text.find(delim, start)) != std::u16string_view::npos;
       start = r + delim.size()) {
    out.emplace_back(text.substr(start, r - start));
  }
  out.emplace_back(text.substr(start));
  return out;
}

int32_t NaiveLocate(std::u16string_view text, std::u16string_view delim, std::u16string_view find,
                    int32_t position, int32_t match_type, int32_t case_type) {
  const std::vector<std::u16string> elements = NaiveSplit(text, delim);
  const bool text_mode = case_type == 0;
  auto same = [&](std::u16string_view a) {
    return text_mode ? internal::StrComp(a, find, internal::kTextCompare) == 0 : a == find;
  };
  auto folded = [](std::u16string_view s) {
    std::u16string f(s);
    for (char16_t& c : f) c = platform::FoldCase(c);
    return f;
  };
  for (size_t k = size_t(position > 0 ? position : 1); k <= elements.size(); ++k) {
    const std::u16string& e = elements[k - 1];
    bool hit = false;
    switch (match_type) {
      case 0:
        hit = same(e);
        break;
      case 1:
        hit = same(e.size() < find.size() ? std::u16string() : e.substr(0, find.size()));
        break;
      case 2:
        hit =
            e.size() >= find.size() && same(std::u16string_view(e).substr(e.size() - find.size()));
        break;
      default:
        hit = !e.empty() && e.size() >= find.size() &&
              (text_mode ? folded(e).find(folded(find)) : e.find(find)) != std::u16string::npos;
        break;
    }
    if (hit) return static_cast<int32_t>(k);
  }
  return 0;
}

int32_t NaiveInsertSorted(std::u16string& text, std::u16string_view delim,
                          std::u16string_view value, int32_t order, int32_t justification,
                          int32_t case_type, int32_t allow_duplicates) {
  if (text.empty()) {
    text = value;
    return 1;
  }
  auto element = [&](int32_t k) { return NaiveSplit(text, delim)[size_t(k - 1)]; };
  const int32_t n = static_cast<int32_t>(NaiveSplit(text, delim).size());
  int c = Compare(value, element(n), justification, case_type);
  if (c == 0 && allow_duplicates == 0) return 0;
  if (After(order, c)) {
    text = InsertAt(text, delim, n + 1, value);
    return n + 1;
  }
  // The engine's step-limited search, restated (see the header).
  int32_t lo = 1, hi = n, steps = 1, mid = 0;
  while (hi >= lo) {
    mid = (lo + hi) / 2;
    c = Compare(value, element(mid), justification, case_type);
    if (c == 0 && allow_duplicates == 0) return 0;
    if (After(order, c)) {
      lo = mid + 1;
    } else {
      hi = mid - 1;
    }
    if (++steps > n) {
      mid = n;
      break;
    }
  }
  if (After(order, c)) ++mid;
  text = InsertAt(text, delim, mid, value);
  return mid;
}

std::u16string NaiveSort(std::u16string_view text, std::u16string_view delim, int32_t order,
                         int32_t justification, int32_t case_type) {
  std::u16string work;
  for (const std::u16string& e : NaiveSplit(text, delim)) {
    NaiveInsertSorted(work, delim, e, order, justification, case_type, 1);
  }
  return work;
}

}  // namespace crvlib::testing
