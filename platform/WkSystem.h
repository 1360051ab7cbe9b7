// File-system and environment helpers of the platform layer: reading environment
// variables (resource directories), and checking and creating directories (the
// logger's directory).
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

class QVX_API WkSystem {
 public:
  // Access checks for access(); they combine with |.
  enum AccessMode : int { kExists = 0, kReadable = 1, kWritable = 2, kExecutable = 4 };

  // The value of the environment variable `name` (read as UTF-8); empty when it is
  // unset, so an unset variable and an empty one look the same. Reading races with
  // a concurrent setenv in another thread, as the C library's getenv does.
  static IUString getEnv(const IUString& name);

  // Whether `path` exists and is reachable (every directory on the way searchable)
  // and, for the modes asked, readable, writable or executable by this process.
  static bool access(const IUString& path, int mode = kExists);

  // Creates the directory `path` (its parent must exist; permissions 0777 less the
  // umask). Succeeds too when a directory of that name already exists, since another
  // process may have created it between a caller's check and this call. On failure,
  // `error` (may be null) receives the system's reason.
  static ISTATUS createDir(const IUString& path, IUString* error = nullptr);
};

// The platform names of the helpers above.
QVX_API IUString wkGetEnv(const IUString& name);
QVX_API bool wkAccess(const IUString& path);
QVX_API ISTATUS wkCreateDir(const IUString& path);
