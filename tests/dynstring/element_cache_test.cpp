// Element answers of one reused DynamicString against a fresh object holding
// the same value. Random sequences of element operations, substring edits
// (character and byte forms), edits through child views (SubString and
// ExtractElement views) and Value lets run on one family, with the
// delimiters "|", "||", "ab" and the marks. Every element operation runs on
// a fresh object too and must give the same result, value or error; after
// every step each live view is probed at positions 0 to n + 1, -1, -2,
// 2147483646 and 2147483647 and with CountElements. Now and then a record
// of over a thousand elements comes in, so that far steps back lay
// checkpoints and long walks count their way; its positions are probed at
// both ends and at random in between.
//
// The scan's two last-element targets depend on the cache on purpose: once
// the scan has reached the end, -1 (and 2147483646, the largest position it
// can reach) answer an empty range at the end. For those the fresh object
// counts its elements first, which brings it to the same point.
//
// Probing moves the cache it probes, so every probe starts from the cache
// the step left, which is put back afterwards: the sequence goes on as if
// nothing had been asked. Probing and going on instead would leave every
// edit facing a cache at the end (the last probes run to the end), while
// the bugs live in a cached element in the middle with its neighbour known.
// The checkpoints and the matches collected ahead by the probes stay: they
// describe the same text and must never change an answer, so keeping them
// tries them from states the sequence alone rarely reaches.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "crvlib/dynamic_string.h"
#include "dynstring/dynamic_string_impl.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

using D = DynamicString;

constexpr int32_t kScanToEnd = 2147483646;

// What an element operation gave: a number, a view (its text, offset and
// end flag), the value it left behind, or the error it raised.
struct Answer {
  int32_t number = 0;
  String view;
  int32_t view_start = 0;
  bool eof = false;
  String value;
  Raised error;
  friend bool operator==(const Answer&, const Answer&) = default;
  friend std::ostream& operator<<(std::ostream& os, const Answer& a) {
    return os << "{" << a.number << ", \"" << a.view << "\" at " << a.view_start
              << (a.eof ? " eof" : "") << ", value \"" << a.value << "\", error " << a.error << "}";
  }
};

using ElementOp = std::function<void(D&, Answer&)>;

Answer Apply(D& d, const ElementOp& op) {
  Answer a;
  a.error = RaisedBy([&] { op(d, a); });
  a.value = d.Value();
  return a;
}

// A new root holding `value`, in byte mode when the family it stands for is;
// `count_first` counts its elements at `delim` first.
Answer OnFresh(const String& value, bool binary, bool count_first, const String& delim,
               const ElementOp& op) {
  D fresh;
  fresh.SetValue(value);
  if (binary) fresh.SetBinary(true);
  if (count_first) fresh.CountElements(delim);
  return Apply(fresh, op);
}

ElementOp Extract(const String& delim, int32_t p, D* keep = nullptr) {
  return [=](D& d, Answer& a) {
    D v = d.ExtractElement(delim, p, a.eof);
    a.view = v.Value();
    a.view_start = v.StartB();
    if (keep) *keep = v;
  };
}

// Whether an answer at `position` may depend on the scan having reached
// the end: the positions that ask the scan for the last element.
bool AsksForTheEnd(int32_t position) {
  return position < 0 || position == kScanToEnd;
}

class Sequence {
 public:
  Sequence(uint32_t seed, String delim) : rng_(seed), delim_(std::move(delim)) {}

  void Run(int steps) {
    for (int step = 0; step < steps; ++step) {
      const size_t t = Pick(0, int32_t(views_.size()) - 1);
      SCOPED_TRACE(::testing::Message()
                   << "step " << step << " on view " << t << " \"" << views_[t].Value() << "\"");
      Step(views_[t]);
      if (::testing::Test::HasFatalFailure()) return;
      // Views an edit cut into are done with; the root never is.
      std::erase_if(views_, [](const D& v) { return v.impl().Invalid(); });
      for (size_t i = 0; i < views_.size(); ++i) {
        SCOPED_TRACE(::testing::Message() << "probing view " << i);
        Probe(views_[i]);
        if (::testing::Test::HasFatalFailure()) return;
      }
    }
  }

 private:
  int32_t Pick(int32_t lo, int32_t hi) {
    return std::uniform_int_distribution<int32_t>(lo, hi)(rng_);
  }
  bool OneIn(int32_t n) { return Pick(1, n) == 1; }

