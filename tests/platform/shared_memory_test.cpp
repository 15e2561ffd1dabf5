// Shared memory sections: names, sharing and lifetime across processes.
#include "platform/shared_memory.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace crvlib::platform {
namespace {

std::u16string UniqueName(const char* tag) {
  std::string name = std::string("test-") + tag + "-" + std::to_string(::getpid());
  return std::u16string(name.begin(), name.end());
}

std::string FileOf(std::u16string_view name) {
  return "/dev/shm" + SharedMemory::SystemName(name);
}

TEST(SharedMemory, SystemNamesAreValidAndDistinct) {
  struct Case {
    std::u16string_view name;
    const char* want;
  };
  constexpr Case kCases[] = {
      {u"Local\\a b", "/crvlib-Local\\a b"},     {u"a/b%", "/crvlib-a%2Fb%25"},
      {u"\u00E9\t\x7F", "/crvlib-%C3%A9%09%7F"}, {u"\U0001F600", "/crvlib-%F0%9F%98%80"},
      {u"\xD800", "/crvlib-%ED%A0%80"},  // a lone surrogate keeps bytes of its own
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.want);
    EXPECT_EQ(SharedMemory::SystemName(c.name), c.want);
  }
}

TEST(SharedMemory, UsersShareAndGrowItAndTheLastOneRemovesIt) {
  const std::u16string name = UniqueName("share");
  SharedMemory::Opened a = SharedMemory::Open(name, 8);
  EXPECT_FALSE(a.existed);
  std::memcpy(a.memory->data(), "hello", 5);
  SharedMemory::Opened b = SharedMemory::Open(name, 100000);
  EXPECT_TRUE(b.existed);
  EXPECT_EQ(std::memcmp(b.memory->data(), "hello", 5), 0);
  std::memcpy(b.memory->data() + 99990, "far", 3);
  ASSERT_TRUE(a.memory->Reach(100000));  // the first user reaches what the second grew
  EXPECT_EQ(std::memcmp(a.memory->data() + 99990, "far", 3), 0);
  EXPECT_FALSE(a.memory->Reach(1 << 30));
  a.memory.reset();
  EXPECT_TRUE(std::filesystem::exists(FileOf(name)));
  b.memory.reset();
  EXPECT_FALSE(std::filesystem::exists(FileOf(name)));
}

TEST(SharedMemory, OpeningSweepsSectionsOfDeadUsers) {
  const std::u16string name = UniqueName("dead");
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    SharedMemory::Opened opened = SharedMemory::Open(name, 64);
    ::raise(SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  SharedMemory::Opened unrelated = SharedMemory::Open(UniqueName("sweeper"), 8);
  EXPECT_FALSE(std::filesystem::exists(FileOf(name)));
}

// Processes open and release one name as fast as they can. Whoever holds the
// section must hold the object the name stands for: a token written through
// the mapping is read back through the name. A releaser that removed a name
// still in use, or an opener left on a removed object, breaks this.
TEST(SharedMemory, ChurningUsersAlwaysHoldTheNamedObject) {
  const std::u16string name = UniqueName("churn");
  const std::string path = FileOf(name);
  std::vector<pid_t> children;
  for (int p = 0; p < 6; ++p) {
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child > 0) {
      children.push_back(child);
      continue;
    }
    int failures = 0;
    for (int round = 0; round < 300; ++round) {
      SharedMemory::Opened opened = SharedMemory::Open(name, 64);
      const int64_t token = int64_t{::getpid()} * 100000 + round;
      std::memcpy(opened.memory->data() + p * 8, &token, 8);
      int fd = ::open(path.c_str(), O_RDONLY);
      int64_t seen = -1;
      if (fd < 0 || ::pread(fd, &seen, 8, p * 8) != 8 || seen != token) ++failures;
      if (fd >= 0) ::close(fd);
    }
    ::_exit(failures > 0 ? 1 : 0);
  }
  for (pid_t child : children) {
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace crvlib::platform
