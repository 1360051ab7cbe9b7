// The catalog workload catalog(S, T, C, F): one deterministic object graph that every
// serializer test and benchmark builds the same way. S schemas, T tables per schema, C
// columns per table, F foreign keys per table; every identifiable object gets a
// generated identity, and the data types are the package's seed objects. Named sizes:
// small = catalog(2, 10, 5, 1) for tests, bench = catalog(10, 1000, 10, 2) (about
// 140,000 objects) for benchmarks.
//
// The connection password is encrypted as it is set, so an encryption provider with a
// key must be available (WkEncryption::setKey or QVX_ENCRYPTION_KEY_FILE for the
// default provider).
#pragma once

#include "examples/catalog/CatalogExport.h"

namespace com::example::catalog {

class Catalog;

struct CatalogWorkloadSize {
  int schemas;
  int tablesPerSchema;
  int columnsPerTable;
  int foreignKeysPerTable;
};

inline constexpr CatalogWorkloadSize kSmallCatalog{2, 10, 5, 1};
inline constexpr CatalogWorkloadSize kBenchCatalog{10, 1000, 10, 2};

// Builds catalog(schemas, tables, columns, foreignKeys). The caller owns the catalog and
// deletes it with everything it contains; the seeds belong to the seed registry.
// Negative counts are taken as 0. With no columns, primary keys and foreign-key column
// lists stay empty.
QVX_CATALOG_API Catalog* buildCatalog(int schemas, int tables, int columns, int foreignKeys);
QVX_CATALOG_API Catalog* buildCatalog(CatalogWorkloadSize const& size);

}  // namespace com::example::catalog
