// Text files and Pause, in a temporary folder.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "crvlib/functions.h"
#include "platform/clock.h"
#include "tests/testing/raised.h"
#include "tests/testing/temporary_folder.h"

namespace crvlib {
namespace {

namespace fs = std::filesystem;

class TextFiles : public testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(folder_.path().empty()); }

  String Path(const std::string& name) const { return String::FromUtf8((dir_ / name).string()); }
  std::string Bytes(const std::string& name) const {
    std::ifstream in(dir_ / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  // The error number; 0 when none. Every error carries the routine's source.
  int32_t OpenError(const std::string& name) const {
    return Number(RaisedBy([&] { Functions::OpenTextFile(Path(name)); }), u"OpenTextFile");
  }
  int32_t SaveError(const std::string& name) const {
    return Number(RaisedBy([&] { Functions::SaveTextFile(Path(name), u"x"); }), u"SaveTextFile");
  }
  static int32_t Number(const Raised& r, std::u16string_view routine) {
    EXPECT_TRUE(!r.number || r.source == u"CRVLIB.Functions::" + std::u16string(routine)) << r;
    return r.number;
  }

  TemporaryFolder folder_;
  const fs::path dir_ = folder_.path();
};

TEST_F(TextFiles, RoundTripThroughTheCodePage) {
  Functions::SaveTextFile(Path("a.txt"), u"a long first content");
  Functions::SaveTextFile(Path("a.txt"), u"");
  EXPECT_EQ(Bytes("a.txt"), "\r\n");  // replaced, not appended to
  Functions::SaveTextFile(Path("a.txt"), u"\u20AC\u00FF\u0100\t\"q\"\n");
  EXPECT_EQ(Bytes("a.txt"), "\x80\xFF?\t\"q\"\n\r\n");
  EXPECT_EQ(Functions::OpenTextFile(Path("a.txt")), u"\u20AC\u00FF?\t\"q\"\n\r\n");
  std::ofstream(dir_ / "empty.txt").close();
  EXPECT_EQ(Functions::OpenTextFile(Path("empty.txt")), u"");
}

TEST_F(TextFiles, FailuresCarryTheRuntimeFileErrors) {
  fs::create_directory(dir_ / "folder");
  std::ofstream(dir_ / "plain").close();
  fs::resize_file(dir_ / "plain", 0x40000000);  // one character too long; sparse
  ASSERT_EQ(::mkfifo((dir_ / "fifo").c_str(), 0600), 0);
  struct Case {
    const char* name;
    int32_t open, save;
    const char16_t* open_description;
  };
  constexpr Case kCases[] = {
      {"none.txt", 53, 0, u"File not found"},   {"no/none.txt", 76, 76, u"Path not found"},
      {"plain/x", 76, 76, u"Path not found"},   {"folder", 75, 75, u"Path/File access error"},
      {"plain", 14, 0, u"Out of string space"}, {"fifo", 0, 68, u""},  // no reader: no wait
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    String description;
    const Raised opened = RaisedBy([&] { Functions::OpenTextFile(Path(c.name)); }, &description);
    EXPECT_EQ(Number(opened, u"OpenTextFile"), c.open);
    EXPECT_EQ(description, c.open_description);
    EXPECT_EQ(SaveError(c.name), c.save);  // (a save that succeeds makes the file)
  }
  EXPECT_EQ(RaisedBy([] { Functions::OpenTextFile(u""); }),
            Raised(52, u"CRVLIB.Functions::OpenTextFile"));
}

TEST_F(TextFiles, UnreadableAndReadOnlyFilesArePermissionDenied) {
  std::ofstream(dir_ / "locked.txt") << "secret";
  ASSERT_EQ(::chmod((dir_ / "locked.txt").c_str(), 0), 0);
  ASSERT_EQ(::chmod(dir_.c_str(), 0755), 0);
  if (::geteuid() != 0) {
    EXPECT_EQ(OpenError("locked.txt"), 70);
    EXPECT_EQ(SaveError("locked.txt"), 70);
    return;
  }
  // Root reads anything: check as an unprivileged user in a child process.
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(255);
    ::_exit(OpenError("locked.txt") == 70 && SaveError("locked.txt") == 70 ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  if (WEXITSTATUS(status) == 255) GTEST_SKIP() << "cannot drop privileges";
  EXPECT_EQ(status, 0);
}

TEST(Pause, WaitsOnTheTimer) {
  // Never across midnight, where Pause deliberately does not return.
  if (platform::SecondsSinceMidnight() > 86400 - 10) GTEST_SKIP() << "too close to midnight";
  using Clock = std::chrono::steady_clock;
  for (int32_t period : {0, -100000}) {
    auto start = Clock::now();
    Functions::Pause(period);
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(100)) << period;
  }
  auto start = Clock::now();
  Functions::Pause(300);
  auto waited = Clock::now() - start;
  EXPECT_GE(waited, std::chrono::milliseconds(300 - 16));  // the timer resolves to 1/128 s
  EXPECT_LT(waited, std::chrono::milliseconds(1500));
}

}  // namespace
}  // namespace crvlib
