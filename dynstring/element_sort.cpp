// SortElements without the insertion sort's cost, and with its result.
//
// SortElements inserts the elements, in order, into an empty array with
// InsertElementSorted: a binary search with ties going after, then
// InsertElement. Done literally that is quadratic. Its result is derived
// here instead:
//
// - While the work array is still "" an inserted "" leaves it "", so the
//   empty elements before the first non-empty one vanish.
// - When the comparison is a total preorder (binary or locale text order;
//   right justification when all elements are numbers, or none are, or the
//   only non-numbers are empty), the work array stays ordered and each
//   element goes behind every element it does not sort before: the result is
//   the stable sort of the surviving elements.
// - InsertElement at the position of an empty last element fills it instead
//   of going before it. Ascending, nothing sorts below "", so that position
//   is never asked for. Descending, the elements that compare equal to ""
//   collect at the end; an element goes at the last position exactly when
//   there is one such element, it is truly "", and the newcomer sorts after
//   every other element so far. That "" is then lost.
// - Right justification with numbers and text mixed is not transitive ("9" <
//   "10" as numbers, "10" < "1x" and "1x" < "9" as text). The insertion is
//   then replayed probe by probe on an order-statistic list of element
//   numbers: O(n log² n) comparisons and lookups instead of rescans.
//
// Delimiters whose occurrences can overlap are left to the caller: joining
// two elements can then create a match that splits them differently.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <vector>

#include "core/thread_state.h"
#include "dynstring/element_engine.h"
#include "platform/collation.h"
#include "runtime/number_parse.h"

namespace crvlib::internal {
namespace {

// Elements by number, with their numbers parsed once.
struct Elements {
  std::vector<std::u16string_view> text;
  std::vector<double> number;
  std::vector<uint8_t> is_number;
  bool text_mode = false;
  bool numeric = false;

  // CompareElements, step for step.
  int Compare(size_t i, size_t j) const {
    if (numeric && is_number[i] && is_number[j]) {
      if (number[i] < number[j]) return -1;
      if (number[i] > number[j]) return 1;
    }
    return CompareText(text[i], text[j]);
  }
  int CompareText(std::u16string_view a, std::u16string_view b) const {
    if (text_mode) return platform::TextCompare(a, b);
    const int c = a.compare(b);
    return c < 0 ? -1 : c > 0 ? 1 : 0;
  }
};

// A sequence of element numbers with access by position: blocks of at most
// kMax entries and a Fenwick tree over the block sizes.
class RankedList {
 public:
  size_t size() const { return size_; }

  uint32_t At(size_t k) const {
    const auto [b, off] = Locate(k);
    return blocks_[b][off];
  }
  void Set(size_t k, uint32_t v) {
    const auto [b, off] = Locate(k);
    blocks_[b][off] = v;
  }
  void Insert(size_t k, uint32_t v) {
    if (blocks_.empty()) {
      blocks_.push_back({v});
      Rebuild();
      size_ = 1;
      return;
    }
    size_t b, off;
    if (k == size_) {
      b = blocks_.size() - 1;
      off = blocks_[b].size();
    } else {
      std::tie(b, off) = Locate(k);
    }
    blocks_[b].insert(blocks_[b].begin() + static_cast<ptrdiff_t>(off), v);
    ++size_;
    if (blocks_[b].size() > kMax) {
      std::vector<uint32_t> tail(blocks_[b].begin() + kMax / 2, blocks_[b].end());
      blocks_[b].resize(kMax / 2);
      blocks_.insert(blocks_.begin() + static_cast<ptrdiff_t>(b) + 1, std::move(tail));
      Rebuild();
    } else {
      for (size_t i = b + 1; i <= blocks_.size(); i += i & (~i + 1)) ++tree_[i];
    }
  }
  template <class Fn>
  void ForEach(Fn&& fn) const {
    for (const auto& block : blocks_) {
      for (uint32_t v : block) fn(v);
    }
  }

 private:
  static constexpr size_t kMax = 512;

  std::pair<size_t, size_t> Locate(size_t k) const {
    size_t pos = 0;
    for (size_t step = std::bit_floor(blocks_.size()); step != 0; step >>= 1) {
      if (pos + step <= blocks_.size() && tree_[pos + step] <= k) {
        pos += step;
        k -= tree_[pos];
      }
    }
    return {pos, k};
  }
  void Rebuild() {
    tree_.assign(blocks_.size() + 1, 0);
    for (size_t i = 1; i <= blocks_.size(); ++i) {
      tree_[i] += blocks_[i - 1].size();
      const size_t up = i + (i & (~i + 1));
      if (up <= blocks_.size()) tree_[up] += tree_[i];
    }
  }

