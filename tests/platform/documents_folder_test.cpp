// The documents folder, found in a temporary home.
#include "platform/documents_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "tests/testing/temporary_folder.h"

namespace crvlib::platform {
namespace {

namespace fs = std::filesystem;

TEST(DocumentsFolder, ReadsUserDirsAndCreatesTheFolder) {
  TemporaryFolder folder;
  const std::string& home = folder.path();
  ASSERT_FALSE(home.empty());
  ScopedEnv set_home("HOME", (home + "/").c_str());  // a trailing slash is not doubled
  ScopedEnv config_home("XDG_CONFIG_HOME", nullptr);

  struct Case {
    std::optional<std::string> dirs;  // content of user-dirs.dirs
    std::string want;                 // below home; "!" for none
    std::string config = "/.config";  // where the file is, below home
    const char* xdg_config_home = nullptr;
  };
  const Case kCases[] = {
      {std::nullopt, "/Documents/"},
      {"# XDG_DOCUMENTS_DIR=\"$HOME/no\"\n XDG_DOCUMENTS_DIR = \"$HOME/Docs/\"\n", "/Docs/"},
      {"XDG_DOCUMENTS_DIR=\"" + home + "/abs/deep\"", "/abs/deep/"},
      {"XDG_DOCUMENTS_DIR=\"$HOME/My \\\"D\\\"\"", "/My \"D\"/"},               // escaped quotes
      {"XDG_DOCUMENTS_DIR=\"$HOME/1\"\nXDG_DOCUMENTS_DIR=\"$HOME/2\"", "/2/"},  // the last one
      {"XDG_DOCUMENTS_DIR=\"$HOME/\"", "/"},
      // Relative paths, "$HOMEX" and unquoted values are no folder names.
      {"XDG_DOCUMENTS_DIR=\"rel\"\nXDG_DOCUMENTS_DIR=\"$HOMEX\"\nXDG_DOCUMENTS_DIR=$HOME/x",
       "/Documents/"},
      {"XDG_DOCUMENTS_DIR=\"$HOME/cfg\"", "/cfg/", "/cfg", "ABSOLUTE"},
      {"XDG_DOCUMENTS_DIR=\"$HOME/cfg\"", "/Documents/", "/cfg", "cfg"},  // relative: ignored
      {"XDG_DOCUMENTS_DIR=\"$HOME/a.txt\"", "!"},                         // a file, not a folder
  };
  std::ofstream(home + "/a.txt") << "x";
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.want);
    fs::remove_all(home + "/.config");
    fs::remove_all(home + "/cfg");
    const std::string absolute = home + c.config;
    config_home.Set(c.xdg_config_home && std::string_view(c.xdg_config_home) == "ABSOLUTE"
                        ? absolute.c_str()
                        : c.xdg_config_home);
    if (c.dirs) {
      fs::create_directories(home + c.config);
      std::ofstream(home + c.config + "/user-dirs.dirs") << *c.dirs;
    }
    if (c.want == "!") {
      EXPECT_EQ(DocumentsFolder(), "");
    } else {
      EXPECT_EQ(DocumentsFolder(), home + c.want);
      EXPECT_TRUE(fs::is_directory(home + c.want));
    }
  }
}

}  // namespace
}  // namespace crvlib::platform
