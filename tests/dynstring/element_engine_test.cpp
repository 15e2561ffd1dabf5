// The element engine against its naive twins: the delimiter kernels against
// a plain greedy search, the fast scan against the literal one-search-per-
// element loop (every cache field compared after every step), and the sorts
// against the literal insertion sort of tests/testing/naive_elements.
#include "dynstring/element_engine.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "crvlib/dll_routines.h"
#include "crvlib/dynamic_string.h"
#include "crvlib/error.h"
#include "crvlib/functions.h"
#include "tests/testing/naive_elements.h"

namespace crvlib {
namespace {

using internal::kNoMatch;
using internal::UnitDelimiter;

std::u16string RandomText(std::mt19937& rng, size_t n, std::u16string_view alphabet) {
  std::u16string s(n, u'a');
  for (char16_t& c : s) c = alphabet[rng() % alphabet.size()];
  return s;
}

std::vector<size_t> GreedyMatches(std::u16string_view text, std::u16string_view d) {
  std::vector<size_t> out;
  for (size_t r = text.find(d); r != std::u16string_view::npos; r = text.find(d, r + d.size())) {
    out.push_back(r);
  }
  return out;
}

TEST(ElementScan, SkipAndIndexAgreeWithAGreedySearch) {
  std::mt19937 rng(7);
  const std::u16string_view delims[] = {u"|", u"|a", u"||", u"a|a", u"ab", u"\u00ff"};
  for (int round = 0; round < 300; ++round) {
    const std::u16string_view dv = delims[round % std::size(delims)];
    const size_t n = round % 3 == 0 ? 9000 + rng() % 3000 : rng() % 60;
    const std::u16string text = RandomText(rng, n, round % 2 ? u"a|b" : u"a||\u00ff");
    const UnitDelimiter d(dv);
    const std::vector<size_t> want = GreedyMatches(text, dv);
    SCOPED_TRACE(::testing::Message() << "round " << round << " size " << n);

    internal::MatchIndex index;
    const internal::SkipResult all = SkipDelimiters(text, 0, INT64_MAX, d, &index);
    ASSERT_EQ(all.found, int64_t(want.size()));
    ASSERT_EQ(index.matches(), int64_t(want.size()));
    if (!want.empty()) {
      EXPECT_EQ(all.last, want.back());
    }
    if (want.size() > 1) {
      EXPECT_EQ(all.before_last, want[want.size() - 2]);
    }
    for (int probe = 0; probe < 20 && !want.empty(); ++probe) {
      const size_t k = rng() % want.size();
      EXPECT_EQ(index.Match(text, d, int64_t(k + 1)), want[k]);
    }
    // From a match's end, a limited skip lands on the right match.
    const size_t from_k = want.empty() ? 0 : rng() % want.size();
    const size_t from = want.empty() ? 0 : want[from_k] + dv.size();
    const int64_t limit = 1 + rng() % 700;
    const internal::SkipResult part = SkipDelimiters(text, from, limit, d);
    const int64_t left = int64_t(want.size()) - int64_t(want.empty() ? 0 : from_k + 1);
    ASSERT_EQ(part.found, std::min(limit, left));
    if (part.found > 0) {
      const size_t last_k = (want.empty() ? 0 : from_k + 1) + size_t(part.found) - 1;
      EXPECT_EQ(part.last, want[last_k]);
      EXPECT_EQ(part.before_last, part.found >= 2 ? want[last_k - 1] : kNoMatch);
    }
  }
}

TEST(ElementScan, CursorMeetsEveryElementAcrossBatches) {
  // Match counts on either side of where the growing batches end (4, 12,
  // 28, 60, 124, then every 64), from the text's start and from behind a
  // match, for a delimiter counted by bitmask and one found match by match.
  const size_t kCounts[] = {0, 1, 3, 4, 5, 11, 12, 13, 59, 60, 61, 124, 125, 188, 189, 300};
  for (std::u16string_view dv : {u"|", u"||"}) {
    for (size_t n : kCounts) {
      std::u16string text = u"x";
      for (size_t i = 0; i < n; ++i) text += std::u16string(dv) + u"ab"[i % 2];
      const std::vector<size_t> matches = GreedyMatches(text, dv);
      ASSERT_EQ(matches.size(), n);
      for (size_t skip : {size_t{0}, size_t{2}}) {
        if (skip > n) continue;
        SCOPED_TRACE(::testing::Message() << n << " matches, from behind " << skip);
        size_t start = skip == 0 ? 0 : matches[skip - 1] + dv.size();
        internal::ElementCursor c(text, UnitDelimiter(dv), start);
        for (size_t k = skip;; ++k) {
          const bool last = k == n;
          ASSERT_EQ(c.start(), start);
          ASSERT_EQ(c.end(), last ? text.size() : matches[k]);
          ASSERT_EQ(c.last(), last);
          ASSERT_EQ(c.Next(), !last);
          if (last) break;
          start = matches[k] + dv.size();
        }
        EXPECT_EQ(c.start(), start);  // the last element stays
      }
    }
  }
}

// The literal host: the same object, but every scan step is one byte-wise
// search, as the unaccelerated loop does it, and every candidate is read
// out as a string.
class LiteralText : public internal::ObjectText {
 public:
  using ObjectText::ObjectText;
  bool UnitMode(const String&) { return false; }
  bool UnitsInPlace(const String&, std::u16string_view*) { return false; }
};

std::shared_ptr<internal::DynamicStringImpl> Holding(const String& text) {
  auto object = std::make_shared<internal::DynamicStringImpl>();
  object->SetValue(text);
  return object;
}

// Two objects driven in step, one through the engine and one literally.
struct Twins {
  std::shared_ptr<internal::DynamicStringImpl> fast_obj, slow_obj;
  internal::ObjectText fast{*fast_obj};
  LiteralText slow{*slow_obj};