  // Mostly the sequence's delimiter; now and then another, which makes the
  // next scan drop the cache.
  String Delimiter() {
    static const char16_t* const kOthers[] = {u"|", u"||", u"ab", u"\u00fe", u"\u00fa"};
    return OneIn(8) ? String(kOthers[Pick(0, 4)]) : delim_;
  }
  // Pieces that make and break delimiters: the delimiter itself, its halves,
  // plain letters and the marks.
  String Text(int32_t max_pieces) {
    const std::u16string d = delim_.ToU16();
    const std::u16string pieces[] = {u"a",           u"b",        u"x", d,         d,
                                     d.substr(0, 1), d.substr(1), u"|", u"\u00ff", u"\u00fa"};
    std::u16string s;
    for (int32_t n = Pick(0, max_pieces); n > 0; --n) s += pieces[Pick(0, 9)];
    return s;
  }
  // A record of over a thousand elements, far enough for a step back to lay
  // checkpoints and for a walk to span several chunks of them.
  String LongText() {
    std::u16string s = Text(2).ToU16();
    for (int32_t n = Pick(1030, 1100); n > 0; --n) s += delim_.ToU16() + Text(2).ToU16();
    return s;
  }
  // Around the elements there are; rarely the scan's last-element target or
  // the position beyond it.
  int32_t Position(const D& v) {
    if (OneIn(20)) return OneIn(2) ? kScanToEnd : kScanToEnd + 1;
    return Pick(-2, Count(v) + 2);
  }
  // A character position around the view, for the substring edits; often
  // the start of an element, above all of the cached one, where the edit
  // rule backs the cache up.
  int32_t Offset(const D& v) {
    const int kind = Pick(0, 2);
    if (kind == 0) return Pick(-1, v.impl().ViewLengthB() / 2 + 1);
    if (kind == 1) return v.impl().scan().ScanStart / 2;
    D fresh;
    fresh.SetValue(v.Value());
    return fresh.ExtractElement(delim_, Pick(1, fresh.CountElements(delim_) + 1)).StartB() / 2;
  }
  // Byte forms take the doubled position, and once in a while an odd one,
  // which puts the family in byte mode until its whole text is replaced.
  int32_t OffsetB(const D& v) { return 2 * Offset(v) + (OneIn(12) ? 1 : 0); }

  // The element count at the sequence's delimiter, from a fresh object.
  int32_t Count(const D& v) {
    D fresh;
    fresh.SetValue(v.Value());
    return fresh.CountElements(delim_);
  }

  // One element operation on `v` and on a fresh object holding v's value.
  void Element(D& v, const char* name, int32_t position, const String& delim, const ElementOp& op) {
    SCOPED_TRACE(::testing::Message() << name << " at " << position << " on \"" << delim << "\"");
    const internal::ScanCache& cache = v.impl().scan();
    const bool at_end = AsksForTheEnd(position) && cache.ScanAtEnd && cache.ScanDelimiter == delim;
    const Answer want = OnFresh(v.Value(), v.Binary(), at_end, delim, op);
    ASSERT_EQ(Apply(v, op), want);
  }

  // Elements from `p` on in turn, as a loop over a record does, now and
  // then editing the element it has just read.
  void Walk(D& v, int32_t p, const String& delim) {
    for (int32_t j = p, end = p + Pick(2, 40); j < end; ++j) {
      const String s = Text(2);
      if (OneIn(4)) {
        ASSERT_NO_FATAL_FAILURE(Element(v, "ReplaceElement", j, delim,
                                        [&](D& d, Answer&) { d.ReplaceElement(s, delim, j); }));
      }
      ASSERT_NO_FATAL_FAILURE(Element(v, "ExtractElement", j, delim, Extract(delim, j)));
    }
  }

