// Test helper: prints newly generated UUIDs, one canonical text per line, so that a test
// can start several processes at once and check that they never repeat an id.
//
// Usage: qvx_uuid_dump COUNT START_AT
// Generation begins at START_AT (microseconds since the epoch), so that processes
// started together generate in the same microseconds.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include "icore/runtime/UUIDExternalizer.h"
#include "icore/runtime/UUIIdentity.h"

using com::veltrana::qvx::icore::runtime::UUIDExternalizer;
using com::veltrana::qvx::icore::runtime::UUIIdentity;

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s COUNT START_AT_MICROSECONDS\n", argv[0]);
    return 2;
  }
  const long count = std::strtol(argv[1], nullptr, 10);
  const std::chrono::microseconds startAt(std::strtoll(argv[2], nullptr, 10));
  UUIDExternalizer* generator = UUIDExternalizer::getInstance();
  std::this_thread::sleep_until(std::chrono::system_clock::time_point(startAt));
  for (long index = 0; index < count; ++index) {
    const std::unique_ptr<UUIIdentity> identity(generator->generateNewId());
    std::puts(identity->getCanonicalText().toUtf8().c_str());
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}
