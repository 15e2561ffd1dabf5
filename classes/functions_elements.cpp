// The element routines of Functions: each runs the element engine
// (dynstring/element_engine.h) once, on a fresh state holding the caller's
// string, inside the Functions error frame.
//
// A fresh DynamicString would copy the string into a gap buffer first; the
// engine's PlainText host reads the caller's string in place instead and
// gives the same answers, since a fresh object's scan cache and edits start
// from nothing. Strings with an odd byte length put an object into byte mode,
// which PlainText does not model, so those calls run on a real object.
#include <initializer_list>
#include <memory>
#include <type_traits>

#include "core/checked.h"
#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "dynstring/element_engine.h"

namespace crvlib {
namespace {

using internal::CheckedAdd;
using internal::CheckedSub;
using internal::ObjectText;
using internal::PlainText;
using internal::Trap;
using std::literals::operator""sv;

// Runs `fn` on a host holding ArrayValue.
template <class Fn>
decltype(auto) OnFreshArray(const String& ArrayValue, std::initializer_list<const String*> others,
                            Fn&& fn) {
  bool whole = !ArrayValue.odd();
  for (const String* s : others) whole = whole && !s->odd();
  if (whole) {
    PlainText t(ArrayValue);
    return fn(t);
  }
  auto object = std::make_shared<internal::DynamicStringImpl>();
  object->SetValue(ArrayValue);
  ObjectText t(*object);
  return fn(t);
}

// The runtime's Split: zero-based, at every occurrence of Delimiter. It
// works on characters, so a lone trailing byte is not looked at, and a
// delimiter of no whole character (one byte) gives the whole string as the
// only item, as Split does for "".
StringArray Split(const String& Value, const String& Delimiter, size_t count) {
  StringArray out;
  if (Delimiter.view().empty()) {
    out.items.emplace_back(Value.view());
    return out;
  }
  out.items.reserve(count);
  internal::ForEachElement(Value.view(), internal::UnitDelimiter(Delimiter.view()),
                           [&](std::u16string_view item) { out.items.emplace_back(item); });
  return out;
}

}  // namespace

String Functions::ExtractElement(const String& ArrayValue, const String& Delimiter,
                                 int32_t Position) {
  return Trap(u"CRVLIB.Functions::ExtractElement"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter}, [&](auto& t) {
      const internal::ElementSpan span = internal::ExtractElement(t, Delimiter, Position);
      return t.ReadB(span.Start, span.Length);
    });
  });
}

int32_t Functions::CountElements(const String& ArrayValue, const String& Delimiter) {
  return Trap(u"CRVLIB.Functions::CountElements"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter},
                        [&](auto& t) { return internal::CountElements(t, Delimiter); });
  });
}

int32_t Functions::CountDelimiters(const String& ArrayValue, const String& Delimiter) {
  return Trap(u"CRVLIB.Functions::CountDelimiters"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter}, [&](auto& t) {
      const int32_t n = internal::CountElements(t, Delimiter);
      return n > 0 ? n - 1 : 0;
    });
  });
}

String Functions::InsertElement(const String& ArrayValue, const String& Delimiter, int32_t Position,
                                const String& NewElement) {
  return Trap(u"CRVLIB.Functions::InsertElement"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter, &NewElement}, [&](auto& t) {
      internal::InsertElement(t, NewElement, Delimiter, Position);
      return t.TakeValue();
    });
  });
}

String Functions::DeleteElement(const String& ArrayValue, const String& Delimiter,
                                int32_t Position) {
  return Trap(u"CRVLIB.Functions::DeleteElement"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter}, [&](auto& t) {
      internal::DeleteElement(t, Delimiter, Position);
      return t.TakeValue();
    });
  });
}

String Functions::ReplaceElement(const String& ArrayValue, const String& Delimiter,
                                 int32_t Position, const String& Element) {
  return Trap(u"CRVLIB.Functions::ReplaceElement"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter, &Element}, [&](auto& t) {
      internal::ReplaceElement(t, Element, Delimiter, Position);
      return t.TakeValue();
    });
  });
}

String Functions::ChangeDelimiter(const String& ArrayValue, const String& OldDelimiter,
                                  const String& NewDelimiter) {
  return Trap(u"CRVLIB.Functions::ChangeDelimiter"sv, [&] {
    // ChangeAll would refuse an empty OldDelimiter; the routine never asks it.
    if (OldDelimiter.LenB() == 0) return ArrayValue;
    String changed;
    if (internal::ChangeAllOfFresh(ArrayValue, OldDelimiter, NewDelimiter, &changed)) {
      return changed;
    }
    DynamicString d;
    d.SetValue(ArrayValue);
    d.ChangeAll(OldDelimiter, NewDelimiter, vxCaseSensitive);
    return d.Value();
  });
}

int32_t Functions::LocateElement(const String& ArrayValue, const String& Element,
                                 const String& Delimiter, int32_t Position,
                                 vxMatchingEnum SearchType, vxCaseEnum CaseType) {
  return Trap(u"CRVLIB.Functions::LocateElement"sv, [&] {
    return OnFreshArray(ArrayValue, {&Element, &Delimiter}, [&](auto& t) {
      return internal::LocateElement(t, Element, Delimiter, Position, SearchType, CaseType);
    });
  });
}

