// Random runs of DynamicString against plain models: edits through random
// views of one family compared with ViewFamilyModel after every step, and
// random creation and release of views and handles checked for exactly the
// objects that should be alive and for intact child lists (run these under
// the sanitizers too).
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "crvlib/dynamic_string.h"
#include "crvlib/error.h"
#include "dynstring/dynamic_string_impl.h"
#include "tests/testing/string_printer.h"
#include "tests/testing/view_family_model.h"

namespace crvlib {
namespace {

using internal::DynamicStringImpl;

int32_t NumberRaisedBy(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const Error& e) {
    return e.Number();
  }
  return 0;
}

class Random {
 public:
  explicit Random(uint32_t seed) : rng_(seed) {}
  int32_t Pick(int32_t lo, int32_t hi) {
    return std::uniform_int_distribution<int32_t>(lo, hi)(rng_);
  }
  // A character position or count for a view of `length` characters, mostly
  // inside, sometimes just outside, now and then one whose byte double
  // overflows or sits at the int32 edges.
  int32_t Position(int32_t length) {
    static constexpr int32_t kExtremes[] = {INT32_MIN,  INT32_MAX,   1073741822,
                                            1073741823, -1073741824, -1073741825};
    switch (Pick(0, 19)) {
      case 0:
        return kExtremes[Pick(0, 5)];
      case 1:
      case 2:
        return Pick(-2, 0);
      case 3:
      case 4:
        return length + Pick(0, 2);
      default:
        return Pick(0, length);
    }
  }
  std::u16string Text(int32_t max_length) {
    static constexpr char16_t kAlphabet[] = u"abAB|";
    std::u16string s(size_t(Pick(0, max_length)), u'a');
    for (char16_t& c : s) c = kAlphabet[Pick(0, 4)];
    return s;
  }

