// Test helper: prints newly generated UUIDs, one canonical text per line, so that a test
// can start several processes at once and check that they never repeat an id.
//
// Usage: qvx_uuid_dump COUNT [START_AT [STEP_BACK]]
// START_AT is a time in microseconds since the epoch; generation begins then, so that
// processes started together generate in the same microseconds (0: at once).
// STEP_BACK, in microseconds, sets the wall clock back by that much once half of the
// ids are made. The clock functions are replaced in this executable for that purpose;
// they are exported (the build hides symbols by default), so the libraries use them too.
#include <dlfcn.h>
#include <sys/time.h>
#include <time.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "icore/IIdentity.h"
#include "icore/internal/IdentityManager.h"
#include "icore/runtime/UUIIdentity.h"

using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::internal::IdentityManager;
using com::veltrana::qvx::icore::runtime::UUIIdentity;

namespace {

std::atomic<long long> clockOffsetMicroseconds{0};

template <typename Function>
Function nextDefinition(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock, timespec* now) noexcept {
  static const auto real = nextDefinition<int (*)(clockid_t, timespec*)>("clock_gettime");
  const int result = real(clock, now);
  const long long offset = clockOffsetMicroseconds.load();
  if (result == 0 && clock == CLOCK_REALTIME && offset != 0) {
    const long long nanoseconds = now->tv_sec * 1000000000LL + now->tv_nsec + offset * 1000;
    now->tv_sec = nanoseconds / 1000000000LL;
    now->tv_nsec = nanoseconds % 1000000000LL;
  }
  return result;
}

extern "C" __attribute__((visibility("default"))) int gettimeofday(timeval* now, void* zone) noexcept {
  static const auto real = nextDefinition<int (*)(timeval*, void*)>("gettimeofday");
  const int result = real(now, zone);
  const long long offset = clockOffsetMicroseconds.load();
  if (result == 0 && offset != 0) {
    const long long microseconds = now->tv_sec * 1000000LL + now->tv_usec + offset;
    now->tv_sec = microseconds / 1000000LL;
    now->tv_usec = microseconds % 1000000LL;
  }
  return result;
}

int main(int argc, char** argv) {
  if (argc < 2 || argc > 4) {
    std::fprintf(stderr, "usage: %s COUNT [START_AT_MICROSECONDS [STEP_BACK_MICROSECONDS]]\n", argv[0]);
    return 2;
  }
  const long count = std::strtol(argv[1], nullptr, 10);
  const long long startAt = argc > 2 ? std::strtoll(argv[2], nullptr, 10) : 0;
  const long long stepBack = argc > 3 ? std::strtoll(argv[3], nullptr, 10) : 0;
  IdentityManager* manager = IdentityManager::getInstance();
  if (startAt > 0) {
    std::this_thread::sleep_until(std::chrono::system_clock::time_point{std::chrono::microseconds(startAt)});
  }
  static char buffer[1 << 16];
  std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
  for (long index = 0; index < count; ++index) {
    if (stepBack != 0 && index == count / 2) {
      clockOffsetMicroseconds.store(-stepBack);
    }
    const std::unique_ptr<IIdentity> identity(manager->generateNewId());
    const auto* uuid = dynamic_cast<const UUIIdentity*>(identity.get());
    if (uuid == nullptr) {
      return 1;
    }
    const std::string text = uuid->getCanonicalText().toUtf8();
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}
