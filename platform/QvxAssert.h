// The assertion handler. Broken invariants of the library (a missing singleton, a
// member that must be set, a base operation that a concrete class must override)
// go to one replaceable handler with the source file and line instead of throwing.
// The default handler prints the failure to standard error and aborts. A handler
// that returns lets the failing operation continue with its documented fallback
// (usually a null result); tests install one that throws.
#pragma once

#include "platform/QvxExport.h"

typedef void (*QvxAssertionHandler)(const char* file, int line, const char* expression);

// Installs `handler` (null restores the default) and returns the previous one.
QVX_API QvxAssertionHandler qvxSetAssertionHandler(QvxAssertionHandler handler);

// Reports an assertion failure to the installed handler.
QVX_API void qvxAssertionFailed(const char* file, int line, const char* expression);

#define QVX_ASSERT(condition) \
  ((condition) ? static_cast<void>(0) : ::qvxAssertionFailed(__FILE__, __LINE__, #condition))

// Reports a failure unconditionally, for code paths that must never be reached.
#define QVX_ASSERT_FAIL(what) ::qvxAssertionFailed(__FILE__, __LINE__, what)
