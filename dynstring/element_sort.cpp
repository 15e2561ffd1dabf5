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
// All of this holds while the work array, a join of elements, splits back
// into those elements, also for a delimiter whose occurrences can overlap
// ("||"). An element that was followed by the delimiter in the input had no
// occurrence starting inside it there; such an occurrence would lie within
// the element and that delimiter, so it has none in any join either, and
// the scan of a join stays in step element by element. Only the input's
// last element was not followed by the delimiter, and it may end with a
// part of the delimiter that a following one completes ("a|" + "||"); but
// it is inserted last, so no later step scans a join that holds it, and
// its own insertion only scans the join of the others.
//
// The stable sort itself is a radix sort: each element gets a record whose
// 64-bit key orders it as the comparison's first part does (binary: its
// first four code units; text mode: the first eight bytes of its collation
// sort key, made once per element instead of collating at every
// comparison; numbers: the value mapped to an unsigned integer of the same
// order), and a second key for the part after. An LSD pass per 16-bit digit
// of the key (digits equal everywhere are skipped) keeps equal keys in
// arrival order; each run of equal keys is then finished by the second key,
// the whole comparison, and arrival.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/thread_state.h"
#include "dynstring/element_engine.h"
#include "platform/collation.h"
#include "runtime/code_page.h"
#include "runtime/number_parse.h"

namespace crvlib::internal {
namespace {

// Elements by number, with what their comparison needs made once: the
// numbers (right justification) and the collation sort keys (text mode).
struct Elements {
  std::vector<std::u16string_view> text;
  std::vector<double> number;
  std::vector<uint8_t> is_number;
  std::string keys;               // text mode: the sort keys, back to back
  std::vector<size_t> key_start;  // element i's key is [key_start[i], key_start[i + 1])
  std::string empty_key;          // the sort key of ""
  bool text_mode = false;
  bool numeric = false;

  void MakeKeys() {
    key_start.resize(text.size() + 1);
    keys.reserve(text.size() * 16);
    for (size_t i = 0; i < text.size(); ++i) {
      key_start[i] = keys.size();
      platform::AppendSortKey(text[i], &keys);
    }
    key_start[text.size()] = keys.size();
    platform::AppendSortKey(u"", &empty_key);
  }
  std::string_view Key(size_t i) const {
    return std::string_view(keys).substr(key_start[i], key_start[i + 1] - key_start[i]);
  }