 private:
  std::mt19937 rng_;
};

TEST(DynamicStringModel, RandomEditsThroughRandomViews) {
  for (uint32_t seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Random rnd(seed);
    testing::ViewFamilyModel m;
    std::vector<DynamicString> views{DynamicString()};  // views[i] is model view i

    for (int step = 0; step < 2000; ++step) {
      // A random view that still has a handle (the root always has).
      int v = rnd.Pick(0, static_cast<int>(views.size()) - 1);
      while (views[size_t(v)].IsNothing()) v = rnd.Pick(0, static_cast<int>(views.size()) - 1);
      DynamicString& d = views[size_t(v)];
      const int32_t len = m.views[size_t(v)].length;
      const std::u16string s = rnd.Text(4);
      const int32_t a = rnd.Position(len), b = rnd.Position(len);
      const int op = rnd.Pick(0, 11);
      SCOPED_TRACE(::testing::Message() << "step " << step << " op " << op << " view " << v
                                        << " args " << a << ", " << b);
      int32_t want = 0;
      int32_t got = 0;
      switch (op) {
        case 0:
          want = m.SetValue(v, s);
          got = NumberRaisedBy([&] { d.SetValue(s); });
          break;
        case 1:
          want = m.Insert(v, s, a);
          got = NumberRaisedBy([&] { d.Insert(s, a); });
          break;
        case 2:
          want = m.Append(v, s);
          got = NumberRaisedBy([&] { d.Append(s); });
          break;
        case 3:
          want = m.Prefix(v, s);
          got = NumberRaisedBy([&] { d.Prefix(s); });
          break;
        case 4:
          want = m.Delete(v, a, b);
          got = NumberRaisedBy([&] { d.Delete(a, b); });
          break;
        case 5:
          want = m.Replace(v, s, a, b);
          got = NumberRaisedBy([&] { d.Replace(s, a, b); });
          break;
        case 6: {
          const std::u16string old_value = rnd.Text(2);
          const int32_t case_type = rnd.Pick(0, 1);
          want = m.ChangeAll(v, old_value, s, case_type);
          got = NumberRaisedBy(
              [&] { d.ChangeAll(old_value, s, static_cast<vxCaseEnum>(case_type)); });
          break;
        }
        case 7:
        case 8: {
          int child = -1;
          want = m.SubString(v, a, b, &child);
          DynamicString made;
          got = NumberRaisedBy([&] { made = d.SubString(a, b); });
          if (want == 0 && got == 0) views.push_back(made);
          break;
        }
        case 9: {
          int32_t want_at = 0;
          int32_t got_at = 0;
          const int32_t case_type = rnd.Pick(0, 1);
          want = m.Find(v, s, a, b, case_type, &want_at);
          got =
              NumberRaisedBy([&] { got_at = d.Find(s, a, b, static_cast<vxCaseEnum>(case_type)); });
          EXPECT_EQ(got_at, want_at);
          break;
        }
        case 10:
          if (v != 0) d = DynamicString(nullptr);  // drop the handle; the view may live on
          break;
        default:
          if (rnd.Pick(0, 3) == 0) {  // start afresh: every view of the root dies
            want = m.SetValue(0, s);
            got = NumberRaisedBy([&] { views[0].SetValue(s); });
          }
          break;
      }
      ASSERT_EQ(got, want);
      if (m.text.size() > 200) {
        m.SetValue(0, u"ab|ab");
        views[0].SetValue(u"ab|ab");
      }

      ASSERT_EQ(views[0].Value(), String(m.text));
      ASSERT_FALSE(views[0].Binary());
      for (size_t i = 0; i < views.size(); ++i) {
        if (views[i].IsNothing()) continue;
        SCOPED_TRACE(::testing::Message() << "checking view " << i);
        const auto& want_view = m.views[i];
        ASSERT_EQ(views[i].impl().Invalid(), want_view.invalid);
        if (want_view.invalid) continue;
        ASSERT_EQ(views[i].StartB(), 2 * want_view.start);
        ASSERT_EQ(views[i].LengthB(), 2 * want_view.length);
        ASSERT_EQ(views[i].Value(), String(m.Value(static_cast<int>(i))));
      }
    }
  }
}

// Creates, copies, edits and drops handles of several families in random
// order. After every step exactly the objects held by a handle or by a live
// child are alive, and every child list links live objects both ways.
TEST(DynamicStringLifetime, RandomCreationAndReleaseOrders) {
  for (uint32_t seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Random rnd(seed);
    struct Object {
      std::weak_ptr<DynamicStringImpl> self;
      int parent;
    };
    std::vector<Object> objects;
    struct Handle {
      DynamicString ref;
      int object;
    };
    std::vector<Handle> handles;
    auto track = [&](const DynamicString& d, int parent) {
      objects.push_back({d.impl().weak_from_this(), parent});
      handles.push_back({d, static_cast<int>(objects.size()) - 1});
    };

    for (int step = 0; step < 1500; ++step) {
      const int op = handles.empty() ? 0 : rnd.Pick(0, 9);
      Handle* h =
          handles.empty() ? nullptr : &handles[size_t(rnd.Pick(0, int(handles.size()) - 1))];
      SCOPED_TRACE(::testing::Message() << "step " << step << " op " << op);
      switch (op) {
        case 0: {
          DynamicString d;
          d.SetValue(rnd.Text(12));
          track(d, -1);
          break;
        }
        case 1:
        case 2: {
          const int32_t length = h->ref.impl().Invalid() ? 0 : h->ref.LengthB();
          const int parent = h->object;
          DynamicString child;
          if (NumberRaisedBy([&] {
                child = h->ref.SubStringB(rnd.Pick(0, length), rnd.Pick(0, length));
              }) == 0) {
            track(child, parent);
          }
          break;
        }
        case 3: {
          const int parent = objects[size_t(h->object)].parent;
          DynamicString p;
          if (NumberRaisedBy([&] { p = h->ref.Parent(); }) == 0 && !p.IsNothing()) {
            handles.push_back({p, parent});
          }
          break;
        }
        case 4:
          track(h->ref.Clone(), -1);
          break;
        case 5:
          handles.push_back(*h);
          break;
        case 6:
        case 7: {
          // Release a random handle; swap-and-pop keeps the rest in random order.
          std::swap(*h, handles.back());
          handles.pop_back();
          break;
        }
        default: {
          DynamicString& d = h->ref;
          NumberRaisedBy([&] {
            switch (rnd.Pick(0, 2)) {
              case 0:
                d.InsertB(rnd.Text(2), rnd.Pick(0, 8));
                break;
              case 1:
                d.DeleteB(rnd.Pick(0, 8), rnd.Pick(0, 4));
                break;
              default:
                d.SetValue(rnd.Text(6));
                break;
            }
          });
          break;
        }
      }

      std::vector<int> held(objects.size(), 0);
      for (const Handle& k : handles) ++held[size_t(k.object)];
      // Children are made after their parents, so one pass from the end
      // settles who is kept alive by whom.
      std::vector<bool> alive(objects.size(), false);
      std::vector<int> live_children(objects.size(), 0);
      for (size_t i = objects.size(); i-- > 0;) {
        alive[i] = alive[i] || held[i] > 0;
        const int p = objects[i].parent;
        if (alive[i] && p >= 0) {
          alive[size_t(p)] = true;
          ++live_children[size_t(p)];
        }
      }
      for (size_t i = 0; i < objects.size(); ++i) {
        ASSERT_EQ(!objects[i].self.expired(), alive[i]) << "object " << i;
        if (!alive[i]) continue;
        std::shared_ptr<DynamicStringImpl> o = objects[i].self.lock();
        int count = 0;
        for (DynamicStringImpl* c = o->FirstChild(); c != nullptr; c = c->NextSibling()) {
          ASSERT_EQ(c->ParentView(), o.get());
          ASSERT_EQ(c->PrevSibling() ? c->PrevSibling()->NextSibling() : o->FirstChild(), c);
          ++count;
        }
        ASSERT_EQ(count, live_children[i]) << "object " << i;
      }
    }
    handles.clear();
    for (const Object& o : objects) EXPECT_TRUE(o.self.expired());
  }
}

}  // namespace
}  // namespace crvlib
