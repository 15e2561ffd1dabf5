// Whole-file reads: the size limit holds at its edge.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/testing/raised.h"
#include "tests/testing/temporary_folder.h"

namespace crvlib {
namespace {

TEST(Files, ReadWholeFileTakesAFileOfExactlyItsLimit) {
  TemporaryFolder folder;
  ASSERT_FALSE(folder.path().empty());
  const std::string path = folder.path() + "/four";
  std::ofstream(path, std::ios::binary) << "abcd";
  EXPECT_EQ(platform::ReadWholeFile(path, 4), "abcd");
  EXPECT_EQ(RaisedBy([&] { platform::ReadWholeFile(path, 3); }).number, 14);
}

}  // namespace
}  // namespace crvlib
