// Symbol visibility for the catalog package library. Like the runtime library it is
// compiled with hidden visibility; every public class and function carries
// QVX_CATALOG_API.
#pragma once

#if defined(_WIN32)
#  define QVX_CATALOG_API_EXPORT __declspec(dllexport)
#  define QVX_CATALOG_API_IMPORT __declspec(dllimport)
#else
#  define QVX_CATALOG_API_EXPORT __attribute__((visibility("default")))
#  define QVX_CATALOG_API_IMPORT __attribute__((visibility("default")))
#endif

#if defined(QVX_CATALOG_BUILDING_LIBRARY)
#  define QVX_CATALOG_API QVX_CATALOG_API_EXPORT
#else
#  define QVX_CATALOG_API QVX_CATALOG_API_IMPORT
#endif