  std::vector<std::vector<uint32_t>> blocks_;
  std::vector<size_t> tree_;
  size_t size_ = 0;
};

// InsertElementSorted's placement, replayed: `list` holds element numbers in
// array order and is not empty.
void InsertReplayed(const Elements& e, RankedList& list, uint32_t x, bool descending) {
  auto after = [&](int c) { return (descending ? -c : c) >= 0; };
  const size_t n = list.size();
  int c = e.Compare(x, list.At(n - 1));
  if (after(c)) return list.Insert(n, x);
  size_t lo = 1, hi = n, steps = 1, mid = 0;
  while (hi >= lo) {
    mid = (lo + hi) / 2;
    c = e.Compare(x, list.At(mid - 1));
    if (after(c)) {
      lo = mid + 1;
    } else {
      hi = mid - 1;
    }
    if (++steps > n) {
      mid = n;
      break;
    }
  }
  if (after(c)) ++mid;
  // InsertElement: position 1 prefixes; the position of an empty last
  // element is filled; beyond the end appends; otherwise it goes before.
  if (mid >= 2 && mid == n && e.text[list.At(n - 1)].empty()) return list.Set(n - 1, x);
  list.Insert(std::min(mid, n + 1) - 1, x);
}

String Join(const Elements& e, const std::vector<uint32_t>& order, std::u16string_view d) {
  size_t total = order.empty() ? 0 : (order.size() - 1) * d.size();
  for (uint32_t i : order) total += e.text[i].size();
  std::u16string out;
  out.reserve(total);
  for (size_t k = 0; k < order.size(); ++k) {
    if (k > 0) out.append(d);
    out.append(e.text[order[k]]);
  }
  return String(std::move(out));
}

// The first four code units, most significant first, zero-padded: ordering
// by it never contradicts the code-unit order of the whole strings.
uint64_t PrefixKey(std::u16string_view s) {
  uint64_t key = 0;
  for (size_t i = 0; i < 4; ++i) key = key << 16 | (i < s.size() ? s[i] : 0);
  return key;
}

void StableSort(const Elements& e, std::vector<uint32_t>& order, bool descending) {
  if (!e.text_mode && !e.numeric) {
    struct Keyed {
      uint64_t key;
      uint32_t index;
    };
    std::vector<Keyed> keyed(order.size());
    for (size_t k = 0; k < order.size(); ++k) keyed[k] = {PrefixKey(e.text[order[k]]), order[k]};
    std::sort(keyed.begin(), keyed.end(), [&](const Keyed& a, const Keyed& b) {
      if (a.key != b.key) return descending ? a.key > b.key : a.key < b.key;
      const int c = e.text[a.index].compare(e.text[b.index]);
      if (c != 0) return descending ? c > 0 : c < 0;
      return a.index < b.index;
    });
    for (size_t k = 0; k < order.size(); ++k) order[k] = keyed[k].index;
    return;
  }
  std::sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) {
    const int c = e.Compare(a, b);
    if (c != 0) return descending ? c > 0 : c < 0;
    return a < b;
  });
}

}  // namespace

bool SortedJoin(std::u16string_view text, const UnitDelimiter& d, int32_t SortOrder,
                int32_t Justification, int32_t CaseType, String* out) {
  // Other case types make the comparison raise; the literal way raises them
  // at its first comparison, if it makes one.
  if (d.overlapping() || CaseType < 0 || CaseType > 2) return false;
  const bool descending = SortOrder != vxAscending;

  Elements e;
  e.text_mode = CaseType != vxCaseSensitive;
  e.numeric = Justification == vxRightJustify;
  if (!text.empty()) {
    size_t start = 0;
    for (size_t r = FindDelimiter(text, 0, d); r != kNoMatch; r = FindDelimiter(text, start, d)) {
      e.text.push_back(text.substr(start, r - start));
      start = r + d.size();
    }
    e.text.push_back(text.substr(start));
  }
  // The empty elements before the first non-empty one vanish.
  const auto first = std::find_if(e.text.begin(), e.text.end(), [](auto s) { return !s.empty(); });
  e.text.erase(e.text.begin(), first);
  const size_t n = e.text.size();
  if (n > UINT32_MAX) return false;

  bool consistent = true;
  if (e.numeric) {
    e.number.assign(n, 0);
    e.is_number.assign(n, 0);
    const LocaleSettings& locale = State().locale;
    size_t numbers = 0;
    for (size_t i = 0; i < n; ++i) {
      double x = 0;
      if (TryParseDouble(e.text[i], locale, &x) == ParseStatus::kOk) {
        e.number[i] = x;
        e.is_number[i] = 1;
        ++numbers;
        if (std::isnan(x)) consistent = false;
      }
    }
    if (numbers > 0 && numbers < n) {
      for (size_t i = 0; i < n && consistent; ++i) {
        consistent = e.is_number[i] ? e.CompareText(e.text[i], u"") > 0 : e.text[i].empty();
      }
    }
  }

  std::vector<uint32_t> order;
  if (!consistent) {
    RankedList list;
    for (uint32_t i = 0; i < n; ++i) {
      if (list.size() == 0) {
        list.Insert(0, i);
      } else {
        InsertReplayed(e, list, i, descending);
      }
    }
    order.reserve(n);
    list.ForEach([&](uint32_t v) { order.push_back(v); });
    *out = Join(e, order, d.units());
    return true;
  }

  std::vector<uint8_t> lost(n, 0);
  if (descending) {
    // Track the trailing group of elements equal to "" and the element that
    // sorts last among the others.
    size_t group = 0, group_last = 0, others = 0, lowest = 0;
    for (size_t i = 0; i < n; ++i) {
      const bool like_empty =
          e.text[i].empty() || (e.text_mode && e.CompareText(e.text[i], u"") == 0);
      if (like_empty) {
        ++group;
        group_last = i;
        continue;
      }
      const bool below_all = others == 0 || e.Compare(i, lowest) <= 0;
      if (group == 1 && others > 0 && below_all && e.text[group_last].empty()) {
        lost[group_last] = 1;
        group = 0;
      }
      ++others;
      if (below_all) lowest = i;
    }
  }
  order.reserve(n);
  for (uint32_t i = 0; i < n; ++i) {
    if (!lost[i]) order.push_back(i);
  }
  StableSort(e, order, descending);
  *out = Join(e, order, d.units());
  return true;
}

}  // namespace crvlib::internal
