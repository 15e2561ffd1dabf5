// Shared memory sections: names, sharing and lifetime across processes.
#include "platform/shared_memory.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <fcntl.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "crvlib/error.h"

namespace crvlib::platform {
namespace {

std::u16string UniqueName(const char* tag) {
  std::string name = std::string("test-") + tag + "-" + std::to_string(::getpid());
  return std::u16string(name.begin(), name.end());
}

bool Exists(std::u16string_view name) {
  return std::filesystem::exists("/dev/shm" + SharedMemory::SystemName(name));
}

TEST(SharedMemory, SystemNamesAreValidAndDistinct) {
  struct Case {
    std::u16string_view name;
    const char* want;
  };
  constexpr Case kCases[] = {
      {u"orders", "/crvlib-orders"},
      {u"Local\\a b", "/crvlib-Local\\a b"},
      {u"a/b", "/crvlib-a%2Fb"},
      {u"50%", "/crvlib-50%25"},
      {u"\u00E9", "/crvlib-%C3%A9"},
      {u"\t\x7F", "/crvlib-%09%7F"},
      {u"\U0001F600", "/crvlib-%F0%9F%98%80"},
      {u"\xD800", "/crvlib-%ED%A0%80"},  // a lone surrogate keeps its own bytes
      {std::u16string_view(u"a\0", 2), "/crvlib-a%00"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.want);
    EXPECT_EQ(SharedMemory::SystemName(c.name), c.want);
  }
}

TEST(SharedMemory, ATooLongNameRaisesTheSystemError) {
  try {
    SharedMemory::Open(std::u16string(300, u'x'), 16);
    FAIL();
  } catch (const Error& e) {
    // glibc refuses the name itself (EINVAL); other C libraries leave it to
    // the file system (ENAMETOOLONG).
    EXPECT_TRUE(e.Number() == EINVAL || e.Number() == ENAMETOOLONG) << e.Number();
    EXPECT_EQ(e.Description().ToUtf8(), std::strerror(e.Number()));
  }
}

TEST(SharedMemory, UsersShareGrowAndTheLastOneRemovesIt) {
  const std::u16string name = UniqueName("share");
  SharedMemory::Opened a = SharedMemory::Open(name, 8);
  EXPECT_FALSE(a.existed);
  EXPECT_GE(a.memory->size(), 8);
  std::memcpy(a.memory->data(), "hello", 5);

  SharedMemory::Opened b = SharedMemory::Open(name, 100000);
  EXPECT_TRUE(b.existed);
  EXPECT_EQ(std::memcmp(b.memory->data(), "hello", 5), 0);
  std::memcpy(b.memory->data() + 99990, "far", 3);
  // The first user reaches what the second one grew.
  ASSERT_TRUE(a.memory->Reach(100000));
  EXPECT_EQ(std::memcmp(a.memory->data() + 99990, "far", 3), 0);
  EXPECT_FALSE(a.memory->Reach(1 << 30));

  a.memory.reset();
  EXPECT_TRUE(Exists(name));
  b.memory.reset();
  EXPECT_FALSE(Exists(name));
}

// Runs `body` in a child that stops itself with SIGKILL once the section is
// mapped and written, as a process dies without cleaning up.
void MapAndDie(const std::u16string& name) {
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    try {
      SharedMemory::Opened opened = SharedMemory::Open(name, 64);
      std::memcpy(opened.memory->data(), "stale", 5);
      ::raise(SIGKILL);
    } catch (...) {
    }
    ::_exit(1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
}

TEST(SharedMemory, AKilledLastUserLeavesNothingBehind) {
  const std::u16string name = UniqueName("killed");
  MapAndDie(name);
  // Nobody maps it any more: the next user gets a new, empty section.
  SharedMemory::Opened opened = SharedMemory::Open(name, 64);
  EXPECT_FALSE(opened.existed);
  EXPECT_EQ(opened.memory->data()[0], 0);
  opened.memory.reset();
  EXPECT_FALSE(Exists(name));

  // Any other Open sweeps abandoned sections away.
  const std::u16string other = UniqueName("killed-other");
  MapAndDie(name);
  SharedMemory::Opened unrelated = SharedMemory::Open(other, 8);
  EXPECT_FALSE(Exists(name));
}

// Processes open and release one name as fast as they can. Whoever holds the
// section must hold the object the name stands for: a token written through
// the mapping is read back through the name. A releaser that removed a name
// still in use, or an opener left on a removed object, breaks this.
TEST(SharedMemory, ChurningUsersAlwaysHoldTheNamedObject) {
  const std::u16string name = UniqueName("churn");
  const std::string path = "/dev/shm" + SharedMemory::SystemName(name);
  constexpr int kProcesses = 6;
  constexpr int kRounds = 300;
  std::vector<pid_t> children;
  for (int p = 0; p < kProcesses; ++p) {
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child > 0) {
      children.push_back(child);
      continue;
    }
    int failures = 0;
    try {
      for (int round = 0; round < kRounds; ++round) {
        SharedMemory::Opened opened = SharedMemory::Open(name, 64);
        const int64_t token = int64_t{::getpid()} * 100000 + round;
        std::memcpy(opened.memory->data() + p * 8, &token, 8);
        int fd = ::open(path.c_str(), O_RDONLY);
        int64_t seen = -1;
        if (fd < 0 || ::pread(fd, &seen, 8, p * 8) != 8 || seen != token) ++failures;
        if (fd >= 0) ::close(fd);
      }
    } catch (...) {
      failures = 100;
    }
    ::_exit(failures > 100 ? 100 : failures);
  }
  for (pid_t child : children) {
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
  }
  EXPECT_FALSE(Exists(name));
}

}  // namespace
}  // namespace crvlib::platform
