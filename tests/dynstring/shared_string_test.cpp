// SharedString: one string in a named section, seen by every object and
// process that creates the same name.
#include "crvlib/shared_string.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/shared_memory.h"
#include "tests/testing/raised.h"

namespace crvlib {
namespace {

String UniqueName(const char* tag) {
  return String::FromUtf8(std::string("shared-") + tag + "-" + std::to_string(::getpid()));
}

bool Exists(const String& name) {
  return std::filesystem::exists("/dev/shm" + platform::SharedMemory::SystemName(name.view()));
}

TEST(SharedString, ErrorsBeforeAndDuringCreate) {
  const String item = u"CRVLIB.SharedString::Item", create = u"CRVLIB.SharedString::Create";
  SharedString s;
  EXPECT_EQ(RaisedBy([&] { s.Item(); }), Raised(13, item));
  EXPECT_EQ(RaisedBy([&] { s.SetItem(u"x"); }), Raised(13, item));
  EXPECT_EQ(RaisedBy([&] { s.Create(u""); }), Raised(5, create));
  EXPECT_EQ(RaisedBy([&] { s.Create(UniqueName("negative"), -1); }), Raised(5, create));
  // The system's error code and text for a name it refuses (too long).
  String description;
  const Raised refused =
      RaisedBy([&] { s.Create(String(std::u16string(300, u'x'))); }, &description);
  EXPECT_EQ(refused.source, create);
  EXPECT_EQ(description.ToUtf8(), std::strerror(refused.number));
  EXPECT_EQ(RaisedBy([&] { s.Item(); }).number, 13);
}

TEST(SharedString, ObjectsOfOneNameShareTheString) {
  const String name = UniqueName("objects");
  SharedString a, b;
  a.Create(name, 10);
  EXPECT_EQ(a.Item(), u"");  // a fresh section is empty
  a.SetItem(u"12345");       // 10 bytes: as many as Size allows
  b.Create(name);
  EXPECT_EQ(b.Item(), u"12345");  // the second Create keeps the content
  EXPECT_EQ(RaisedBy([&] { a.SetItem(u"123456"); }), Raised(6, u"CRVLIB.SharedString::Item"));
  b.SetItem(u"\u00E9t\u00E9 \U0001F600");
  EXPECT_EQ(a.Item(), u"\u00E9t\u00E9 \U0001F600");
  a.SetItem(String::FromBytes("abc", 3));  // an odd byte count reads back as whole characters
  EXPECT_EQ(b.Item(), u"\u6261");
}

TEST(SharedString, CreateAgainMovesToTheNewSection) {
  const String first = UniqueName("again-1");
  SharedString s;
  s.Create(first);
  s.SetItem(u"one");
  s.Create(first);  // the same name is still in use: the content stays
  EXPECT_EQ(s.Item(), u"one");
  s.Create(UniqueName("again-2"));
  EXPECT_EQ(s.Item(), u"");
  EXPECT_FALSE(Exists(first));  // the old section had no other user
  EXPECT_NE(RaisedBy([&] { s.Create(String(std::u16string(300, u'x'))); }).number, 0);
  s.SetItem(u"two");  // a failed Create leaves the object on its section
  EXPECT_EQ(s.Item(), u"two");

  // A section with another user outlives this object's move away from it.
  const String shared = UniqueName("again-3");
  SharedString other;
  other.Create(shared);
  s.Create(shared);
  s.SetItem(u"three");
  s.Create(UniqueName("again-4"));
  EXPECT_TRUE(Exists(shared));
  EXPECT_EQ(other.Item(), u"three");
}

TEST(SharedString, SizeZeroHoldsOnlyTheEmptyString) {
  SharedString s;
  s.Create(UniqueName("zero"), 0);
  s.SetItem(u"");
  EXPECT_EQ(s.Item(), u"");
  EXPECT_EQ(RaisedBy([&] { s.SetItem(u"a"); }), Raised(6, u"CRVLIB.SharedString::Item"));
}

// Runs `body` in a child process and returns the child's id; the child's
// exit status is what `body` returns.
pid_t Spawn(const std::function<int()>& body) {
  pid_t child = ::fork();
  if (child == 0) ::_exit(body());
  return child;
}

int ExitStatus(pid_t child) {
  int status = 0;
  return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(SharedString, TwoProcessesSeeEachOthersWrites) {
  const String name = UniqueName("processes");
  int to_parent[2], to_child[2];
  ASSERT_EQ(::pipe(to_parent), 0);
  ASSERT_EQ(::pipe(to_child), 0);
  char c = 0;
  {
    SharedString parent;
    parent.Create(name);
    parent.SetItem(u"from parent");
    pid_t child = Spawn([&] {
      SharedString s;
      s.Create(name);
      if (s.Item() != u"from parent") return 1;
      s.SetItem(u"from child");
      if (::write(to_parent[1], "w", 1) != 1 || ::read(to_child[0], &c, 1) != 1) return 2;
      return s.Item() == u"parent again" ? 0 : 3;
    });
    ASSERT_GT(child, 0);
    ASSERT_EQ(::read(to_parent[0], &c, 1), 1);
    EXPECT_EQ(parent.Item(), u"from child");
    parent.SetItem(u"parent again");
    ASSERT_EQ(::write(to_child[1], "w", 1), 1);
    EXPECT_EQ(ExitStatus(child), 0);
    EXPECT_TRUE(Exists(name));  // the parent still maps it
  }
  EXPECT_FALSE(Exists(name));
  for (int fd : {to_parent[0], to_parent[1], to_child[0], to_child[1]}) ::close(fd);
}

TEST(SharedString, AKilledLastUserLeavesNothingBehind) {
  const String name = UniqueName("killed");
  pid_t child = Spawn([&] {
    SharedString s;
    s.Create(name);
    s.SetItem(u"abandoned");
    ::raise(SIGKILL);
    return 1;
  });
  ASSERT_GT(child, 0);
  ::waitpid(child, nullptr, 0);
  SharedString s;
  s.Create(name);
  EXPECT_EQ(s.Item(), u"");  // nobody maps it any more: it counts as new
  s = SharedString();
  EXPECT_FALSE(Exists(name));
}

}  // namespace
}  // namespace crvlib
