// The Python module's bulk call against the same work in C++ and in plain
// Python, on the same data in the same run (CPU time, best of several runs):
// 10^6 dynamic string arrays of 10 random 8-16 character elements separated
// by the attribute mark, element 5 of each.
//   C++       Functions::ExtractElement over a vector, results kept in a vector
//   map       crvlib.map(Functions.ExtractElement, items, vxAM, 5)     <= 1.5x C++
//   split     [s.split(vxAM)[4] for s in items]                         slower than map
//
// The Python side is bench/python_map.py, run with the interpreter and the
// module this tree was configured with.
//
//   build-release/bench/python_map_bench [ITEMS]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "crvlib/constants.h"
#include "crvlib/functions.h"

namespace {

using crvlib::Functions;
using crvlib::String;

struct Lcg {
  uint64_t state = 12345;
  uint32_t Next() {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<uint32_t>(state >> 33);
  }
};

std::vector<String> Items(size_t n, const String& mark) {
  Lcg rng;
  std::vector<String> items;
  items.reserve(n);
  for (size_t i = 0; i < n; ++i) {
    std::u16string s;
    for (int e = 0; e < 10; ++e) {
      if (e > 0) s += mark.view();
      const uint32_t len = 8 + rng.Next() % 9;
      for (uint32_t k = 0; k < len; ++k) s += static_cast<char16_t>(u'a' + rng.Next() % 26);
    }
    items.emplace_back(std::move(s));
  }
  return items;
}

double ThreadSeconds() {
  timespec t;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// Writes the items as UTF-8 lines for the Python side.
void WriteItems(const char* path, const std::vector<String>& items) {
  std::FILE* f = std::fopen(path, "wb");
  if (f == nullptr) return;
  for (const String& s : items) {
    const std::string line = s.ToUtf8() + "\n";
    std::fwrite(line.data(), 1, line.size(), f);
  }
  std::fclose(f);
}

}  // namespace

int main(int argc, char** argv) {
  const size_t n = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000;
  const String mark = crvlib::Constants::vxAM();
  const std::vector<String> items = Items(n, mark);

  double t_cpp = 1e30;
  for (int run = 0; run < 5; ++run) {
    std::vector<String> out;
    const double t0 = ThreadSeconds();
    out.reserve(items.size());
    for (const String& s : items) out.push_back(Functions::ExtractElement(s, mark, 5));
    t_cpp = std::min(t_cpp, ThreadSeconds() - t0);
  }
  const double ns_cpp = t_cpp * 1e9 / static_cast<double>(n);
  std::printf("ExtractElement(item, vxAM, 5) over %zu items of 10 random 8-16 char elements\n", n);
  std::printf("  %-44s %8.0f ns/item\n", "C++ loop", ns_cpp);

#ifdef CRVLIB_PYTHON
  const char* path = "/tmp/crvlib_python_map_bench.txt";
  WriteItems(path, items);
  const std::string cmd = std::string("PYTHONPATH='") + CRVLIB_PYTHON_MODULE_DIR + "' '" +
                          CRVLIB_PYTHON + "' '" + CRVLIB_PYTHON_MAP_SCRIPT + "' '" + path + "'";
  std::FILE* p = popen(cmd.c_str(), "r");
  double ns_map = 0, ns_split = 0;
  if (p == nullptr || std::fscanf(p, "map %lf split %lf", &ns_map, &ns_split) != 2) {
    std::printf("  the Python side did not run: %s\n", cmd.c_str());
  }
  if (p != nullptr) pclose(p);
  std::remove(path);
  if (ns_map > 0) {
    std::printf("  %-44s %8.0f ns/item  %5.2fx C++    <= 1.5x\n",
                "crvlib.map(Functions.ExtractElement, ...)", ns_map, ns_map / ns_cpp);
    std::printf("  %-44s %8.0f ns/item  %5.2fx map    > 1x\n", "[s.split(vxAM)[4] for s in items]",
                ns_split, ns_split / ns_map);
  }
#else
  std::printf("  the Python module is not built: crvlib.map skipped\n");
#endif
  return 0;
}
