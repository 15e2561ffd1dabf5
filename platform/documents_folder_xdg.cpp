// The documents folder of the XDG user-directories convention. The file
// user-dirs.dirs holds shell-style lines such as
//
//   XDG_DOCUMENTS_DIR="$HOME/Documents"
//
// and a value is either "$HOME" followed by a path relative to the home
// folder, or an absolute path; anything else is ignored, as desktop tools
// ignore it. A backslash makes the next character literal (the tools that
// write the file escape quotes that way). When several lines name the folder
// the last one counts.
#include "platform/documents_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string_view>
#include <vector>

namespace crvlib::platform {
namespace {

std::string HomeFolder() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') {
    std::string folder = home;
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    return folder;
  }
  // No HOME in the environment: fall back on the password database.
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
      found != nullptr && found->pw_dir != nullptr) {
    return found->pw_dir;
  }
  return {};
}

std::string ConfigFolder(const std::string& home) {
  const char* config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && config[0] == '/') return config;
  return home + "/.config";
}

void SkipBlanks(std::string_view& s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
}

bool Consume(std::string_view& s, std::string_view prefix) {
  if (s.substr(0, prefix.size()) != prefix) return false;
  s.remove_prefix(prefix.size());
  return true;
}

// The folder a XDG_DOCUMENTS_DIR line names, or nothing for any other line.
std::optional<std::string> DocumentsLine(std::string_view line, const std::string& home) {
  SkipBlanks(line);
  if (!Consume(line, "XDG_DOCUMENTS_DIR")) return std::nullopt;
  SkipBlanks(line);
  if (!Consume(line, "=")) return std::nullopt;
  SkipBlanks(line);
  if (!Consume(line, "\"")) return std::nullopt;

  std::string value;
  bool closed = false;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\\' && i + 1 < line.size()) {
      value.push_back(line[++i]);
    } else if (line[i] == '"') {
      closed = true;
      break;
    } else {
      value.push_back(line[i]);
    }
  }
  if (!closed) return std::nullopt;

  std::string_view v = value;
  if (Consume(v, "$HOME")) {
    if (!v.empty() && v.front() != '/') return std::nullopt;  // "$HOMEX" is no home path
    return home + std::string(v);
  }
  if (!v.empty() && v.front() == '/') return std::string(v);
  return std::nullopt;
}

// Creates `path` and the folders above it that are missing.
bool MakeFolders(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) == 0) return S_ISDIR(st.st_mode);
  size_t slash = path.find_last_of('/');
  if (slash != std::string::npos && slash > 0 && !MakeFolders(path.substr(0, slash))) return false;
  if (::mkdir(path.c_str(), 0777) == 0) return true;
  // Someone else may have made it meanwhile.
  return errno == EEXIST && ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

}  // namespace

std::string DocumentsFolder() {
  std::string home = HomeFolder();
  if (home.empty()) return {};

  std::string folder = home + "/Documents";
  std::ifstream dirs(ConfigFolder(home) + "/user-dirs.dirs");
  for (std::string line; std::getline(dirs, line);) {
    if (std::optional<std::string> named = DocumentsLine(line, home)) folder = std::move(*named);
  }

  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  if (!MakeFolders(folder)) return {};
  if (folder.back() != '/') folder.push_back('/');
  return folder;
}

bool PathsHaveDriveLetters() {
  return false;
}

}  // namespace crvlib::platform
