// The platform's dynamic library loader, over the system's dlopen. Package
// libraries and the encryption provider are loaded through it.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

// One loaded shared library. A library, once loaded, stays loaded for the rest of
// the process: the destructor does not unload it, because the packages and the
// provider it registers, and the code behind their vtables, live for the process.
//
// Libraries are opened with every symbol bound at load time, so a library with an
// unresolved symbol fails in load() with the loader's text rather than crashing on
// first call, and with local symbol scope, so separately loaded libraries cannot
// interpose on each other's symbols.
//
// Not synchronised: callers that share one object serialise its use.
class QVX_API DynLoadLib {
 public:
  DynLoadLib() = default;
  DynLoadLib(const DynLoadLib&) = delete;
  DynLoadLib& operator=(const DynLoadLib&) = delete;
  ~DynLoadLib();

  // Loads `file` (a path, or a bare name that the system's search rules find).
  // On failure, returns ISTATUS_FAILURE and keeps the loader's error text for
  // getError(); an object that already held a library keeps it. On success an
  // earlier library of this object is replaced (and stays loaded). An empty name
  // fails: the system would take it to mean the main program.
  ISTATUS load(const IUString& file);

  // The address of the symbol `name` in the loaded library, or null when there is
  // no library or no such symbol (getError() then says which).
  void* getFunctionAddr(const char* name);

  // The error text of the last failed load or getFunctionAddr on this object (the
  // system keeps only one text per thread and clears it when read, so it is copied
  // here at the failing call); empty after a success.
  const IUString& getError() const { return error_; }

  bool isLoaded() const { return handle_ != nullptr; }
  // The name the library was loaded by; empty when none is loaded.
  const IUString& getFileName() const { return fileName_; }

 private:
  void* handle_ = nullptr;
  IUString fileName_;
  IUString error_;
};
