// Runs part of a test in a process of its own, started afresh, for behaviour that
// happens once per process: first use of the singletons, the provider library named by
// the environment. GoogleTest re-executes the test program for the one test (the
// "threadsafe" death-test style); failed checks are printed with the child's output.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

class FreshProcessChecks {
 public:
  void expect(bool condition, const std::string& what) {
    if (!condition) failures_ += what + "\n";
  }

  // Reports the failures and ends the process, with status 0 when there were none.
  [[noreturn]] void finish() {
    std::fputs(failures_.c_str(), stderr);
    std::exit(failures_.empty() ? 0 : 1);
  }

 private:
  std::string failures_;
};

// Everything in the test before this call also runs in the child process.
template <typename Body>
void runInFreshProcess(Body body) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT({ FreshProcessChecks checks; body(checks); checks.finish(); }, ::testing::ExitedWithCode(0), "");
}
