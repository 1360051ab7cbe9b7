// Shared helpers of the catalog package tests: the package with its classes, the facade
// of an object and an encryption key for the password property.
#pragma once

#include <gtest/gtest.h>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogIFactory.h"
#include "examples/catalog/CatalogIPackage.h"
#include "examples/catalog/CatalogSeeds.h"
#include "examples/catalog/CatalogWorkload.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/ForeignKey.h"
#include "examples/catalog/Position.h"
#include "examples/catalog/Schema.h"
#include "examples/catalog/Table.h"
#include "examples/catalog/View.h"
#include "icore/IClass.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IProperty.h"
#include "icore/ObjectGraphComparator.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "platform/WkEncryption.h"
#include "tests/support/ThrownMessage.h"

namespace catalog_test {

namespace icore = com::veltrana::qvx::icore;
namespace catalog = com::example::catalog;
using qvx_test::messageOf;

inline catalog::CatalogIPackage* pkg() { return catalog::CatalogIPackage::iGetInstance(); }

inline icore::IObjectInfo& infoOf(icore::IObject* object) {
  return *icore::QVXRuntime::getInstance()->getIObjectInfo(object);
}

// The default encryption provider needs a key; any fixed key will do for tests.
inline void useTestEncryptionKey() {
  unsigned char key[WkEncryption::kKeyLength];
  for (std::size_t i = 0; i < sizeof key; ++i) key[i] = static_cast<unsigned char>(i * 11 + 3);
  WkEncryption::setKey(key, sizeof key);
}

}  // namespace catalog_test
