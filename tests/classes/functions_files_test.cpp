// Text files and Pause, in a temporary folder.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "crvlib/error.h"
#include "crvlib/functions.h"
#include "platform/clock.h"

namespace crvlib {
namespace {

namespace fs = std::filesystem;

template <class Fn>
std::pair<int32_t, std::u16string> ErrorOf(Fn fn) {
  try {
    fn();
  } catch (const Error& e) {
    return {e.Number(), e.Source().ToU16()};
  }
  return {0, u""};
}

class TextFiles : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "crvlib-files-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    dir_ = pattern;
  }
  void TearDown() override { fs::remove_all(dir_); }

  String Path(const std::string& name) const { return String::FromUtf8((dir_ / name).string()); }
  std::string Bytes(const std::string& name) const {
    std::ifstream in(dir_ / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  void Put(const std::string& name, const std::string& bytes) const {
    std::ofstream(dir_ / name, std::ios::binary) << bytes;
  }

  fs::path dir_;
};

TEST_F(TextFiles, SaveAppendsCrLfAndReplacesTheFile) {
  Functions::SaveTextFile(Path("a.txt"), u"first line that is long");
  Functions::SaveTextFile(Path("a.txt"), u"");
  EXPECT_EQ(Bytes("a.txt"), "\r\n");
  const String text = u"tab\there \"quoted\"\r\nline\n";
  Functions::SaveTextFile(Path("a.txt"), text);
  EXPECT_EQ(Functions::OpenTextFile(Path("a.txt")), String(text.ToU16() + u"\r\n"));
}

TEST_F(TextFiles, BytesGoThroughTheCodePage) {
  Functions::SaveTextFile(Path("cp.txt"), u"\u20AC\u00FF\u0100");
  EXPECT_EQ(Bytes("cp.txt"), "\x80\xFF?\r\n");
  Put("raw.txt", std::string("\x80\x81\xE9\0z", 5));
  EXPECT_EQ(Functions::OpenTextFile(Path("raw.txt")),
            std::u16string_view(u"\u20AC\u0081\u00E9\0z", 5));
  Put("empty.txt", "");
  EXPECT_EQ(Functions::OpenTextFile(Path("empty.txt")), u"");
}

TEST_F(TextFiles, FailuresCarryTheRuntimeFileErrors) {
  fs::create_directory(dir_ / "folder");
  Put("plain", "x");
  ASSERT_EQ(::mkfifo((dir_ / "fifo").c_str(), 0600), 0);
  const std::u16string open = u"CRVLIB.Functions::OpenTextFile";
  const std::u16string save = u"CRVLIB.Functions::SaveTextFile";
  struct Case {
    const char* what;
    std::function<void()> call;
    int32_t number;
    std::u16string source;
  };
  const Case kCases[] = {
      {"missing file", [&] { Functions::OpenTextFile(Path("none.txt")); }, 53, open},
      {"missing folder", [&] { Functions::OpenTextFile(Path("no/none.txt")); }, 76, open},
      {"file as folder", [&] { Functions::OpenTextFile(Path("plain/x")); }, 76, open},
      {"folder as file", [&] { Functions::OpenTextFile(Path("folder")); }, 75, open},
      {"empty name", [&] { Functions::OpenTextFile(u""); }, 52, open},
      {"nul in name", [&] { Functions::OpenTextFile(String(std::u16string(u"a\0b", 3))); }, 52,
       open},
      {"save missing folder", [&] { Functions::SaveTextFile(Path("no/x.txt"), u"x"); }, 76, save},
      {"save on folder", [&] { Functions::SaveTextFile(Path("folder"), u"x"); }, 75, save},
      {"save to fifo without reader", [&] { Functions::SaveTextFile(Path("fifo"), u"x"); }, 68,
       save},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(ErrorOf(c.call), std::make_pair(c.number, c.source));
  }
  // A FIFO reports no length: it reads as empty instead of waiting for a writer.
  EXPECT_EQ(Functions::OpenTextFile(Path("fifo")), u"");
}

TEST_F(TextFiles, UnreadableAndReadOnlyFilesArePermissionDenied) {
  Put("locked.txt", "secret");
  ASSERT_EQ(::chmod((dir_ / "locked.txt").c_str(), 0), 0);
  ASSERT_EQ(::chmod(dir_.c_str(), 0755), 0);
  auto numbers = [&] {
    return ErrorOf([&] { Functions::OpenTextFile(Path("locked.txt")); }).first * 1000 +
           ErrorOf([&] { Functions::SaveTextFile(Path("locked.txt"), u"x"); }).first;
  };
  if (::geteuid() != 0) {
    EXPECT_EQ(numbers(), 70070);
    return;
  }
  // Root reads anything: check as an unprivileged user in a child process.
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(255);
    ::_exit(numbers() == 70070 ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 255) GTEST_SKIP() << "cannot drop privileges";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

// Skips the test when a wait of `seconds` from now could cross midnight,
// where Pause deliberately never returns.
bool NearMidnight(double seconds) {
  return platform::SecondsSinceMidnight() > 86400.0 - seconds - 5.0;
}

TEST(Pause, ReturnsPromptlyForZeroAndNegative) {
  if (NearMidnight(0)) GTEST_SKIP() << "too close to midnight";
  for (int32_t period : {0, -1, -100000}) {
    SCOPED_TRACE(period);
    auto start = std::chrono::steady_clock::now();
    Functions::Pause(period);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
  }
}

TEST(Pause, WaitsAtLeastThePeriod) {
  if (NearMidnight(1)) GTEST_SKIP() << "too close to midnight";
  auto start = std::chrono::steady_clock::now();
  Functions::Pause(300);
  auto waited = std::chrono::steady_clock::now() - start;
  // The single-precision timer resolves to 1/128 s at worst.
  EXPECT_GE(waited, std::chrono::milliseconds(300 - 16));
  EXPECT_LT(waited, std::chrono::milliseconds(1500));
}

}  // namespace
}  // namespace crvlib
