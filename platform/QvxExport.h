// Symbol visibility for the qvx shared library. The library is compiled with
// hidden visibility; every public class and function carries QVX_API.
#pragma once

#if defined(_WIN32)
#  define QVX_API_EXPORT __declspec(dllexport)
#  define QVX_API_IMPORT __declspec(dllimport)
#else
#  define QVX_API_EXPORT __attribute__((visibility("default")))
#  define QVX_API_IMPORT __attribute__((visibility("default")))
#endif

#if defined(QVX_BUILDING_LIBRARY)
#  define QVX_API QVX_API_EXPORT
#else
#  define QVX_API QVX_API_IMPORT
#endif