  // Runs `fn` on both hosts: the same answer, or the same error number.
  template <class Fn>
  void OnBoth(Fn&& fn) {
    auto run = [&](auto& t) -> std::pair<int32_t, int32_t> {
      try {
        return {fn(t), 0};
      } catch (const Error& e) {
        return {0, e.Number()};
      }
    };
    EXPECT_EQ(run(fast), run(slow));
  }
};

TEST(ElementScan, FastScanLeavesTheCacheOfTheLiteralLoop) {
  std::mt19937 rng(11);
  const char16_t* delims[] = {u"|", u"||", u"ab"};
  for (int round = 0; round < 60; ++round) {
    const String delim = delims[round % 3];
    const String start = RandomText(rng, round % 4 == 0 ? 6000 : 1 + rng() % 40, u"ab|");
    Twins t{Holding(start), Holding(start)};
    for (int step = 0; step < 80; ++step) {
      const int32_t count = internal::CountElements(t.slow, delim);
      internal::CountElements(t.fast, delim);
      const int32_t pos = int32_t(rng() % (count + 4)) - 2;
      const int op = int(rng() % 6);
      const int32_t match_type = int32_t(rng() % 4);
      SCOPED_TRACE(::testing::Message()
                   << "round " << round << " step " << step << " op " << op << " pos " << pos);
      // A random far position first, so the operation starts from an
      // arbitrary cache.
      const int32_t warm = int32_t(rng() % (count + 2));
      t.OnBoth([&](auto& h) { return internal::Scan(h, delim, warm).Start; });
      t.OnBoth([&](auto& h) -> int32_t {
        switch (op) {
          case 0:
            return internal::ExtractElement(h, delim, pos).Start;
          case 1:
            internal::InsertElement(h, u"x|", delim, pos);
            return 0;
          case 2:
            internal::DeleteElement(h, delim, pos);
            return 0;
          case 3:
            internal::ReplaceElement(h, u"yy", delim, pos);
            return 0;
          case 4:
            return internal::LocateElement(h, u"b", delim, pos, match_type, 1);
          default:
            return internal::Scan(h, delim, pos).Start;
        }
      });
      ASSERT_EQ(t.fast_obj->Value(), t.slow_obj->Value());
      ASSERT_EQ(t.fast_obj->scan(), t.slow_obj->scan());
    }
  }
}

TEST(ElementScan, ElementBeforeAFarTargetAcrossAChunkBoundary) {
  // The element before the target ends with the first match of a chunk of
  // checkpoints (2048 units), the one before that in an earlier chunk: the
  // count of a run of matches has to look back for it. Targets on either
  // side of the boundary, reached by a walk from the start, from a cached
  // element, and by a jump over checkpoints laid by a count.
  struct Layout {
    const char* name;
    std::u16string text;
    const char16_t* delimiter;
  };
  auto repeat = [](std::u16string_view piece, size_t n) {
    std::u16string s;
    for (size_t i = 0; i < n; ++i) s += piece;
    return s;
  };
  const Layout kLayouts[] = {
      // Matches at 2 + 3k: the 683rd at 2048 opens the second chunk.
      {"dense", repeat(u"ab|", 1400), u"|"},
      {"dense, two units", u"a" + repeat(u"b<>", 1400), u"<>"},
      // An element of 3000 units spans the whole second chunk.
      {"a chunk without matches", repeat(u"ab|", 600) + repeat(u"x", 3000) + repeat(u"|ab", 40),
       u"|"},
  };
  for (const Layout& l : kLayouts) {
    const std::vector<size_t> matches = GreedyMatches(l.text, l.delimiter);
    // The first match at or after each chunk boundary, as element numbers.
    std::vector<int32_t> targets;
    for (size_t k = 1; k < matches.size(); ++k) {
      if (matches[k] / 2048 != matches[k - 1] / 2048) {
        for (int32_t t : {-1, 0, 1, 2}) targets.push_back(int32_t(k) + 1 + t);
      }
    }
    ASSERT_FALSE(targets.empty());
    for (int32_t target : targets) {
      for (int way = 0; way < 3; ++way) {
        SCOPED_TRACE(::testing::Message() << l.name << " target " << target << " way " << way);
        Twins t{Holding(l.text), Holding(l.text)};
        t.OnBoth([&](auto& h) {
          if (way == 1) internal::Scan(h, l.delimiter, target - 20);
          if (way == 2) internal::CountElements(h, l.delimiter);
          return internal::Scan(h, l.delimiter, target).Start;
        });
        ASSERT_EQ(t.fast_obj->scan(), t.slow_obj->scan());
        // And the element before, straight from the cache.
        t.OnBoth([&](auto& h) { return internal::Scan(h, l.delimiter, target - 1).Length; });
      }
    }
  }
}

TEST(ElementScan, LocateElementLeavesTheCacheOfTheLiteralWalk) {
  // The batched walk and the in-place comparisons against one scan and one
  // extracted candidate per element, from arbitrary caches.
  std::mt19937 rng(17);
  const char16_t* delims[] = {u"|", u"||", u"ab", u"a|a"};
  const char16_t* finds[] = {u"", u"a", u"b", u"ab", u"A", u"#", u"b|", u"ba", u"aA"};
  const int32_t cases[] = {vxCaseSensitive, vxCaseNotSensitive, 2, -1};
  for (int round = 0; round < 300; ++round) {
    const String delim = delims[round % 4];
    const String text = RandomText(rng, round % 10 == 0 ? 3000 + rng() % 100 : rng() % 60, u"ab|A");
    Twins t{Holding(text), Holding(text)};
    const int32_t count = internal::CountElements(t.slow, delim);
    internal::CountElements(t.fast, delim);
    for (int probe = 0; probe < 25; ++probe) {
      const String find = finds[rng() % std::size(finds)];
      const int32_t pos = int32_t(rng() % (count + 3));
      const int32_t warm = int32_t(rng() % (count + 2)) - 1;
      const int32_t type = int32_t(rng() % 9 == 0 ? 4 : rng() % 4);
      const int32_t case_type = cases[rng() % 4];
      SCOPED_TRACE(::testing::Message() << "round " << round << " find " << find << " pos " << pos
                                        << " type " << type << " case " << case_type);
      t.OnBoth([&](auto& h) { return internal::Scan(h, delim, warm).Start; });
      t.OnBoth(
          [&](auto& h) { return internal::LocateElement(h, find, delim, pos, type, case_type); });
      ASSERT_EQ(t.fast_obj->scan(), t.slow_obj->scan());
    }
  }
}

TEST(ElementScan, SteppingWalkLeavesTheCacheOfTheLiteralWalk) {
  // Walks 1, 2, 3, … on a root and on a view inside it, with edits and
  // delimiter changes on the way: the matches collected ahead of a walk
  // must be dropped whenever the text or the delimiter changes.
  std::mt19937 rng(23);
  const char16_t* delims[] = {u"|", u"||", u"ab"};
  for (int round = 0; round < 120; ++round) {
    const String text = RandomText(rng, round % 8 == 0 ? 2500 : 5 + rng() % 200, u"ab|");
    const String framed = u"<<" + text.ToU16() + u">>";
    auto fast_root = Holding(framed), slow_root = Holding(framed);
    // Odd rounds walk a view that starts inside the root's text.
    const int32_t inner = fast_root->LengthB() - 8;
    Twins t{round % 2 ? fast_root->SubStringB(4, inner) : fast_root,
            round % 2 ? slow_root->SubStringB(4, inner) : slow_root};
    String delim = delims[round % 3];
    int32_t e = 0;
    for (int step = 0; step < 400; ++step) {
      SCOPED_TRACE(::testing::Message() << "round " << round << " step " << step << " e " << e);
      const int what = int(rng() % 30);
      if (what == 0) {
        delim = delims[rng() % 3];  // the walk goes on with another delimiter
      } else if (what == 1) {
        t.OnBoth([&](auto& h) {
          internal::ReplaceElement(h, u"b|a", delim, e > 0 ? e : 1);
          return 0;
        });
      } else if (what == 2) {
        // An edit of the root, before the view, moves the view.
        fast_root->InsertB(u"|", 0);
        slow_root->InsertB(u"|", 0);
      } else if (what == 3) {
        e = 0;
      } else if (what == 4) {
        // An edit behind the cached element's delimiter keeps the cache and
        // the walk in step; the text it will meet has changed.
        const internal::ScanCache& c = t.slow_obj->scan();
        const int32_t behind = c.ScanStart + c.ScanLength + 2 * c.ScanDelimiter.LenB();
        if (!c.ScanAtEnd && behind <= t.slow_obj->LengthB()) {
          t.fast_obj->InsertB(u"||b", behind);
          t.slow_obj->InsertB(u"||b", behind);
        }
      }
      ++e;
      t.OnBoth([&](auto& h) {
        const internal::ElementSpan span = internal::ExtractElement(h, delim, e);
        return span.Eof ? -1 : span.Start * 1000 + span.Length;
      });
      ASSERT_EQ(t.fast_obj->scan(), t.slow_obj->scan());
      if (t.fast_obj->scan().ScanAtEnd && rng() % 2) e = 0;
    }
  }
}

TEST(ElementScan, FunctionsLocateElementMatchesTheResplitTwin) {
  std::mt19937 rng(29);
  const char16_t* delims[] = {u"|", u"||", u"ab"};
  const char16_t* finds[] = {u"", u"a", u"b", u"ab", u"A", u"#", u"bA", u"Ab|"};
  for (int round = 0; round < 3000; ++round) {
    const std::u16string delim = delims[round % 3];
    const std::u16string text = RandomText(rng, round % 50 == 0 ? 2000 : rng() % 40, u"ab|A");
    const std::u16string find = finds[rng() % std::size(finds)];
    const int32_t pos = int32_t(rng() % 6);
    const int32_t type = int32_t(rng() % 4);
    const int32_t case_type = int32_t(rng() % 2);
    SCOPED_TRACE(::testing::Message() << String(text) << " find " << String(find) << " pos " << pos
                                      << " type " << type << " case " << case_type);
    ASSERT_EQ(Functions::LocateElement(text, find, delim, pos, vxMatchingEnum(type),
                                       vxCaseEnum(case_type)),
              testing::NaiveLocate(text, delim, find, pos, type, case_type));
  }
}

TEST(ElementConversions, OnePassConversionsMatchTheirDefinitions) {
  // ChangeDelimiter is ChangeAll on a fresh object; DynArrayToArray takes
  // the elements one by one (base 1) or the runtime's Split; ArrayToDynArray
  // appends each item as the last element.
  std::mt19937 rng(43);
  const char16_t* olds[] = {u"|", u"||", u"ab", u"a|a", u"b"};
  const char16_t* news[] = {u";", u"", u"||", u"|", u"ab|ab", u"b"};
  for (int round = 0; round < 3000; ++round) {
    const String text = RandomText(rng, round % 100 == 0 ? 3000 : rng() % 40, u"ab|");
    const String old_delim = olds[rng() % std::size(olds)];
    const String new_delim = news[rng() % std::size(news)];
    SCOPED_TRACE(::testing::Message() << text << " " << old_delim << " -> " << new_delim);
    DynamicString d;
    d.SetValue(text);
    d.ChangeAll(old_delim, new_delim, vxCaseSensitive);
    ASSERT_EQ(Functions::ChangeDelimiter(text, old_delim, new_delim), d.Value());
    String in_place = text;
    ASSERT_EQ(DLLRoutines::CRVChangeDelimiter(in_place, old_delim, new_delim), -1);
    ASSERT_EQ(in_place, d.Value());

    if (text.LenB() == 0) continue;
    d.SetValue(text);
    StringArray want{1, {}};
    const int32_t n = d.CountElements(old_delim);
    for (int32_t i = 1; i <= n; ++i) want.items.push_back(d.ExtractElement(old_delim, i).Value());
    StringArray got;
    ASSERT_EQ(Functions::DynArrayToArray(text, old_delim, got, vxOneBased), n);
    ASSERT_EQ(got, want);
    want.lbound = 0;
    ASSERT_EQ(Functions::DynArrayToArray(text, old_delim, got, vxZeroBased), n);
    ASSERT_EQ(got, want);

    DynamicString joined;
    for (const String& item : want.items) joined.InsertElement(item, new_delim, -1);
    ASSERT_EQ(Functions::ArrayToDynArray(want, new_delim), joined.Value());
  }
}

struct SortCase {
  int32_t order, justification, case_type;
};

std::u16string RandomArray(std::mt19937& rng, std::u16string_view delim) {
  static const std::u16string_view kWords[] = {
      u"",  u"",   u"a",   u"A",   u"b",  u"B",   u"ab", u"1",  u"9",      u"10",     u"100", u"1x",
      u"-", u"-2", u"1e3", u"(5)", u"$1", u"1.0", u"01", u" 7", u"\u0001", u"\u00e9", u"E"};
  std::u16string out;
  const size_t n = rng() % 12;
  for (size_t i = 0; i < n; ++i) {
    if (i > 0) out += delim;
    out += kWords[rng() % std::size(kWords)];
  }
  return out;
}

// Functions::SortElements and the DynamicString member against NaiveSort.
void ExpectNaiveSort(const std::u16string& array, std::u16string_view delim, const SortCase& m) {
  SCOPED_TRACE(::testing::Message()
               << String(array) << " delim " << String(delim) << " order " << m.order << " just "
               << m.justification << " case " << m.case_type);
  const std::u16string want =
      testing::NaiveSort(array, delim, m.order, m.justification, m.case_type);
  ASSERT_EQ(Functions::SortElements(array, String(delim), vxSortOrderEnum(m.order),
                                    vxJustificationEnum(m.justification), vxCaseEnum(m.case_type)),
            want);
  DynamicString d;
  d.SetValue(array);
  d.SortElements(String(delim), vxSortOrderEnum(m.order), vxJustificationEnum(m.justification),
                 vxCaseEnum(m.case_type));
  ASSERT_EQ(d.Value(), want);
}

TEST(ElementSort, SortElementsMatchesTheLiteralInsertionSort) {
  // Words, numbers and empty elements, and raw text over self-overlapping
  // delimiters. The joins of the elements split back into them; the input's
  // last element may end with a part of the delimiter that a following one
  // completes ("a|" + "||" splits after "a"), but it is inserted last. Raw
  // text makes such last elements often (about one round in ten).
  std::mt19937 rng(5);
  const SortCase kModes[] = {{0, 0, 1}, {1, 0, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 1},
                             {1, 1, 1}, {0, 1, 0}, {1, 1, 0}, {2, 5, 2}, {1, 1, 2}};
  const std::u16string_view delims[] = {u"|", u"\u00fe", u"|;", u"||", u"|a|", u"aa"};
  for (int round = 0; round < 10000; ++round) {
    const size_t k = (round / 10) % std::size(delims);
    const std::u16string array =
        k < 3 ? RandomArray(rng, delims[k]) : RandomText(rng, rng() % 24, u"|ab");
    ExpectNaiveSort(array, delims[k], kModes[round % std::size(kModes)]);
  }
}

// SortElements by its definition, on objects: the elements read one by one
// from `source` and inserted into a fresh work object.
String LiteralSort(internal::DynamicStringImpl& source, const String& delim, const SortCase& m) {
  internal::ObjectText t(source);
  auto work = std::make_shared<internal::DynamicStringImpl>();
  internal::ObjectText w(*work);
  const int32_t n = internal::CountElements(t, delim);
  for (int32_t i = 1; i <= n; ++i) {
    internal::InsertElementSorted(w, internal::ElementText(t, delim, i), delim, m.order,
                                  m.justification, m.case_type, vxAllowDuplicates);
  }
  return work->Value();
}

TEST(ElementSort, ByteModeSortsMatchTheLiteralInsertionSort) {
  // Odd byte lengths, odd delimiters, a family in byte mode and a view at an
  // odd offset. The work object's byte-mode flag decides whether its
  // comparisons widen their bytes, so the replay has to follow it.
  std::mt19937 rng(41);
  const std::string delims[] = {"|", std::string("|\0", 2), "a|", std::string("|\0a", 3)};
  const SortCase kModes[] = {{0, 0, 1}, {1, 0, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 1}, {1, 1, 0}};
  const char kBytes[] = {'a', 'b', '|', '\0', 'A', '1', '9', '\xe9'};
  for (int round = 0; round < 4000; ++round) {
    const String delim = String::FromBytes(delims[round % 4].data(), delims[round % 4].size());
    const SortCase& m = kModes[(round / 4) % std::size(kModes)];
    std::string bytes(rng() % 30, 'a');
    for (char& c : bytes) c = kBytes[rng() % std::size(kBytes)];
    const String value = String::FromBytes(bytes.data(), bytes.size());
    const int kind = (round / 24) % 3;
    SCOPED_TRACE(::testing::Message() << "round " << round << " kind " << kind << " bytes "
                                      << ::testing::PrintToString(bytes));
    auto literal_root = Holding(value), fast_root = Holding(value);
    if (kind == 0) {
      // Functions: a fresh object holding the caller's string.
      ASSERT_EQ(
          Functions::SortElements(value, delim, vxSortOrderEnum(m.order),
                                  vxJustificationEnum(m.justification), vxCaseEnum(m.case_type)),
          LiteralSort(*literal_root, delim, m));
      continue;
    }
    DynamicString fast(fast_root);
    std::shared_ptr<internal::DynamicStringImpl> literal = literal_root;
    if (kind == 1) {
      literal_root->SetBinary(true);
      fast.SetBinary(true);
    } else if (value.LenB() > 1) {
      literal = literal_root->SubStringB(1, value.LenB() - 1);
      fast = fast.SubStringB(1, value.LenB() - 1);
    }
    const String want = LiteralSort(*literal, delim, m);
    fast.SortElements(delim, vxSortOrderEnum(m.order), vxJustificationEnum(m.justification),
                      vxCaseEnum(m.case_type));
    literal->SetValue(want);
    ASSERT_EQ(fast.Value(), literal->Value());
    ASSERT_EQ(fast_root->Value(), literal_root->Value());
    ASSERT_EQ(fast_root->Binary(), literal_root->Binary());
  }
}

TEST(ElementSort, LargeMixedNumericSortsReplayTheLiteralProbes) {
  // Numbers and text mixed under right justification: the comparison has
  // cycles, so only a probe-by-probe replay gives the literal result.
  std::mt19937 rng(9);
  for (int round = 0; round < 20; ++round) {
    std::u16string array;
    for (int i = 0; i < 300; ++i) {
      if (i > 0) array += u'|';
      const int kind = int(rng() % 4);
      array += kind == 0   ? u""
               : kind == 1 ? std::u16string(1, char16_t(u'a' + rng() % 3))
                           : String::FromUtf8(std::to_string(rng() % 200)).ToU16() +
                                 (kind == 3 ? u"x" : u"");
    }
    ExpectNaiveSort(array, u"|", {round % 2, 1, 1});
  }
}

TEST(ElementSort, ZerosOfEitherSignAreEqualNumbers) {
  // Right justified, -0 and 0 tie as numbers and the text decides. "-0"
  // reads as 0; a negative number too small for a double reads as -0. Only
  // text that sorts a 0 before the -0 ("+", "(" come before "-") shows a
  // sort key that tells the two zeros apart.
  const std::u16string_view kArrays[] = {u"-1E-330|+0|0", u"0|-1E-330|+0", u"(0)|-4.9E-325|0|-0",
                                         u"+0|-1E-330|1|-1|0.0", u"-1E-330|-1E-330|+0"};
  for (std::u16string_view array : kArrays) {
    for (const SortCase& m : {SortCase{0, 1, 1}, SortCase{1, 1, 1}, SortCase{0, 1, 0}}) {
      ExpectNaiveSort(std::u16string(array), u"|", m);
    }
  }
  EXPECT_EQ(Functions::SortElements(u"-1E-330|+0|0", u"|", vxAscending, vxRightJustify),
            u"+0|-1E-330|0");
}

TEST(ElementSort, InsertSortedMatchesTheLiteralBinarySearch) {
  // Into sorted and unsorted arrays. The insertion goes into ArrayValue's own
  // storage when it has room (every other round) and into new storage
  // otherwise; an argument that is ArrayValue itself is read before the edit.
  std::mt19937 rng(3);
  for (int round = 0; round < 4000; ++round) {
    const int32_t order = int32_t(rng() % 3), just = int32_t(rng() % 2), cs = int32_t(rng() % 2),
                  dup = int32_t(rng() % 2);
    std::u16string array = RandomArray(rng, u"|");
    if (rng() % 2) array = testing::NaiveSort(array, u"|", order, just, cs);
    const std::u16string value = RandomArray(rng, u";").substr(0, 3);
    SCOPED_TRACE(::testing::Message() << String(array) << " + " << String(value));
    std::u16string want = array;
    const int32_t want_pos = testing::NaiveInsertSorted(want, u"|", value, order, just, cs, dup);
    String got = array;
    if (round % 2) got.units().reserve(array.size() + 16);
    ASSERT_EQ(
        Functions::InsertSorted(got, u"|", value, vxSortOrderEnum(order), vxJustificationEnum(just),
                                vxCaseEnum(cs), vxDuplicatesEnum(dup)),
        want_pos);
    ASSERT_EQ(got, want);
  }
  String self = u"b|d";
  EXPECT_EQ(Functions::InsertSorted(self, u"|", self), 2);
  EXPECT_EQ(self, u"b|b|d|d");
  String bar = u"|";
  EXPECT_EQ(Functions::InsertSorted(bar, bar, u"a"), 3);
  EXPECT_EQ(bar, u"||a");
}

TEST(ElementSort, InsertSortedOnALargeArrayProbesThroughCheckpoints) {
  std::u16string array;
  for (int i = 0; i < 20000; ++i) {
    if (i > 0) array += u'|';
    array += String::FromUtf8(std::to_string(100000 + 3 * i)).ToU16();
  }
  for (int v : {99999, 100001, 130000, 130001, 200000}) {
    std::u16string want = array;
    const std::u16string value = String::FromUtf8(std::to_string(v)).ToU16();
    const int32_t pos = testing::NaiveInsertSorted(want, u"|", value, 0, 0, 1, 1);
    String got = array;
    EXPECT_EQ(Functions::InsertSorted(got, u"|", value), pos);
    EXPECT_EQ(got, want);
  }
}

}  // namespace
}  // namespace crvlib