int32_t Functions::MatchElement(const String& ArrayValue, const String& Pattern,
                                const String& Delimiter, int32_t Position,
                                vxMatchOptionsEnum RegexOptions) {
  // Deliberately reports LocateElement's source, should the object fail.
  return Trap(u"CRVLIB.Functions::LocateElement"sv, [&] {
    DynamicString d = ToDynamicString(ArrayValue);
    return d.MatchElement(Pattern, Delimiter, Position, RegexOptions);
  });
}

int32_t Functions::InsertSorted(String& ArrayValue, const String& Delimiter,
                                const String& NewElement, vxSortOrderEnum SortOrder,
                                vxJustificationEnum Justification, vxCaseEnum CaseType,
                                vxDuplicatesEnum AllowDuplication) {
  return Trap(u"CRVLIB.Functions::InsertSorted"sv, [&] {
    if (!ArrayValue.odd() && !Delimiter.odd() && !NewElement.odd() && &NewElement != &ArrayValue &&
        &Delimiter != &ArrayValue) {
      // The result goes back into ArrayValue, so the insertion is made
      // there: one count pass (which lays the checkpoints the binary search
      // probes), then one move of the text behind the new element. Every
      // error comes before that edit, so a failed call leaves ArrayValue as
      // it was.
      PlainText t = PlainText::EditingInPlace(&ArrayValue);
      return internal::InsertElementSorted(t, NewElement, Delimiter, SortOrder, Justification,
                                           CaseType, AllowDuplication);
    }
    return OnFreshArray(ArrayValue, {&Delimiter, &NewElement}, [&](auto& t) {
      const int32_t position = internal::InsertElementSorted(
          t, NewElement, Delimiter, SortOrder, Justification, CaseType, AllowDuplication);
      // Written back whether or not anything was inserted.
      ArrayValue = t.TakeValue();
      return position;
    });
  });
}

String Functions::SortElements(const String& ArrayValue, const String& Delimiter,
                               vxSortOrderEnum SortOrder, vxJustificationEnum Justification,
                               vxCaseEnum CaseType) {
  return Trap(u"CRVLIB.Functions::SortElements"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter}, [&](auto& t) {
      return internal::SortedValue(t, Delimiter, SortOrder, Justification, CaseType);
    });
  });
}

int32_t Functions::DynArrayToArray(const String& ArrayValue, const String& Delimiter,
                                   StringArray& NewArray, vxArrayBaseEnum ArrayBase) {
  return Trap(u"CRVLIB.Functions::DynArrayToArray"sv, [&] {
    return OnFreshArray(ArrayValue, {&Delimiter}, [&](auto& t) {
      const int32_t n = internal::CountElements(t, Delimiter);
      // ReDim NewArray(ArrayBase To n + ArrayBase - 1): no elements is an
      // upper bound below the lower one, error 9.
      const int32_t upper = CheckedSub(CheckedAdd(n, ArrayBase), 1);
      if (upper < ArrayBase) internal::Raise(internal::kSubscriptOutOfRange);
      StringArray result;
      if (ArrayBase == vxOneBased) {
        result.lbound = 1;
        result.items.reserve(static_cast<size_t>(n));
        if constexpr (std::is_same_v<std::decay_t<decltype(t)>, PlainText>) {
          // Whole code units: the elements are the split, taken in one pass.
          internal::ForEachElement(
              t.Units(), internal::UnitDelimiter(Delimiter.view()),
              [&](std::u16string_view item) { result.items.emplace_back(item); });
        } else {
          for (int32_t i = 1; i <= n; ++i) {
            result.items.push_back(internal::ElementText(t, Delimiter, i));
          }
        }
      } else {
        // Any other base takes the runtime's Split, which is zero-based.
        result = Split(ArrayValue, Delimiter, static_cast<size_t>(n));
      }
      NewArray = std::move(result);
      return n;
    });
  });
}

String Functions::ArrayToDynArray(const StringArray& ArrayValue, const String& Delimiter) {
  return Trap(u"CRVLIB.Functions::ArrayToDynArray"sv, [&] {
    bool whole = !Delimiter.odd();
    for (const String& item : ArrayValue.items) whole = whole && !item.odd();
    if (whole) {
      // Appending to an empty value sets it, so leading empty items vanish;
      // every later item comes behind a delimiter. The length is known
      // first, so the text is allocated once (and a text beyond the string
      // limit fails with 6, as its append would).
      int64_t total = 0;
      for (const String& item : ArrayValue.items) {
        if (total > 0) total += Delimiter.LenB();
        total += item.LenB();
      }
      if (total > String::kMaxBytes) internal::Raise(internal::kOverflow);
      std::u16string out;
      out.reserve(static_cast<size_t>(total / 2));
      for (const String& item : ArrayValue.items) {
        if (!out.empty()) out.append(Delimiter.view());
        out.append(item.view());
      }
      return String(std::move(out));
    }
    auto object = std::make_shared<internal::DynamicStringImpl>();
    ObjectText t(*object);
    for (const String& item : ArrayValue.items) internal::InsertElement(t, item, Delimiter, -1);
    return t.TakeValue();
  });
}

DynamicString Functions::ToDynamicString(const String& Value) {
  return Trap(u"CRVLIB.Functions::ToDynamicString"sv, [&] {
    DynamicString d;
    d.SetValue(Value);
    return d;
  });
}

}  // namespace crvlib
