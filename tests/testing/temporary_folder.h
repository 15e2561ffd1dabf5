// Scratch space for tests that touch the file system: a fresh folder removed
// with its contents at the end of the scope, and an environment variable set
// (or, for nullptr, unset) for the scope.
#ifndef CRVLIB_TESTS_TESTING_TEMPORARY_FOLDER_H_
#define CRVLIB_TESTS_TESTING_TEMPORARY_FOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <optional>
#include <string>

namespace crvlib {

class TemporaryFolder {
 public:
  TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "crvlib-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr) path_.clear();
  }
  ~TemporaryFolder() {
    if (!path_.empty()) std::filesystem::remove_all(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::string& path() const { return path_; }  // empty when none could be made

 private:
  std::string path_;
};

class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = ::getenv(name)) saved_ = old;
    Set(value);
  }
  ~ScopedEnv() { Set(saved_ ? saved_->c_str() : nullptr); }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;
  void Set(const char* value) { value ? ::setenv(name_, value, 1) : ::unsetenv(name_); }

 private:
  const char* name_;
  std::optional<std::string> saved_;
};

}  // namespace crvlib

#endif  // CRVLIB_TESTS_TESTING_TEMPORARY_FOLDER_H_