  // CompareElements, step for step.
  int Compare(size_t i, size_t j) const {
    if (numeric && is_number[i] && is_number[j]) {
      if (number[i] < number[j]) return -1;
      if (number[i] > number[j]) return 1;
    }
    return CompareText(i, j);
  }
  // StrComp of elements i and j in the mode of the case type.
  int CompareText(size_t i, size_t j) const {
    return Sign(text_mode ? Key(i).compare(Key(j)) : text[i].compare(text[j]));
  }
  // StrComp of element i and "".
  int CompareWithEmpty(size_t i) const {
    return text_mode ? Sign(Key(i).compare(empty_key)) : text[i].empty() ? 0 : 1;
  }
  static int Sign(int c) { return c < 0 ? -1 : c > 0 ? 1 : 0; }
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
// array order and is not empty; compare(a, b) is CompareElements of
// elements a and b, empty(a) whether element a is "". Returns true when x
// filled an empty last element instead of being inserted before or after.
template <class Compare, class Empty>
bool InsertReplayed(RankedList& list, uint32_t x, bool descending, Compare&& compare,
                    Empty&& empty) {
  const int32_t order = descending ? vxDescending : vxAscending;
  const size_t n = list.size();
  if (GoesAfter(order, compare(x, list.At(n - 1)))) {
    list.Insert(n, x);
    return false;
  }
  const auto mid =
      static_cast<size_t>(SortedPosition(static_cast<int32_t>(n), order, false, [&](int32_t k) {
        return compare(x, list.At(static_cast<size_t>(k) - 1));
      }));
  // InsertElement: position 1 prefixes; the position of an empty last
  // element is filled; beyond the end appends; otherwise it goes before.
  if (mid >= 2 && mid == n && empty(list.At(n - 1))) {
    list.Set(n - 1, x);
    return true;
  }
  list.Insert(std::min(mid, n + 1) - 1, x);
  return false;
}

void InsertReplayed(const Elements& e, RankedList& list, uint32_t x, bool descending) {
  InsertReplayed(
      list, x, descending, [&](uint32_t a, uint32_t b) { return e.Compare(a, b); },
      [&](uint32_t a) { return e.text[a].empty(); });
}

// The elements in `order`, joined by `d`. They lie scattered over the text
// in sorted order, so each one is fetched ahead of its copy (and its view
// ahead of that).
String Join(const Elements& e, const std::vector<uint32_t>& order, std::u16string_view d) {
  size_t total = 0;
  if (!order.empty()) {
    // The sum over the elements taken in index order, not sorted order.
    std::vector<uint8_t> taken(e.text.size(), 0);
    for (uint32_t i : order) taken[i] = 1;
    for (size_t i = 0; i < e.text.size(); ++i) total += taken[i] ? e.text[i].size() : 0;
    total += (order.size() - 1) * d.size();
  }
  std::u16string out;
  out.reserve(total);
  constexpr size_t kAhead = 16;
  for (size_t k = 0; k < order.size(); ++k) {
    if (k + 2 * kAhead < order.size()) __builtin_prefetch(&e.text[order[k + 2 * kAhead]]);
    if (k + kAhead < order.size()) __builtin_prefetch(e.text[order[k + kAhead]].data());
    if (k > 0) out.append(d);
    out.append(e.text[order[k]]);
  }
  return String(std::move(out));
}

// Code units [at, at + 4) of `s`, most significant first, zero-padded:
// ordering by it never contradicts the code-unit order of the whole strings.
uint64_t UnitsKey(std::u16string_view s, size_t at) {
  uint64_t key = 0;
  for (size_t i = at; i < at + 4; ++i) key = key << 16 | (i < s.size() ? s[i] : 0);
  return key;
}

// Bytes [at, at + 8) of a sort key, most significant first, zero-padded (a
// key's only zero byte is the one that ends it).
uint64_t BytesKey(std::string_view key, size_t at) {
  uint64_t v = 0;
  for (size_t i = at; i < at + 8; ++i) {
    v = v << 8 | (i < key.size() ? static_cast<uint8_t>(key[i]) : 0);
  }
  return v;
}

// A number as an unsigned integer of the same order; -0 and 0 compare
// equal and map alike. Never 0 (that is left for the empty elements).
uint64_t NumberKey(double x) {
  if (x == 0) x = 0;
  const uint64_t bits = std::bit_cast<uint64_t>(x);
  return bits >> 63 ? ~bits : bits | uint64_t{1} << 63;
}

struct Record {
  uint64_t key;   // orders as the comparison's first part
  uint64_t key2;  // orders as its next part, where the keys are equal
  uint32_t index;
};

// Stable LSD radix sort of the records by key, 16 bits a pass. The digit
// counts do not depend on the order, so they are taken once for all passes.
void SortByKey(std::vector<Record>& records) {
  const size_t n = records.size();
  if (n < 2) return;
  constexpr size_t kDigits = 1 << 16;
  std::vector<uint32_t> counts(4 * kDigits, 0);
  for (const Record& r : records) {
    for (size_t d = 0; d < 4; ++d) ++counts[d * kDigits + (r.key >> (16 * d) & 0xFFFF)];
  }
  auto spare = std::make_unique_for_overwrite<Record[]>(n);
  Record* from = records.data();
  Record* to = spare.get();
  for (size_t d = 0; d < 4; ++d) {
    uint32_t* count = counts.data() + d * kDigits;
    const unsigned shift = static_cast<unsigned>(16 * d);
    if (count[from[0].key >> shift & 0xFFFF] == n) continue;  // the same digit everywhere
    uint32_t sum = 0;
    for (size_t k = 0; k < kDigits; ++k) {
      const uint32_t c = count[k];
      count[k] = sum;
      sum += c;
    }
    for (size_t i = 0; i < n; ++i) to[count[from[i].key >> shift & 0xFFFF]++] = from[i];
    std::swap(from, to);
  }
  if (from != records.data()) std::copy(from, from + n, records.data());
}

// The stable sort of the elements in `order` by the comparison (descending:
// reversed, ties still by arrival).
void StableSort(const Elements& e, std::vector<uint32_t>& order, bool descending) {
  const uint64_t flip = descending ? ~uint64_t{0} : 0;
  std::vector<Record> records(order.size());
  for (size_t k = 0; k < order.size(); ++k) {
    const uint32_t i = order[k];
    Record& r = records[k];
    r.index = i;
    if (e.numeric) {
      // Only numbers and empty elements come here; "" sorts below numbers.
      r.key = e.is_number[i] ? NumberKey(e.number[i]) : 0;
      r.key2 = e.text_mode ? BytesKey(e.Key(i), 0) : UnitsKey(e.text[i], 0);
    } else if (e.text_mode) {
      r.key = BytesKey(e.Key(i), 0);
      r.key2 = BytesKey(e.Key(i), 8);
    } else {
      r.key = UnitsKey(e.text[i], 0);
      r.key2 = UnitsKey(e.text[i], 4);
    }
    r.key ^= flip;
    r.key2 ^= flip;
  }
  SortByKey(records);
  // Equal keys: the second key, the whole comparison, then arrival.
  auto before = [&](const Record& a, const Record& b) {
    if (a.key2 != b.key2) return a.key2 < b.key2;
    const int c = e.CompareText(a.index, b.index);
    if (c != 0) return descending ? c > 0 : c < 0;
    return a.index < b.index;
  };
  for (size_t i = 0; i < records.size();) {
    size_t j = i + 1;
    while (j < records.size() && records[j].key == records[i].key) ++j;
    if (j - i > 1) {
      std::sort(records.begin() + static_cast<ptrdiff_t>(i),
                records.begin() + static_cast<ptrdiff_t>(j), before);
    }
    i = j;
  }
  for (size_t k = 0; k < records.size(); ++k) order[k] = records[k].index;
}

// The elements of `text` (none for ""), in order.
std::vector<std::u16string_view> Split(std::u16string_view text, const UnitDelimiter& d,
                                       size_t count_hint) {
  std::vector<std::u16string_view> out;
  if (text.empty()) return out;
  out.reserve(count_hint);
  ForEachElement(text, d, [&](std::u16string_view element) { out.push_back(element); });
  return out;
}

}  // namespace

bool SortedJoin(std::u16string_view text, const UnitDelimiter& d, int32_t SortOrder,
                int32_t Justification, int32_t CaseType, size_t count_hint, String* out) {
  // Other case types make the comparison raise; the literal way raises them
  // at its first comparison, if it makes one.
  if (CaseType < 0 || CaseType > 2) return false;
  const bool descending = SortOrder != vxAscending;

  Elements e;
  e.text_mode = CaseType != vxCaseSensitive;
  e.numeric = Justification == vxRightJustify;
  e.text = Split(text, d, count_hint);
  // The empty elements before the first non-empty one vanish.
  const auto first = std::find_if(e.text.begin(), e.text.end(), [](auto s) { return !s.empty(); });
  e.text.erase(e.text.begin(), first);
  const size_t n = e.text.size();
  if (n > UINT32_MAX) return false;
  if (e.text_mode) e.MakeKeys();

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
        consistent = e.is_number[i] ? e.CompareWithEmpty(i) > 0 : e.text[i].empty();
      }
    }
    // With no numbers at all the order is the text's alone.
    if (numbers == 0) e.numeric = false;
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
      const bool like_empty = e.text[i].empty() || (e.text_mode && e.CompareWithEmpty(i) == 0);
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

String SortedBytes(const std::vector<String>& elements, const String& Delimiter, int32_t SortOrder,
                   int32_t Justification, int32_t CaseType) {
  const bool descending = SortOrder != vxAscending;
  const bool odd_delimiter = Delimiter.odd();
  // The work object's byte-mode flag and byte length, as the literal steps
  // would leave them.
  bool binary = false;
  int64_t length = 0;
  std::vector<String> wide(elements.size());
  std::vector<uint8_t> widened(elements.size(), 0);
  auto wide_of = [&](uint32_t i) -> const String& {
    if (!widened[i]) {
      wide[i] = StrConvUnicode(elements[i]);
      widened[i] = 1;
    }
    return wide[i];
  };
  // CompareElements in the work object's mode: in byte mode both sides
  // widened byte by byte (made once per element here).
  auto compare = [&](uint32_t a, uint32_t b) -> int {
    if (!binary)
      return CompareElementValues(elements[a], elements[b], Justification, CaseType, false);
    return CompareElementValues(wide_of(a), wide_of(b), Justification, CaseType, false);
  };
  auto empty = [&](uint32_t a) { return elements[a].LenB() == 0; };

  RankedList list;
  for (uint32_t i = 0; i < elements.size(); ++i) {
    const int32_t size = elements[i].LenB();
    if (length == 0) {
      // Value = the element (an odd length puts the object in byte mode);
      // an empty one leaves the array empty.
      binary = binary || (size & 1) != 0;
      if (size > 0) list.Insert(0, i);
      length = size;
      continue;
    }
    // The count's first search with an odd delimiter puts the object in byte
    // mode, unless the text is too short for it to look at all.
    if (odd_delimiter && length >= Delimiter.LenB()) binary = true;
    const bool filled = InsertReplayed(list, i, descending, compare, empty);
    // The edit: the element, and the delimiter unless it filled an empty
    // last element; odd lengths put the object in byte mode.
    binary = binary || (size & 1) != 0 || (!filled && odd_delimiter);
    length += size + (filled ? 0 : Delimiter.LenB());
  }

  std::string bytes;
  bytes.reserve(static_cast<size_t>(length));
  bool first = true;
  list.ForEach([&](uint32_t v) {
    if (!first)
      bytes.append(reinterpret_cast<const char*>(Delimiter.bytes()), size_t(Delimiter.LenB()));
    first = false;
    bytes.append(reinterpret_cast<const char*>(elements[v].bytes()), size_t(elements[v].LenB()));
  });
  return String::FromBytes(bytes.data(), bytes.size());
}

}  // namespace crvlib::internal
