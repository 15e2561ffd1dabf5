// The element engine: the operations of a dynamic string array over a text
// host (ObjectText for a DynamicString view, PlainText for a caller's string
// on a fresh state; element_hosts.h).
//
// Everything goes through Scan and its cache (ScanElement, ScanStart, …),
// which behaves exactly as a loop that searches one delimiter per element:
// asking for the cached or the previous element costs nothing, asking for a
// later one continues from the cache, an earlier one starts again from the
// first element, and the cache is left as that loop leaves it. Only the speed
// differs, in the walks of element_walks.h: while the text is searched by
// code units, runs of elements are skipped by counting delimiters
// (element_scan.h), once checkpoints exist a far element is reached from the
// nearest one instead of from the start, a walk by single steps takes its
// matches from a stream collected ahead, and LocateElement tests elements in
// place, in bulk, or (binary mode) only where a match can be; the cache
// fields end up the same either way.
//
// The quirks that follow from the cache and from the edit rules are kept on
// purpose; each is noted where it arises.
#ifndef CRVLIB_DYNSTRING_ELEMENT_ENGINE_H_
#define CRVLIB_DYNSTRING_ELEMENT_ENGINE_H_

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "core/checked.h"
#include "core/error_frame.h"
#include "crvlib/enums.h"
#include "crvlib/string.h"
#include "dynstring/element_hosts.h"
#include "dynstring/element_scan.h"
#include "dynstring/element_walks.h"
#include "runtime/code_page.h"
#include "runtime/compare.h"

