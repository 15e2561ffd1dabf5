// Random edits through random views of one family, compared after every step
// with the plain ViewFamilyModel: text, offsets, validity and raised errors,
// and which objects are alive (held by a handle or by a live child) with
// intact child lists. Handles are dropped at random along the way and all of
// them, in random order, at the end. Run under the sanitizers too.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <random>

#include "crvlib/dynamic_string.h"
#include "dynstring/dynamic_string_impl.h"
#include "tests/testing/raised.h"
#include "tests/testing/view_family_model.h"

namespace crvlib {
namespace {

using D = DynamicString;

struct Random {
  std::mt19937 rng;
  int32_t Pick(int32_t lo, int32_t hi) {
    return std::uniform_int_distribution<int32_t>(lo, hi)(rng);
  }
  // Mostly inside a view of `length` characters, sometimes just outside, now
  // and then a value whose byte double overflows or an int32 edge.
  int32_t Position(int32_t length) {
    static constexpr int32_t kEdges[] = {INT32_MIN, INT32_MAX, 1073741823, -1073741825};
    const int32_t kind = Pick(0, 9);
    if (kind == 0) return kEdges[Pick(0, 3)];
    return kind == 1 ? Pick(-2, 0) : kind == 2 ? length + Pick(0, 2) : Pick(0, length);
  }
  std::u16string Text(int32_t max_length) {
    std::u16string s(size_t(Pick(0, max_length)), u'a');
    for (char16_t& c : s) c = u"abAB|"[Pick(0, 4)];
    return s;
  }
};

bool Doubles(int32_t chars) {
  return chars >= -1073741824 && chars <= 1073741823;
}

struct Family {
  testing::ViewFamilyModel m;
  std::vector<D> handles{D()};  // handles[i] holds model view i; Nothing once dropped
  std::vector<std::weak_ptr<internal::DynamicStringImpl>> objects{
      handles[0].impl().weak_from_this()};

