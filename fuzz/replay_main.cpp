// Replays a fuzz corpus without libFuzzer: every file under the folders given
// on the command line goes once through LLVMFuzzerTestOneInput. This is how
// the corpora run in the ordinary test suite (and under the sanitizers). A
// folder that is missing, cannot be read or holds no file fails the replay,
// so a corpus lost in a move does not pass as a corpus replayed.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s CORPUS_FOLDER...\n", argv[0]);
    return 2;
  }
  size_t runs = 0;
  for (int i = 1; i < argc; ++i) {
    std::error_code ec;
    if (!std::filesystem::is_directory(argv[i], ec)) {
      std::fprintf(stderr, "no corpus folder at %s\n", argv[i]);
      return 1;
    }
    size_t files = 0;
    std::filesystem::recursive_directory_iterator it(argv[i], ec), end;
    for (; !ec && it != end; it.increment(ec)) {
      if (!it->is_regular_file()) continue;
      std::ifstream in(it->path(), std::ios::binary);
      if (!in) {
        std::fprintf(stderr, "cannot read %s\n", it->path().string().c_str());
        return 1;
      }
      std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), {});
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++files;
    }
    if (ec) {
      std::fprintf(stderr, "cannot read the corpus folder %s: %s\n", argv[i], ec.message().c_str());
      return 1;
    }
    if (files == 0) {
      std::fprintf(stderr, "the corpus folder %s holds no input\n", argv[i]);
      return 1;
    }
    runs += files;
  }
  std::printf("replayed %zu inputs\n", runs);
  return 0;
}