namespace crvlib::internal {

// What ExtractElement makes of position -1; the scan never reaches it.
inline constexpr int32_t kLastElement = 2147483647;
// A step back to an element beyond this lays checkpoints over the text.
inline constexpr int32_t kIndexFrom = 1024;

struct ScanAnswer {
  int32_t Start = 0;  // bytes within the view
  int32_t Length = 0;
  bool Found = false;
};

// The sorted value of an array (SortElements' result), from its elements in
// order (about count_hint of them); defined in element_sort.cpp. Returns
// false when the fast way cannot promise the literal result (the caller
// then runs the literal insertion).
bool SortedJoin(std::u16string_view text, const UnitDelimiter& d, int32_t SortOrder,
                int32_t Justification, int32_t CaseType, size_t count_hint, String* out);

// The same for an array read in byte mode, from its elements as the literal
// loop reads them (case types 0 to 2): the insertion is replayed probe by
// probe on the list of elements, with the work object's byte-mode flag
// followed step by step, since it decides whether comparisons widen their
// bytes. O(n log² n).
String SortedBytes(const std::vector<String>& elements, const String& Delimiter, int32_t SortOrder,
                   int32_t Justification, int32_t CaseType);

// Element `Position` of the text: its start and length in bytes and whether
// it exists. Position 0 answers (0, 0, found) untouched; a negative Position
// asks for the last element. An empty delimiter raises 5.
template <class Text>
ScanAnswer Scan(Text& t, const String& Delimiter, int32_t Position) {
  ScanCache& s = t.Cache();
  // The walk's step: the element after the cached one, with the cached
  // delimiter (never empty once an element is cached).
  if (Position == s.ScanElement + 1 && s.ScanElement > 0 && !s.ScanAtEnd &&
      element::SameDelimiter(Delimiter, s.ScanDelimiter)) {
    element::StepOne(t, Delimiter);
    return {s.ScanStart, s.ScanLength, s.ScanElement == Position};
  }
  if (Delimiter.LenB() == 0) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::Scan");
  if (Delimiter != s.ScanDelimiter) {
    s.ScanDelimiter = Delimiter;
    t.ResetScan();
    // Matches collected ahead belong to the old delimiter.
    t.IndexSlot().ForgetAhead();
  }
  if (Position == 0) return {0, 0, true};
  if (Position == s.ScanElement) return {s.ScanStart, s.ScanLength, true};
  if (Position == s.ScanPrevElement) return {s.ScanPrevStart, s.ScanPrevLength, true};
  int32_t target = Position;
  bool backwards = false;
  if (Position < 0) {
    if (s.ScanAtEnd) return {t.LengthB(), 0, true};
    target = kScanToEnd;
  } else if (Position < s.ScanElement) {
    t.ResetScan();
    // Far enough back that the literal walk from the start may be repeated
    // (a binary search's probes): worth laying checkpoints.
    backwards = Position > kIndexFrom;
  } else if (s.ScanAtEnd) {
    return {t.LengthB(), 0, false};
  }
  element::Advance(t, Delimiter, target, backwards);
  return {s.ScanStart, s.ScanLength, s.ScanElement == target || target == kScanToEnd};
}

template <class Text>
int32_t CountElements(Text& t, const String& Delimiter) {
  Scan(t, Delimiter, -1);
  return t.Cache().ScanElement;
}

struct ElementSpan {
  int32_t Start = 0;
  int32_t Length = 0;
  bool Eof = false;  // the position was not found
};

// Where ExtractElement's view lies. -1 is taken as 2147483647, which the scan
// never reaches: it runs to the last element and reports it, unless the cache
// already knows the end, when the answer is an empty range at the end. This
// dependence on the cache is deliberate. Only the caller's -1 asks for the
// last element; a caller's 2147483647 is a position past the end like any
// other.
template <class Text>
ElementSpan ExtractElement(Text& t, const String& Delimiter, int32_t Position) {
  const bool last = Position == -1;
  if (last) {
    Position = kLastElement;
  } else if (Position < 0) {
    Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::ExtractElement");
  }
  if (Position == 0) return {0, t.LengthB(), false};
  const ScanAnswer a = Scan(t, Delimiter, Position);
  if (a.Found) return {a.Start, a.Length, false};
  if (last) return {a.Start, a.Length, true};
  return {t.LengthB(), 0, true};
}

template <class Text>
String ElementText(Text& t, const String& Delimiter, int32_t Position) {
  const ScanAnswer a = Scan(t, Delimiter, Position);
  return t.ReadB(a.Start, a.Length);
}

// Inserts NewValue so that it becomes element Position. Two consequences of
// the rules are kept deliberately: at the position of an empty last element
// NewValue fills that element; a Position below -1 asks the scan for the
// last element, so NewValue goes before it, or, once the cache knows the
// end (the scan then answers the end itself), is appended with no delimiter.
template <class Text>
void InsertElement(Text& t, const String& NewValue, const String& Delimiter, int32_t Position) {
  if (Position <= 1 && t.LengthB() == 0) return t.SetValue(NewValue);
  if (Position == 0 || Position == 1) return t.InsertBoth(Delimiter, NewValue, 0, true);
  if (Position == -1) return t.InsertBoth(Delimiter, NewValue, t.LengthB(), false);
  const ScanAnswer a = Scan(t, Delimiter, Position);
  if (a.Found && a.Start < t.LengthB()) return t.InsertBoth(NewValue, Delimiter, a.Start, false);

  // Pad with empty elements so that NewValue lands at Position. The appends
  // are made as one; the result and the cache are those of one at a time,
  // and a text that would outgrow the string limit fails before any change.
  const int32_t reached = t.Cache().ScanElement == 0 ? 1 : t.Cache().ScanElement;
  const int64_t pads = int64_t{Position} - reached > 0 ? int64_t{Position} - reached : 0;
  const int64_t total = int64_t{t.LengthB()} + pads * Delimiter.LenB() + NewValue.LenB();
  if (total > String::kMaxBytes) Raise(kOverflow);
  if (pads == 0) return t.Append(NewValue);
  std::u16string run;
  if (!Delimiter.odd() && !NewValue.odd()) {
    run.reserve(static_cast<size_t>(total - t.LengthB()) / 2);
    for (int64_t i = 0; i < pads; ++i) run.append(Delimiter.view());
    run.append(NewValue.view());
    return t.Append(String(std::move(run)));
  }
  // Byte mode: the run is assembled byte by byte.
  std::string bytes;
  for (int64_t i = 0; i < pads; ++i) {
    bytes.append(reinterpret_cast<const char*>(Delimiter.bytes()), size_t(Delimiter.LenB()));
  }
  bytes.append(reinterpret_cast<const char*>(NewValue.bytes()), size_t(NewValue.LenB()));
  t.MarkBinary();
  t.Append(String::FromBytes(bytes.data(), bytes.size()));
}

template <class Text>
void DeleteElement(Text& t, const String& Delimiter, int32_t Position) {
  if (Position < -1) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::DeleteElement");
  if (Position == 0) return t.DeleteB(0, t.LengthB());
  const int32_t target = Position == -1 ? CountElements(t, Delimiter) : Position;
  const ScanAnswer a = Scan(t, Delimiter, target);
  if (!a.Found) return;
  const int32_t m = Delimiter.LenB();
  if (a.Start > 0) return t.DeleteB(a.Start - m, CheckedAdd(a.Length, m));
  t.DeleteB(0, CheckedAdd(a.Length, m));
}

template <class Text>
void ReplaceElement(Text& t, const String& NewValue, const String& Delimiter, int32_t Position) {
  // Unlike the other members, replacement has no "last element" position.
  if (Position < 0) Raise(kInvalidProcedureCall, u"CRVLIB.DynamicString::ReplaceElement");
  if (Position == 0) return t.SetValue(NewValue);
  const ScanAnswer a = Scan(t, Delimiter, Position);
  if (a.Found) return t.ReplaceB(NewValue, a.Start, a.Length);
  InsertElement(t, NewValue, Delimiter, Position);
}

// The candidate's comparison with FindValue: StrComp in the mode of CaseType,
// or, in byte mode, exact bytes (CaseType not 0) or the widened texts.
template <class Text>
bool SameElement(Text& t, const String& candidate, const String& FindValue, int32_t CaseType) {
  if (!t.Binary()) return StrComp(candidate.view(), FindValue.view(), ModeOfCase(CaseType)) == 0;
  if (CaseType != vxCaseNotSensitive) return candidate == FindValue;
  return StrComp(StrConvUnicode(candidate).view(), StrConvUnicode(FindValue).view(),
                 kTextCompare) == 0;
}

template <class Text>
int32_t LocateElement(Text& t, const String& FindValue, const String& Delimiter, int32_t Position,
                      int32_t MatchType, int32_t CaseType) {
  constexpr std::u16string_view kSource = u"CRVLIB.DynamicString::LocateElement";
  if (Position < 0) Raise(kInvalidProcedureCall, kSource);
  if (Position == 0) Position = 1;
  const int32_t n = FindValue.LenB();
  for (int32_t e = Position;; e = CheckedAdd(e, 1)) {
    const ScanAnswer a = Scan(t, Delimiter, e);
    if (!a.Found) return 0;
    // The match type is looked at only once an element has been scanned.
    if (MatchType < vxExactMatch || MatchType > vxSubStringMatch) {
      Raise(kInvalidProcedureCall, kSource);
    }
    // In place on code units, for the comparison modes that cannot raise
    // (CaseType 0, 1 or 2) and a text the scan reads in place; byte mode and
    // a value with a lone byte read the candidate as bytes.
    if (CaseType >= 0 && CaseType <= 2 && !FindValue.odd() && t.UnitMode(Delimiter) &&
        t.Contiguous()) {
      const element::ElementMatch match(FindValue.view(), MatchType, CaseType != vxCaseSensitive);
      const std::u16string_view units = t.Units();
      if (match(
              units.substr(static_cast<size_t>(a.Start) / 2, static_cast<size_t>(a.Length) / 2))) {
        return e;
      }
      const ScanCache& s = t.Cache();
      if (s.ScanElement != e || s.ScanAtEnd) continue;
      const UnitDelimiter d(Delimiter.view());
      const size_t f = FindValue.view().size();
      if (CaseType == vxCaseSensitive && !d.overlapping() && d.size() <= 2 && f > 0) {
        return element::LocateSearching(t, d, FindValue.view(), MatchType);
      }
      return element::LocateOnwards(t, Delimiter, match);
    }
    int32_t s = a.Start;
    int32_t l = a.Length;
    switch (MatchType) {
      case vxExactMatch:
        break;
      case vxFirstCharMatch:
        l = a.Length < n ? 0 : n;
        break;
      case vxLastCharMatch:
        if (a.Length < n) continue;
        s = a.Start + a.Length - n;
        l = n;
        break;
      default:
        // Searching an empty element finds nothing, even an empty FindValue.
        if (a.Length >= n && t.FindB(FindValue, a.Start, a.Length, CaseType) >= 0) return e;
        continue;
    }
    if (SameElement(t, t.ReadB(s, l), FindValue, CaseType)) return e;
  }
}

// Ties go after: equal elements keep their order of arrival.
inline bool GoesAfter(int32_t SortOrder, int32_t c) {
  return (SortOrder == vxAscending ? c : -c) >= 0;
}

// The binary search that places a new element among elements 1..n (n >= 1),
// kept as it has always run: it gives up after n probes, and the last
// comparison decides whether the element goes before or after the last
// probed one. compare(k) compares the new value with element k. Returns the
// position to insert at, or 0 when `reject_equal` and an equal element turned
// up (a midpoint is never 0, since lo >= 1).
template <class Compare>
int32_t SortedPosition(int32_t n, int32_t SortOrder, bool reject_equal, Compare&& compare) {
  int32_t lo = 1, hi = n, steps = 1, mid = 0, c = 0;
  while (hi >= lo) {
    mid = CheckedAdd(lo, hi) / 2;
    c = compare(mid);
    if (c == 0 && reject_equal) return 0;
    if (GoesAfter(SortOrder, c)) {
      lo = mid + 1;
    } else {
      hi = mid - 1;
    }
    if (++steps > n) {
      mid = n;
      break;
    }
  }
  return GoesAfter(SortOrder, c) ? mid + 1 : mid;
}

template <class Text>
int32_t InsertElementSorted(Text& t, const String& NewValue, const String& Delimiter,
                            int32_t SortOrder, int32_t Justification, int32_t CaseType,
                            int32_t AllowDuplication) {
  if (t.LengthB() == 0) {
    t.SetValue(NewValue);
    return 1;
  }
  auto compare = [&](int32_t position) {
    const String element = ElementText(t, Delimiter, position);
    return CompareElementValues(NewValue, element, Justification, CaseType, t.Binary());
  };
  const int32_t n = CountElements(t, Delimiter);
  int32_t c = compare(n);
  if (c == 0 && AllowDuplication == vxNoDuplicates) return 0;
  // Ordered input costs one comparison: it goes after the last element.
  if (GoesAfter(SortOrder, c)) {
    InsertElement(t, NewValue, Delimiter, -1);
    return CheckedAdd(n, 1);
  }
  const int32_t at = SortedPosition(n, SortOrder, AllowDuplication == vxNoDuplicates, compare);
  if (at != 0) InsertElement(t, NewValue, Delimiter, at);
  return at;
}

// The value SortElements gives the text: its elements inserted one by one,
// in order, into an empty array with InsertElementSorted. The cache is left
// as the walk over the elements leaves it (the same as after the count).
template <class Text>
String SortedValue(Text& t, const String& Delimiter, int32_t SortOrder, int32_t Justification,
                   int32_t CaseType) {
  const int32_t n = CountElements(t, Delimiter);
  String out;
  if (t.UnitMode(Delimiter) && SortedJoin(t.Units(), UnitDelimiter(Delimiter.view()), SortOrder,
                                          Justification, CaseType, static_cast<size_t>(n), &out)) {
    return out;
  }
  if (CaseType >= 0 && CaseType <= 2) {
    std::vector<String> elements;
    elements.reserve(static_cast<size_t>(n));
    for (int32_t i = 1; i <= n; ++i) elements.push_back(ElementText(t, Delimiter, i));
    return SortedBytes(elements, Delimiter, SortOrder, Justification, CaseType);
  }
  // The literal insertion, for case types whose comparison raises: it
  // raises at its first comparison, the second element's.
  auto work = std::make_shared<DynamicStringImpl>();
  ObjectText w(*work);
  for (int32_t i = 1; i <= n; ++i) {
    InsertElementSorted(w, ElementText(t, Delimiter, i), Delimiter, SortOrder, Justification,
                        CaseType, vxAllowDuplicates);
  }
  return work->Value();
}

}  // namespace crvlib::internal

#endif  // CRVLIB_DYNSTRING_ELEMENT_ENGINE_H_
