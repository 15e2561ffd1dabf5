// DynamicString's element members: the element engine (element_engine.h) run
// on the object's own view, with the object's scan cache, inside the object's
// error frame. Each member checks the view's validity first, except
// MatchElement, which answers 0 without looking at anything.
#include "crvlib/dynamic_string.h"
#include "dynstring/dynamic_string_impl.h"
#include "dynstring/element_engine.h"

namespace crvlib {
namespace {

using internal::DynamicStringImpl;
using internal::ObjectText;
using std::literals::operator""sv;

template <class Fn>
decltype(auto) RunElements(const DynamicString& self, std::u16string_view source, Fn&& fn) {
  DynamicStringImpl& d = self.impl();
  return internal::TrapUnnamed(source, [&]() -> decltype(auto) {
    d.ValidateState();
    ObjectText text(d);
    return fn(d, text);
  });
}

}  // namespace

DynamicString DynamicString::ExtractElement(const String& Delimiter, int32_t Position, bool& Eof) {
  return DynamicString(RunElements(
      *this, u"CRVLIB.DynamicString::ExtractElement"sv, [&](DynamicStringImpl& d, ObjectText& t) {
        const internal::ElementSpan span = internal::ExtractElement(t, Delimiter, Position);
        if (span.Eof) Eof = true;  // set, never cleared
        return d.SubStringB(span.Start, span.Length, impl_);
      }));
}

DynamicString DynamicString::ExtractElement(const String& Delimiter, int32_t Position) {
  bool eof = false;
  return ExtractElement(Delimiter, Position, eof);
}

DynamicString DynamicString::InsertElement(const String& NewValue, const String& Delimiter,
                                           int32_t Position) {
  RunElements(*this, u"CRVLIB.DynamicString::InsertElement"sv,
              [&](DynamicStringImpl&, ObjectText& t) {
                internal::InsertElement(t, NewValue, Delimiter, Position);
              });
  return *this;
}

int32_t DynamicString::InsertElementSorted(const String& NewValue, const String& Delimiter,
                                           vxSortOrderEnum SortOrder,
                                           vxJustificationEnum Justification, vxCaseEnum CaseType,
                                           vxDuplicatesEnum AllowDuplication) {
  return RunElements(*this, u"CRVLIB.DynamicString::InsertElementSorted"sv,
                     [&](DynamicStringImpl&, ObjectText& t) {
                       return internal::InsertElementSorted(t, NewValue, Delimiter, SortOrder,
                                                            Justification, CaseType,
                                                            AllowDuplication);
                     });
}

DynamicString DynamicString::DeleteElement(const String& Delimiter, int32_t Position) {
  RunElements(
      *this, u"CRVLIB.DynamicString::DeleteElement"sv,
      [&](DynamicStringImpl&, ObjectText& t) { internal::DeleteElement(t, Delimiter, Position); });
  return *this;
}

DynamicString DynamicString::ReplaceElement(const String& NewValue, const String& Delimiter,
                                            int32_t Position) {
  RunElements(*this, u"CRVLIB.DynamicString::ReplaceElement"sv,
              [&](DynamicStringImpl&, ObjectText& t) {
                internal::ReplaceElement(t, NewValue, Delimiter, Position);
              });
  return *this;
}

int32_t DynamicString::LocateElement(const String& FindValue, const String& Delimiter,
                                     int32_t Position, vxMatchingEnum MatchType,
                                     vxCaseEnum CaseType) {
  return RunElements(
      *this, u"CRVLIB.DynamicString::LocateElement"sv, [&](DynamicStringImpl&, ObjectText& t) {
        return internal::LocateElement(t, FindValue, Delimiter, Position, MatchType, CaseType);
      });
}

int32_t DynamicString::MatchElement(const String&, const String&, int32_t, vxMatchOptionsEnum) {
  impl();  // a reference to no object still raises 91
  return 0;
}

int32_t DynamicString::CountElements(const String& Delimiter) {
  return RunElements(
      *this, u"CRVLIB.DynamicString::CountElements"sv,
      [&](DynamicStringImpl&, ObjectText& t) { return internal::CountElements(t, Delimiter); });
}

DynamicString DynamicString::SortElements(const String& Delimiter, vxSortOrderEnum SortOrder,
                                          vxJustificationEnum Justification, vxCaseEnum CaseType) {
  RunElements(*this, u"CRVLIB.DynamicString::SortElements"sv,
              [&](DynamicStringImpl& d, ObjectText& t) {
                d.SetValue(internal::SortedValue(t, Delimiter, SortOrder, Justification, CaseType));
              });
  return *this;
}

}  // namespace crvlib
