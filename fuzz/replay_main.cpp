// Replays a fuzz corpus without libFuzzer: every file under the folders given
// on the command line goes once through LLVMFuzzerTestOneInput. This is how
// the corpora run in the ordinary test suite (and under the sanitizers).
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
  size_t runs = 0;
  for (int i = 1; i < argc; ++i) {
    std::error_code ec;
    if (!std::filesystem::exists(argv[i], ec)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream in(entry.path(), std::ios::binary);
      std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), {});
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++runs;
    }
  }
  std::printf("replayed %zu inputs\n", runs);
  return 0;
}
