#include "platform/QvxAssert.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

void abortingHandler(const char* file, int line, const char* expression) {
  std::fprintf(stderr, "assertion failure in %s at line %d: %s\n", file, line, expression);
  std::abort();
}

std::atomic<QvxAssertionHandler> currentHandler{&abortingHandler};

}  // namespace

QvxAssertionHandler qvxSetAssertionHandler(QvxAssertionHandler handler) {
  return currentHandler.exchange(handler != nullptr ? handler : &abortingHandler);
}

void qvxAssertionFailed(const char* file, int line, const char* expression) {
  currentHandler.load()(file, line, expression);
}
