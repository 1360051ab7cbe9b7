// Test support for assertion paths: while an AssertionCatcher is alive, a failed
// QVX_ASSERT throws AssertionFailure instead of aborting the test process.
#pragma once

#include <string>

struct AssertionFailure {
  std::string file;
  int line;
  std::string expression;
};

class AssertionCatcher {
 public:
  AssertionCatcher();
  ~AssertionCatcher();
  AssertionCatcher(const AssertionCatcher&) = delete;
  AssertionCatcher& operator=(const AssertionCatcher&) = delete;

 private:
  void (*previous_)(const char*, int, const char*);
};