  void Step(D& v) {
    const String delim = Delimiter();
    const String s = Text(2);
    const int32_t p = Position(v);
    switch (Pick(0, 18)) {
      case 0:
      case 1: {
        // Some element views are kept, to be edited through later.
        D kept(nullptr);
        Element(v, "ExtractElement", p, delim, Extract(delim, p, OneIn(3) ? &kept : nullptr));
        // (The fresh object's view passed through `kept` first.)
        if (!kept.IsNothing() && kept.impl().ParentView() == &v.impl() && views_.size() < 5) {
          views_.push_back(kept);
        }
        return;
      }
      case 2:
        return Element(v, "InsertElement", p, delim,
                       [&](D& d, Answer&) { d.InsertElement(s, delim, p); });
      case 3:
        return Element(v, "DeleteElement", p, delim,
                       [&](D& d, Answer&) { d.DeleteElement(delim, p); });
      case 4:
        return Element(v, "ReplaceElement", p, delim,
                       [&](D& d, Answer&) { d.ReplaceElement(s, delim, p); });
      case 5: {
        const auto type = vxMatchingEnum(Pick(0, 3));
        const auto case_type = vxCaseEnum(Pick(0, 1));
        return Element(v, "LocateElement", p, delim, [&](D& d, Answer& a) {
          a.number = d.LocateElement(s, delim, p, type, case_type);
        });
      }
      case 6: {
        const auto order = vxSortOrderEnum(Pick(0, 1));
        const auto just = vxJustificationEnum(Pick(0, 1));
        const auto dup = vxDuplicatesEnum(Pick(0, 1));
        return Element(v, "InsertElementSorted", 0, delim, [&](D& d, Answer& a) {
          a.number = d.InsertElementSorted(s, delim, order, just, vxCaseSensitive, dup);
        });
      }
      case 7: {
        const auto order = vxSortOrderEnum(Pick(0, 1));
        const auto just = vxJustificationEnum(Pick(0, 1));
        const auto case_type = vxCaseEnum(Pick(0, 1));
        return Element(v, "SortElements", 0, delim,
                       [&](D& d, Answer&) { d.SortElements(delim, order, just, case_type); });
      }
      case 8:
        return Element(v, "CountElements", 0, delim,
                       [&](D& d, Answer& a) { a.number = d.CountElements(delim); });
      case 9: {
        const bool bytes = OneIn(2);
        const int32_t at = bytes ? OffsetB(v) : Offset(v);
        RaisedBy([&] { bytes ? v.InsertB(s, at) : v.Insert(s, at); });
        return;
      }
      case 10: {
        const bool bytes = OneIn(2);
        const int32_t at = bytes ? OffsetB(v) : Offset(v);
        const int32_t n = Pick(-1, 3) * (bytes ? 2 : 1);
        RaisedBy([&] { bytes ? v.DeleteB(at, n) : v.Delete(at, n); });
        return;
      }
      case 11: {
        const bool bytes = OneIn(2);
        const int32_t at = bytes ? OffsetB(v) : Offset(v);
        const int32_t n = Pick(-1, 3) * (bytes ? 2 : 1);
        RaisedBy([&] { bytes ? v.ReplaceB(s, at, n) : v.Replace(s, at, n); });
        return;
      }
      case 12:
        OneIn(2) ? v.Append(s) : v.Prefix(s);
        return;
      case 13: {
        // Value let, mostly of the root: a new record in the reused object.
        D& target = OneIn(3) ? v : views_[0];
        target.SetValue(OneIn(16) ? LongText() : Text(target.Is(views_[0]) ? 8 : 3));
        return;
      }
      case 14: {
        if (views_.size() >= 5) return;
        const bool bytes = OneIn(2);
        const int32_t a = bytes ? OffsetB(v) : Offset(v), b = Pick(0, 4) * (bytes ? 2 : 1);
        D child(nullptr);
        RaisedBy([&] { child = bytes ? v.SubStringB(a, b) : v.SubString(a, b); });
        if (!child.IsNothing()) views_.push_back(child);
        return;
      }
      case 15:
        if (views_.size() > 1) views_.erase(views_.begin() + Pick(1, int32_t(views_.size()) - 1));
        return;
      case 16:
        RaisedBy([&] { v.ChangeAll(delim, s, vxCaseSensitive); });
        return;
      default:
        return Walk(v, p >= 1 && p < kScanToEnd ? p : 1, delim);
    }
  }

