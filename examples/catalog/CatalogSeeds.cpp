#include "examples/catalog/CatalogSeeds.h"

#include <atomic>
#include <memory>
#include <mutex>

#include "examples/catalog/DataTypeDef.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/SeedRegistry.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::runtime::SeedRegistry;

namespace {

// The callback that was installed before ours; ids that are not ours go to it.
std::atomic<SeedRegistry::SeedLoaderCallback> gPreviousLoader{nullptr};

IUString const& literalName(DataType dataType) {
  return CatalogIPackage::iGetInstance()->getLiteral(dataType)->getName();
}

}  // namespace

IUString const& CatalogSeeds::getDataTypeSeedPrefix() {
  static const IUString prefix("com.example.catalog:types.");
  return prefix;
}

IUString CatalogSeeds::getDataTypeSeedId(DataType dataType) {
  return getDataTypeSeedPrefix() + literalName(dataType);
}

DataTypeDef* CatalogSeeds::createDataTypeSeed(DataType dataType) {
  auto seed = std::make_unique<DataTypeDef>();
  seed->setName(literalName(dataType));
  seed->setSqlName(literalName(dataType));
  seed->setMaxLength(dataType == DataType::VARCHAR || dataType == DataType::CHAR ? 65535 : 0);
  // The class is seeded, so the text becomes a seed identity.
  seed->iSetIdentity(getDataTypeSeedId(dataType));
  return seed.release();
}

IVector<DataTypeDef*> CatalogSeeds::createDataTypeSeeds() {
  IEnumeration const* dataTypes = CatalogIPackage::iGetInstance()->getDataTypeIEnumeration();
  IVector<DataTypeDef*> seeds(dataTypes->getLiterals().size());
  for (IEnumerationLiteral const* literal : dataTypes->getLiterals()) {
    seeds.append(createDataTypeSeed(static_cast<DataType>(literal->getOrdinalValue())));
  }
  return seeds;
}

IObject* CatalogSeeds::loadSeed(IUString const& seedId) {
  IUString const& prefix = getDataTypeSeedPrefix();
  if (seedId.startsWith(prefix)) {
    const IUString name = seedId.substr(prefix.length());
    for (IEnumerationLiteral const* literal : CatalogIPackage::iGetInstance()->getDataTypeIEnumeration()->getLiterals()) {
      if (literal->getName() == name) return createDataTypeSeed(static_cast<DataType>(literal->getOrdinalValue()));
    }
  }
  SeedRegistry::SeedLoaderCallback previous = gPreviousLoader.load();
  return previous != nullptr ? previous(seedId) : nullptr;
}

void CatalogSeeds::registerSeedLoader() {
  static std::once_flag once;
  std::call_once(once, [] {
    SeedRegistry::SeedLoaderCallback previous =
        QVXRuntime::getInstance()->getSeedRegistry().registerSeedLoaderCallback(&CatalogSeeds::loadSeed);
    gPreviousLoader.store(previous);
  });
}

DataTypeDef* CatalogSeeds::getDataTypeSeed(DataType dataType) {
  registerSeedLoader();
  IObject* found = QVXRuntime::getInstance()->getSeedRegistry().getObjectById(getDataTypeSeedId(dataType));
  if (found == nullptr) return nullptr;
  auto* seed = static_cast<IObjectInternal*>(found);
  if (!seed->instanceOf(*CatalogIPackage::iGetInstance()->getDataTypeDefIClass())) return nullptr;
  return static_cast<DataTypeDef*>(seed);
}

}  // namespace com::example::catalog