  // Views are made after their parents, so one pass from the end settles
  // which are kept alive, and by how many live children each.
  void CheckFamily() {
    std::vector<int> live_children(objects.size());
    for (size_t i = objects.size(); i-- > 0;) {
      const bool alive = !handles[i].IsNothing() || live_children[i] > 0;
      ASSERT_EQ(!objects[i].expired(), alive) << "view " << i;
      if (alive && m.views[i].parent >= 0) ++live_children[size_t(m.views[i].parent)];
    }
    for (size_t i = 0; i < objects.size(); ++i) {
      const auto o = objects[i].lock();
      int count = 0;
      for (auto* c = o ? o->FirstChild() : nullptr; c; c = c->NextSibling(), ++count) {
        ASSERT_EQ(c->ParentView(), o.get());
        ASSERT_EQ(c->PrevSibling() ? c->PrevSibling()->NextSibling() : o->FirstChild(), c);
      }
      ASSERT_EQ(count, live_children[i]) << "view " << i;
      if (handles[i].IsNothing()) continue;
      const auto& w = m.views[i];
      ASSERT_EQ(o->Invalid(), w.invalid) << "view " << i;
      if (w.invalid) continue;
      ASSERT_EQ(handles[i].StartB(), 2 * w.start) << "view " << i;
      ASSERT_EQ(handles[i].LengthB(), 2 * w.length) << "view " << i;
      ASSERT_EQ(handles[i].Value().ToU16(), m.Value(int(i))) << "view " << i;
    }
  }
};

TEST(DynamicStringModel, RandomEditsThroughRandomViews) {
  for (uint32_t seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Random rnd{std::mt19937(seed)};
    Family run;
    auto& m = run.m;
    for (int step = 0; step < 2000; ++step) {
      int v = 0;
      do v = rnd.Pick(0, int(run.handles.size()) - 1);
      while (run.handles[size_t(v)].IsNothing());
      D& d = run.handles[size_t(v)];
      const int32_t len = m.views[size_t(v)].length;
      const std::u16string s = rnd.Text(4), old_value = rnd.Text(2);
      const int32_t a = rnd.Position(len), b = rnd.Position(len), start = std::clamp(a, 0, len);
      const bool fold = rnd.Pick(0, 1) == 0;
      const auto case_type = fold ? vxCaseNotSensitive : vxCaseSensitive;
      const int op = rnd.Pick(0, 9);
      SCOPED_TRACE(::testing::Message() << "step " << step << " op " << op << " view " << v << " ("
                                        << a << ", " << b << ")");
      // The validity check comes first, then positions doubled to bytes.
      auto expect = [&](bool doubles_a, bool doubles_b) {
        if (m.views[size_t(v)].invalid) return kObjectErrorBase + 1701;
        return (doubles_a && !Doubles(a)) || (doubles_b && !Doubles(b)) ? 6 : 0;
      };
      int32_t want = 0, got = 0;
      switch (op) {
        case 0:
          if (!(want = expect(false, false))) m.Edit(v, 0, len, s);
          got = RaisedBy([&] { d.SetValue(s); }).number;
          break;
        case 1:
          if (!(want = expect(true, false))) m.Edit(v, start, 0, s);
          got = RaisedBy([&] { d.Insert(s, a); }).number;
          break;
        case 2:
          if (!(want = expect(false, false))) m.Edit(v, b % 2 ? len : 0, 0, s);
          got = RaisedBy([&] { b % 2 ? d.Append(s) : d.Prefix(s); }).number;
          break;
        case 3:
          want = expect(true, true);
          if (!want && b > 0) m.Edit(v, start, std::min(b, len - start), u"");
          got = RaisedBy([&] { d.Delete(a, b); }).number;
          break;
        case 4:
          if (!(want = expect(true, true))) m.Edit(v, start, std::clamp(b, 0, len - start), s);
          got = RaisedBy([&] { d.Replace(s, a, b); }).number;
          break;
        case 5:
          want = expect(false, false);
          if (!want && old_value.empty()) want = 5;
          if (!want) m.ChangeAll(v, old_value, s, fold);
          got = RaisedBy([&] { d.ChangeAll(old_value, s, case_type); }).number;
          break;
        case 6: {
          want = expect(true, true);
          if (!want && (a < 0 || b < 0)) want = 5;
          D child;
          got = RaisedBy([&] { child = d.SubString(a, b); }).number;
          if (want == 0) {
            m.SubString(v, a, b);
            run.handles.push_back(child);
            run.objects.push_back(child.impl().weak_from_this());
          }
          break;
        }
        case 7: {
          int32_t found = 0;
          want = expect(true, true);
          got = RaisedBy([&] { found = d.Find(s, a, b, case_type); }).number;
          if (want == 0) {
            EXPECT_EQ(found, m.Find(v, s, a, b, fold));
          }
          break;
        }
        case 8:
          if (v != 0) d = D(nullptr);  // the view lives on while it has live children
          break;
        default:
          if (rnd.Pick(0, 3) == 0 || m.text.size() > 200) {  // start afresh
            m.Edit(0, 0, m.views[0].length, s);
            run.handles[0].SetValue(s);
          }
      }
      ASSERT_EQ(got, want);
      ASSERT_EQ(run.handles[0].Value().ToU16(), m.text);
      ASSERT_NO_FATAL_FAILURE(run.CheckFamily());
    }
    // Release every handle, in random order.
    std::vector<size_t> order(run.handles.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::shuffle(order.begin(), order.end(), rnd.rng);
    for (size_t i : order) {
      run.handles[i] = D(nullptr);
      ASSERT_NO_FATAL_FAILURE(run.CheckFamily());
    }
    for (const auto& o : run.objects) EXPECT_TRUE(o.expired());
  }
}

}  // namespace
}  // namespace crvlib