  void Probe(D& v) {
    internal::ScanCache& cache = v.impl().scan();
    const internal::ScanCache saved = cache;
    // The cached delimiter, so that the probes meet the cache rather than
    // replace it.
    const String delim = saved.ScanDelimiter.LenB() > 0 ? saved.ScanDelimiter : delim_;
    const bool at_end = saved.ScanAtEnd && saved.ScanDelimiter == delim;
    const String value = v.Value();
    const bool binary = v.Binary();
    D fresh;
    fresh.SetValue(value);
    if (binary) fresh.SetBinary(true);
    const int32_t n = fresh.CountElements(delim);

    std::vector<int32_t> positions = {-1, -2, kScanToEnd, kScanToEnd + 1};
    constexpr int32_t kEveryPosition = 40;
    for (int32_t p = 0; p <= n + 1; ++p) {
      if (n <= kEveryPosition || p < 4 || p > n - 4) positions.push_back(p);
    }
    for (int i = 0; n > kEveryPosition && i < 16; ++i) positions.push_back(Pick(4, n - 4));
    for (int32_t p : positions) {
      const ElementOp op = Extract(delim, p);
      const Answer want = OnFresh(value, binary, at_end && AsksForTheEnd(p), delim, op);
      const Answer got = Apply(v, op);
      cache = saved;
      ASSERT_EQ(got, want) << "position " << p << " on \"" << delim << "\"";
    }
    int32_t count = 0;
    const Raised raised = RaisedBy([&] { count = v.CountElements(delim); });
    cache = saved;
    ASSERT_EQ(raised, Raised());
    ASSERT_EQ(count, n) << "CountElements on \"" << delim << "\"";
  }

  std::mt19937 rng_;
  String delim_;
  std::vector<D> views_{D()};  // views_[0] is the root
};

TEST(ElementCache, ReusedObjectAnswersAsAFreshOne) {
  const char16_t* const kDelimiters[] = {u"|",      u"||",     u"ab",     u"\u00ff", u"\u00fe",
                                         u"\u00fd", u"\u00fc", u"\u00fb", u"\u00fa"};
  uint32_t seed = 1;
  for (const char16_t* delim : kDelimiters) {
    for (int round = 0; round < 6; ++round, ++seed) {
      SCOPED_TRACE(::testing::Message()
                   << "seed " << seed << " delimiter \"" << String(delim) << "\"");
      Sequence(seed, delim).Run(60);
      if (HasFatalFailure()) return;
    }
  }
}

// Rows named after the reports that found them.
TEST(ElementCache, SecondEditAtTheCachedStartForgetsThePreviousElement) {
  struct Case {
    const char* name;
    std::function<void(D&)> steps;
    const char16_t* first;
    int32_t count;
  };
  const Case kCases[] = {
      {"replace the last element, then a new value",
       [](D& d) {
         d.SetValue(u"a|b");
         d.ReplaceElement(u"z", u"|", 2);
         d.SetValue(u"xxxxxxxx|y");
       },
       u"xxxxxxxx", 2},
      {"two insertions at element starts",
       [](D& d) {
         d.SetValue(u"a|b");
         d.ExtractElement(u"|", 2);
         d.Insert(u"X", 2);
         d.Insert(u"Y", 0);
       },
       u"Ya", 2},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    D d;
    c.steps(d);
    D again;
    c.steps(again);
    EXPECT_EQ(d.ExtractElement(u"|", 1).Value(), String(c.first));
    EXPECT_EQ(again.CountElements(u"|"), c.count);
  }
}

TEST(ElementCache, WhatTheScanKnewGoesWithTheDelimiterOrTheText) {
  // Each row leaves a reused object in a state a fresh one never has, then
  // asks one question.
  struct Case {
    const char* name;
    std::function<void(D&)> steps;
    const char16_t* delimiter;
    int32_t position;
    const char16_t* want;
  };
  const Case kCases[] = {
      // The walk at "X" collected the matches at 4 and 7 ahead; the walk at
      // "cX" reaches the same place behind its only match.
      {"another delimiter, matches collected ahead",
       [](D& d) {
         d.SetValue(u"aXbcXdeXf");
         d.ExtractElement(u"X", 1);
         d.ExtractElement(u"X", 2);
         d.ExtractElement(u"cX", 1);
       },
       u"cX", 2, u"deXf"},
      // ChangeAll forgets the cache even when it changes nothing, so -1
      // scans again for the last element instead of answering the end.
      {"ChangeAll with nothing to change, after a count",
       [](D& d) {
         d.SetValue(u"a|b");
         d.CountElements(u"|");
         d.ChangeAll(u"q", u"r");
       },
       u"|", -1, u"b"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    D d;
    c.steps(d);
    EXPECT_EQ(d.ExtractElement(c.delimiter, c.position).Value(), String(c.want));
  }
}

}  // namespace
}  // namespace crvlib
