// The seeded DataTypeDef objects of the catalog package, one per DataType literal, with
// the seed ids "com.example.catalog:types.<LITERAL>". They ship in the seed file
// "com.example.catalog.types.seed.xml"; the same objects can be made in code, and the
// seed loader callback hands them to the seed registry without reading that file.
#pragma once

#include "examples/catalog/CatalogExport.h"
#include "examples/catalog/CatalogIPackage.h"
#include "platform/IVector.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace com::example::catalog {

class DataTypeDef;

class QVX_CATALOG_API CatalogSeeds {
 public:
  CatalogSeeds() = delete;

  // "com.example.catalog:types."
  static IUString const& getDataTypeSeedPrefix();
  // The seed id of the definition of `dataType`, e.g. "com.example.catalog:types.VARCHAR".
  static IUString getDataTypeSeedId(DataType dataType);

  // A new definition of `dataType` with its seed identity: name and sqlName the
  // literal's name, maxLength 65535 for VARCHAR and CHAR and 0 otherwise. The caller
  // owns it.
  static DataTypeDef* createDataTypeSeed(DataType dataType);
  // The ten definitions in ordinal order; the caller owns them.
  static IVector<DataTypeDef*> createDataTypeSeeds();

  // The seed loader callback for the seed registry: a new seed object for one of the
  // package's seed ids, which the registry then owns. Other ids go to the callback that
  // was installed before this one, if any; null when no one knows the id.
  static com::veltrana::qvx::icore::IObject* loadSeed(IUString const& seedId);
  // Installs loadSeed with the seed registry; only the first call does so.
  static void registerSeedLoader();

  // The registered seed of `dataType`, found through the seed registry after
  // registerSeedLoader(); null if the registry has no such object.
  static DataTypeDef* getDataTypeSeed(DataType dataType);
};

}  // namespace com::example::catalog
