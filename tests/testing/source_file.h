// The text of a file of the source tree, for tests that check the tree's
// own files (headers, README, generated descriptions).
#ifndef CRVLIB_TESTS_TESTING_SOURCE_FILE_H_
#define CRVLIB_TESTS_TESTING_SOURCE_FILE_H_

#include <fstream>
#include <sstream>
#include <string>

namespace crvlib {

// The whole file at `path`, relative to the source root
// ("include/crvlib/functions.h"); "" when it cannot be read.
inline std::string SourceFile(const std::string& path) {
  std::ifstream in(CRVLIB_SOURCE_DIR "/" + path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace crvlib

#endif  // CRVLIB_TESTS_TESTING_SOURCE_FILE_H_
