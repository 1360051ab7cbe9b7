#include "platform/DynLoadLib.h"

#include <dlfcn.h>

#include <string>

DynLoadLib::~DynLoadLib() = default;  // deliberately no dlclose(handle_): see the class comment

ISTATUS DynLoadLib::load(const IUString& file) {
  if (file.isEmpty()) {
    error_ = "cannot load a library with an empty file name";
    return ISTATUS_FAILURE;
  }
  const std::string path = file.toUtf8();
  dlerror();  // drop a text left by an earlier call on this thread
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const char* text = dlerror();
    error_ = text != nullptr ? IUString(text) : IUString::format("cannot load library %s", path);
    return ISTATUS_FAILURE;
  }
  handle_ = handle;
  fileName_ = file;
  error_.clear();
  return ISTATUS_SUCCESS;
}

void* DynLoadLib::getFunctionAddr(const char* name) {
  if (handle_ == nullptr) {
    error_ = IUString::format("no library is loaded to look up symbol %s", name != nullptr ? name : "(null)");
    return nullptr;
  }
  if (name == nullptr) {
    error_ = IUString::format("null symbol name for library %s", fileName_);
    return nullptr;
  }
  dlerror();
  void* address = dlsym(handle_, name);
  // dlsym returns null both for a missing symbol and for one whose value is null;
  // dlerror tells them apart. Neither is of use to a caller, so both fail.
  const char* text = dlerror();
  if (text != nullptr) {
    error_ = IUString(text);
    return nullptr;
  }
  if (address == nullptr) {
    error_ = IUString::format("symbol %s of library %s has a null address", name, fileName_);
    return nullptr;
  }
  error_.clear();
  return address;
}
