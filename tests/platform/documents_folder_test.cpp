// The documents folder, found in a temporary home.
#include "platform/documents_folder.h"

#include <stdlib.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

namespace crvlib::platform {
namespace {

namespace fs = std::filesystem;

// Sets an environment variable for the lifetime of the object.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, std::optional<std::string> value) : name_(name) {
    if (const char* old = ::getenv(name)) old_ = old;
    if (value) {
      ::setenv(name, value->c_str(), 1);
    } else {
      ::unsetenv(name);
    }
  }
  ~ScopedEnv() {
    if (old_) {
      ::setenv(name_, old_->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

class DocumentsFolderTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "crvlib-home-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    home_ = pattern;
  }
  void TearDown() override { fs::remove_all(home_); }

  void WriteDirs(const fs::path& config, const std::string& text) {
    fs::create_directories(config);
    std::ofstream(config / "user-dirs.dirs") << text;
  }

  fs::path home_;
};

TEST_F(DocumentsFolderTest, ReadsUserDirsAndCreatesTheFolder) {
  const std::string home = home_.string();
  struct Case {
    const char* what;
    std::optional<std::string> dirs;  // content of ~/.config/user-dirs.dirs
    std::string want;                 // relative to home
  };
  const Case kCases[] = {
      {"no file", std::nullopt, "Documents/"},
      {"home relative", "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n", "Dokumente/"},
      {"blanks, comments, trailing slash",
       "# XDG_DOCUMENTS_DIR=\"$HOME/commented\"\n  XDG_DOCUMENTS_DIR = \"$HOME/Docs/\"\n", "Docs/"},
      {"absolute and deep", "XDG_DOCUMENTS_DIR=\"" + home + "/abs/deep\"\n", "abs/deep/"},
      {"relative is ignored", "XDG_DOCUMENTS_DIR=\"papers\"\n", "Documents/"},
      {"$HOMEX is no home path", "XDG_DOCUMENTS_DIR=\"$HOMEX\"\n", "Documents/"},
      {"unquoted is ignored", "XDG_DOCUMENTS_DIR=$HOME/bare\n", "Documents/"},
      {"escaped quote", "XDG_DOCUMENTS_DIR=\"$HOME/My \\\"Docs\\\"\"\n", "My \"Docs\"/"},
      {"last line counts",
       "XDG_DOCUMENTS_DIR=\"$HOME/one\"\nXDG_DESKTOP_DIR=\"$HOME/d\"\nXDG_DOCUMENTS_DIR=\"$HOME/"
       "two\"",
       "two/"},
      {"home itself", "XDG_DOCUMENTS_DIR=\"$HOME/\"\n", ""},
  };
  ScopedEnv home_env("HOME", home);
  ScopedEnv config_env("XDG_CONFIG_HOME", std::nullopt);
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.what);
    fs::remove_all(home_ / ".config");
    if (c.dirs) WriteDirs(home_ / ".config", *c.dirs);
    const std::string want = home + "/" + c.want;
    EXPECT_EQ(DocumentsFolder(), want);
    EXPECT_TRUE(fs::is_directory(want));
  }
}

TEST_F(DocumentsFolderTest, HonoursAnAbsoluteXdgConfigHome) {
  const std::string home = home_.string();
  ScopedEnv home_env("HOME", home + "//");  // trailing slashes are not doubled
  WriteDirs(home_ / "cfg", "XDG_DOCUMENTS_DIR=\"$HOME/fromcfg\"\n");
  WriteDirs(home_ / ".config", "XDG_DOCUMENTS_DIR=\"$HOME/fromdefault\"\n");
  {
    ScopedEnv config_env("XDG_CONFIG_HOME", home + "/cfg");
    EXPECT_EQ(DocumentsFolder(), home + "/fromcfg/");
  }
  {
    ScopedEnv config_env("XDG_CONFIG_HOME", "cfg");  // relative: ignored
    EXPECT_EQ(DocumentsFolder(), home + "/fromdefault/");
  }
}

TEST_F(DocumentsFolderTest, GivesNothingWhenTheFolderCannotBe) {
  ScopedEnv home_env("HOME", home_.string());
  ScopedEnv config_env("XDG_CONFIG_HOME", std::nullopt);
  std::ofstream(home_ / "Documents") << "a file, not a folder";
  EXPECT_EQ(DocumentsFolder(), "");
}

}  // namespace
}  // namespace crvlib::platform
