// A recursive mutex, the lock type of every self-guarding singleton of the library.
// WkMutexGuard holds one for a scope.
#pragma once

#include <mutex>

#include "platform/QvxExport.h"

class QVX_API WkMutex {
 public:
  WkMutex() = default;
  WkMutex(const WkMutex&) = delete;
  WkMutex& operator=(const WkMutex&) = delete;

  void lock() { mutex_.lock(); }
  bool tryLock() { return mutex_.try_lock(); }
  void unlock() { mutex_.unlock(); }

  // Lockable names, so std::lock_guard and std::unique_lock accept a WkMutex.
  bool try_lock() { return tryLock(); }

 private:
  std::recursive_mutex mutex_;
};

class WkMutexGuard {
 public:
  explicit WkMutexGuard(WkMutex& mutex) : mutex_(mutex) { mutex_.lock(); }
  ~WkMutexGuard() { mutex_.unlock(); }
  WkMutexGuard(const WkMutexGuard&) = delete;
  WkMutexGuard& operator=(const WkMutexGuard&) = delete;

 private:
  WkMutex& mutex_;
};
