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

#include "crvlib/error.h"
#include "platform/shared_memory.h"

namespace crvlib {
namespace {

template <class Fn>
std::pair<int32_t, std::u16string> ErrorOf(Fn fn) {
  try {
    fn();
  } catch (const Error& e) {
    return {e.Number(), e.Source().ToU16()};
  }
  return {0, u""};
}

String UniqueName(const char* tag) {
  return String::FromUtf8(std::string("shared-") + tag + "-" + std::to_string(::getpid()));
}

bool Exists(const String& name) {
  return std::filesystem::exists("/dev/shm" + platform::SharedMemory::SystemName(name.view()));
}

TEST(SharedString, ErrorsBeforeAndDuringCreate) {
  const std::u16string create = u"CRVLIB.SharedString::Create";
  const std::u16string item = u"CRVLIB.SharedString::Item";
  SharedString s;
  struct Case {
    const char* what;
    std::function<void()> call;
    int32_t number;
    std::u16string source;
  };
  const Case kCases[] = {
      {"read before Create", [&] { s.Item(); }, 13, item},
      {"write before Create", [&] { s.SetItem(u"x"); }, 13, item},
      {"empty name", [&] { s.Create(u""); }, 5, create},
      {"negative size", [&] { s.Create(UniqueName("neg"), -1); }, 5, create},
      {"still nothing mapped", [&] { s.Item(); }, 13, item},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(ErrorOf(c.call), std::make_pair(c.number, c.source));
  }
}

TEST(SharedString, ObjectsOfOneNameShareTheString) {
  const String name = UniqueName("objects");
  SharedString a, b;
  a.Create(name);
  EXPECT_EQ(a.Item(), u"");  // a fresh section is empty
  a.SetItem(u"first");
  b.Create(name);
  EXPECT_EQ(b.Item(), u"first");  // the second Create keeps the content
  b.SetItem(u"\u00E9t\u00E9 \U0001F600");
  EXPECT_EQ(a.Item(), u"\u00E9t\u00E9 \U0001F600");
  SharedString copy = a;  // copies refer to the same object
  copy.SetItem(u"");
  EXPECT_EQ(b.Item(), u"");
}

TEST(SharedString, SizeLimitsTheTextAlone) {
  const String name = UniqueName("size");
  SharedString s;
  s.Create(name, 10);
  s.SetItem(u"12345");  // 10 bytes: as many as Size allows
  EXPECT_EQ(s.Item(), u"12345");
  EXPECT_EQ(ErrorOf([&] { s.SetItem(u"123456"); }),
            std::make_pair(6, std::u16string(u"CRVLIB.SharedString::Item")));
  EXPECT_EQ(s.Item(), u"12345");  // unchanged
  // An odd byte count is stored as given and read back in whole characters.
  s.SetItem(String::FromBytes("abc", 3));
  EXPECT_EQ(s.Item(), u"\u6261");
  SharedString zero;
  zero.Create(UniqueName("zero"), 0);
  zero.SetItem(u"");
  EXPECT_EQ(ErrorOf([&] { zero.SetItem(u"x"); }).first, 6);
}

TEST(SharedString, CreateAgainMovesToTheNewSection) {
  const String first = UniqueName("again-1");
  const String second = UniqueName("again-2");
  SharedString s;
  s.Create(first);
  s.SetItem(u"one");
  s.Create(first);  // the same name: still in use, so the content stays
  EXPECT_EQ(s.Item(), u"one");
  s.Create(second);
  EXPECT_EQ(s.Item(), u"");
  EXPECT_FALSE(Exists(first));  // the old section had no other user
  // A failing Create leaves the object on its section.
  EXPECT_NE(ErrorOf([&] { s.Create(String(std::u16string(300, u'x'))); }).first, 0);
  s.SetItem(u"two");
  EXPECT_EQ(s.Item(), u"two");
}

// A pipe to hand single bytes between parent and child.
class Channel {
 public:
  Channel() { EXPECT_EQ(::pipe(fds_), 0); }
  ~Channel() {
    ::close(fds_[0]);
    ::close(fds_[1]);
  }
  void Send(char c) { EXPECT_EQ(::write(fds_[1], &c, 1), 1); }
  char Receive() {
    char c = 0;
    return ::read(fds_[0], &c, 1) == 1 ? c : '\0';
  }

 private:
  int fds_[2];
};

// Runs `body` in a child process; its result is the exit status.
pid_t Spawn(const std::function<int()>& body) {
  pid_t child = ::fork();
  if (child == 0) {
    int rc = 99;
    try {
      rc = body();
    } catch (...) {
    }
    ::_exit(rc);
  }
  return child;
}

int ExitStatus(pid_t child) {
  int status = 0;
  if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

TEST(SharedString, TwoProcessesSeeEachOthersWrites) {
  const String name = UniqueName("processes");
  Channel to_parent, to_child;
  {
    SharedString parent;
    parent.Create(name);
    parent.SetItem(u"from parent");
    pid_t child = Spawn([&] {
      SharedString s;
      s.Create(name);
      if (s.Item() != u"from parent") return 1;
      s.SetItem(u"from child");
      to_parent.Send('w');
      if (to_child.Receive() != 'w' || s.Item() != u"parent again") return 2;
      return 0;
    });
    ASSERT_GT(child, 0);
    ASSERT_EQ(to_parent.Receive(), 'w');
    EXPECT_EQ(parent.Item(), u"from child");
    parent.SetItem(u"parent again");
    to_child.Send('w');
    EXPECT_EQ(ExitStatus(child), 0);
    EXPECT_TRUE(Exists(name));  // the parent still maps it
  }
  EXPECT_FALSE(Exists(name));
}

TEST(SharedString, AKilledWriterDoesNotLeakItsSection) {
  const String name = UniqueName("killed");
  Channel ready;
  pid_t child = Spawn([&] {
    SharedString s;
    s.Create(name);
    s.SetItem(u"abandoned");
    ready.Send('r');
    ::pause();
    return 0;
  });
  ASSERT_GT(child, 0);
  ASSERT_EQ(ready.Receive(), 'r');
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);

  SharedString s;
  s.Create(name);
  EXPECT_EQ(s.Item(), u"");  // the last user died: the section counts as new
  s = SharedString();
  EXPECT_FALSE(Exists(name));
}

}  // namespace
}  // namespace crvlib
