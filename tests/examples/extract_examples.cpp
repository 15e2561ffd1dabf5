// extract_examples OUTPUT FILE...: writes the GoogleTest file checking the
// examples of the given public headers and README (tests/testing/examples.h
// has the form they are written in), or names the example it cannot read
// and fails, which fails the build.
#include <cstdio>
#include <fstream>
#include <sstream>

#include "tests/testing/examples.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: extract_examples OUTPUT FILE...\n");
    return 2;
  }
  std::vector<crvlib::examples::SourceText> files;
  for (int i = 2; i < argc; ++i) {
    std::ifstream in(argv[i], std::ios::binary);
    if (!in) {
      std::fprintf(stderr, "extract_examples: cannot read %s\n", argv[i]);
      return 1;
    }
    std::ostringstream text;
    text << in.rdbuf();
    files.push_back({argv[i], text.str()});
  }
  std::string out, error;
  if (!crvlib::examples::WriteTests(files, &out, &error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  std::ofstream file(argv[1], std::ios::binary);
  file << out;
  if (!file.flush()) {
    std::fprintf(stderr, "extract_examples: cannot write %s\n", argv[1]);
    return 1;
  }
  return 0;
}
