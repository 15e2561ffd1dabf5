// A deliberately plain model of one DynamicString family in characters: the
// text as a std::u16string, each view as (parent, start, length, invalid),
// edits done on the string and announced by recursive functions that follow
// the notification rules word for word, finding children by scanning the list.
// Callers apply each member's own clamps and error checks before calling.
#ifndef CRVLIB_TESTS_TESTING_VIEW_FAMILY_MODEL_H_
#define CRVLIB_TESTS_TESTING_VIEW_FAMILY_MODEL_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace crvlib::testing {

struct ViewFamilyModel {
  struct View {
    int parent;  // index into views; -1 for the root
    int32_t start, length;
    bool invalid;
  };
  std::u16string text;
  std::vector<View> views{{-1, 0, 0, false}};  // views[0] is the root

  int32_t Absolute(int v) const { return v < 0 ? 0 : views[v].start + Absolute(views[v].parent); }
  std::u16string Value(int v) const { return text.substr(Absolute(v), views[v].length); }
  int SubString(int v, int32_t start, int32_t length);  // clamps, as SubString does
  // Replaces [start, start + length) of view v, a range inside it.
  void Edit(int v, int32_t start, int32_t length, std::u16string_view s);
  // FindB's clamps and FindBytes' rules in characters; counts from the root.
  int32_t Find(int v, std::u16string_view s, int32_t start, int32_t length, bool fold) const;
  void ChangeAll(int v, std::u16string_view old_value, std::u16string_view new_value, bool fold);

 private:
  void Propagate(int v, int32_t edit_start, int32_t edit_length, int32_t delta);
  void Adjust(int v, int32_t a, int32_t b, int32_t delta);
  void Invalidate(int v);
};

}  // namespace crvlib::testing

#endif  // CRVLIB_TESTS_TESTING_VIEW_FAMILY_MODEL_H_
