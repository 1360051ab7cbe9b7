#include "tests/support/AssertionCatcher.h"

#include "platform/QvxAssert.h"

namespace {
void throwingHandler(const char* file, int line, const char* expression) {
  throw AssertionFailure{file, line, expression};
}
}  // namespace

AssertionCatcher::AssertionCatcher() : previous_(qvxSetAssertionHandler(&throwingHandler)) {}

AssertionCatcher::~AssertionCatcher() { qvxSetAssertionHandler(previous_); }
