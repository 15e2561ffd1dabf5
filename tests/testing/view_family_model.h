// A deliberately plain model of one DynamicString family, for the character
// members: the text as a std::u16string, each view as (parent, start, length,
// invalid) in characters, edits done on the string and announced by
// recursive functions that follow the notification rules word for word
// (no iteration tricks, no links: children are found by scanning the list).
//
// Each operation returns the error number the real object must raise (0 for
// none) and leaves the model unchanged when it is not 0.
#ifndef CRVLIB_TESTS_TESTING_VIEW_FAMILY_MODEL_H_
#define CRVLIB_TESTS_TESTING_VIEW_FAMILY_MODEL_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace crvlib::testing {

class ViewFamilyModel {
 public:
  struct View {
    int parent = -1;  // index into views; -1 for the root
    int32_t start = 0;
    int32_t length = 0;
    bool invalid = false;
  };

  std::u16string text;
  std::vector<View> views{View{}};  // views[0] is the root

  int32_t AbsoluteStart(int v) const;
  // The text of a view, clamped as the buffer's read clamps it.
  std::u16string Value(int v) const;

  int32_t SetValue(int v, std::u16string_view s);
  int32_t SubString(int v, int32_t start, int32_t length, int* child);
  int32_t Insert(int v, std::u16string_view s, int32_t start);
  int32_t Append(int v, std::u16string_view s);
  int32_t Prefix(int v, std::u16string_view s);
  int32_t Delete(int v, int32_t start, int32_t length);
  int32_t Replace(int v, std::u16string_view s, int32_t start, int32_t length);
  // ASCII case folding only; `*result` in characters, counted from the root.
  int32_t Find(int v, std::u16string_view s, int32_t start, int32_t length, int32_t case_type,
               int32_t* result);
  int32_t ChangeAll(int v, std::u16string_view old_value, std::u16string_view new_value,
                    int32_t case_type);

 private:
  int32_t FindChars(int v, std::u16string_view s, int32_t start, int32_t length, bool fold);
  void Edit(int v, int32_t start, int32_t length, std::u16string_view s);
  void Propagate(int v, int32_t edit_start, int32_t edit_length, int32_t delta);
  void Adjust(int v, int32_t a, int32_t b, int32_t delta);
  void Invalidate(int v);
};

}  // namespace crvlib::testing

#endif  // CRVLIB_TESTS_TESTING_VIEW_FAMILY_MODEL_H_
