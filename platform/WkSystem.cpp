#include "platform/WkSystem.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

IUString WkSystem::getEnv(const IUString& name) {
  if (name.isEmpty()) return IUString();
  const char* value = std::getenv(name.toUtf8().c_str());
  return value != nullptr ? IUString(value) : IUString();
}

bool WkSystem::access(const IUString& path, int mode) {
  if (path.isEmpty()) return false;
  int systemMode = F_OK;
  if ((mode & kReadable) != 0) systemMode |= R_OK;
  if ((mode & kWritable) != 0) systemMode |= W_OK;
  if ((mode & kExecutable) != 0) systemMode |= X_OK;
  return ::access(path.toUtf8().c_str(), systemMode) == 0;
}

ISTATUS WkSystem::createDir(const IUString& path, IUString* error) {
  if (path.isEmpty()) {
    if (error != nullptr) *error = "cannot create a directory with an empty name";
    return ISTATUS_FAILURE;
  }
  const std::string narrowPath = path.toUtf8();
  if (::mkdir(narrowPath.c_str(), 0777) == 0) return ISTATUS_SUCCESS;
  const int reason = errno;
  struct stat existing;
  if (reason == EEXIST && ::stat(narrowPath.c_str(), &existing) == 0 && S_ISDIR(existing.st_mode)) {
    return ISTATUS_SUCCESS;
  }
  if (error != nullptr) {
    *error = IUString::format("cannot create directory %s: %s", narrowPath, std::strerror(reason));
  }
  return ISTATUS_FAILURE;
}

IUString wkGetEnv(const IUString& name) { return WkSystem::getEnv(name); }

bool wkAccess(const IUString& path) { return WkSystem::access(path); }

ISTATUS wkCreateDir(const IUString& path) { return WkSystem::createDir(path); }
