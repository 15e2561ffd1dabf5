// Every scan kernel this build has, called directly, against a plain greedy
// search; and the kernel the process runs on, as CRVLIB_KERNEL asks.
#include "dynstring/element_kernels.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace crvlib {
namespace {

using internal::kNoMatch;
using internal::ScanKernel;
using internal::UnitDelimiter;

// The occurrences of `d` starting in [from, until), overlapping or not.
std::vector<size_t> Occurrences(std::u16string_view text, std::u16string_view d, size_t from,
                                size_t until) {
  std::vector<size_t> out;
  for (size_t p = from; p < until; ++p) {
    if (text.substr(p, d.size()) == d) out.push_back(p);
  }
  return out;
}

TEST(ElementScan, EveryKernelFindsCountsAndCollectsEveryOccurrence) {
  // Ranges of every length around the vector widths (8 units a compare, 16
  // a collect, 32 a count), ending at the text's end or short of it, so
  // that each kernel's tail and each load next to the end are met.
  struct Case {
    std::u16string_view delimiter;
    bool countable;  // occurrences never overlap: count and collect apply
  };
  const Case kCases[] = {{u"|", true},   {u"\u00fe", true}, {u"|a", true},
                         {u"||", false}, {u"a|a", false},   {u"ab|", false}};
  std::mt19937 rng(3);
  for (const ScanKernel* kernel : internal::AvailableScanKernels()) {
    for (const Case& c : kCases) {
      const UnitDelimiter d(c.delimiter);
      for (size_t round = 0; round < 320; ++round) {
        const size_t size = round / 4;
        std::u16string text(size, u'a');
        for (char16_t& u : text) u = u"a|b\u00fe"[rng() % 4];
        if (size < d.size()) continue;
        // The whole text first, then random ranges.
        const size_t last = size - d.size() + 1;
        const size_t from = round % 4 == 0 ? 0 : rng() % (last + 1);
        const size_t until = round % 4 == 0 ? last : from + rng() % (last - from + 1);
        SCOPED_TRACE(::testing::Message()
                     << kernel->name << " size " << size << " [" << from << ", " << until
                     << ") delimiter of " << c.delimiter.size());
        const std::vector<size_t> want = Occurrences(text, c.delimiter, from, until);
        EXPECT_EQ(kernel->find(text, from, until, d), want.empty() ? kNoMatch : want.front());
        if (!c.countable) continue;
        EXPECT_EQ(kernel->count(text, from, until, d), int64_t(want.size()));
        size_t out[80];
        const size_t cap = 1 + rng() % 12;
        const size_t k = kernel->collect(text, from, until, d, out, cap);
        ASSERT_EQ(k, std::min(cap, want.size()));
        EXPECT_EQ(std::vector<size_t>(out, out + k),
                  std::vector<size_t>(want.begin(), want.begin() + ptrdiff_t(k)));
      }
    }
  }
}

TEST(ElementScan, TheEnvironmentPicksTheKernel) {
  // The scalar loops are always there, as the last resort; a name this
  // build does not have, or none, leaves the fastest kernel in charge.
  const auto kernels = internal::AvailableScanKernels();
  ASSERT_FALSE(kernels.empty());
  EXPECT_EQ(kernels.back()->name, "scalar");
  std::string_view want = kernels.front()->name;
  if (const char* asked = std::getenv("CRVLIB_KERNEL")) {
    for (const ScanKernel* k : kernels) {
      if (k->name == asked) want = k->name;
    }
  }
  EXPECT_EQ(internal::ActiveScanKernel().name, want);
}

}  // namespace
}  // namespace crvlib
