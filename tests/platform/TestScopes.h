// Small scoped helpers shared by the foundation-layer tests: an environment variable
// set for one scope, a temporary directory removed afterwards, and the message of an
// expected exception.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/IUString.h"

// Sets `name` to `value` (unsets it when `value` is null) until the end of the scope.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value)
      : name_(name), hadValue_(getenv(name) != nullptr), previous_(hadValue_ ? getenv(name) : "") {
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedEnv() { hadValue_ ? setenv(name_, previous_.c_str(), 1) : unsetenv(name_); }

 private:
  const char* name_;
  bool hadValue_;
  std::string previous_;
};

// A fresh directory under the system's temporary directory, removed with its contents.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qvx-test-XXXXXX").string();
    EXPECT_NE(mkdtemp(pattern.data()), nullptr) << "cannot create " << pattern;
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }
  // Writes `bytes` to the file `name` in the directory and returns the file's path.
  std::string write(const std::string& name, const std::string& bytes) const {
    const std::string file = (path_ / name).string();
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
  }

 private:
  std::filesystem::path path_;
};

// The message of the E that `action` throws; a test failure when it throws none.
template <typename E, typename Action>
std::string thrownMessage(Action action) {
  try {
    action();
  } catch (const E& e) {
    return IUString(e.getMessage()).toUtf8();
  }
  ADD_FAILURE() << "expected an exception";
  return std::string();
}
