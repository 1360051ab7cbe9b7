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

// What a copy of buildCatalog(kSmallCatalog) that was read back keeps besides equal
// values: the seed registry's own data types in order, a column's table and type, and
// the password in clear text.
inline void expectCopyKeepsSeedsAndPassword(catalog::Catalog* copy) {
  ASSERT_EQ(copy->getDataTypes().size(), 10U);
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_EQ(copy->getDataTypes()[i], catalog::CatalogSeeds::getDataTypeSeed(static_cast<catalog::DataType>(i)));
  }
  catalog::Table* table = copy->getSchemas()[1]->getTables()[3];
  EXPECT_EQ(table->getColumns()[2]->getTable(), table);
  EXPECT_EQ(table->getColumns()[2]->getType(), catalog::CatalogSeeds::getDataTypeSeed(catalog::DataType::INTEGER));
  EXPECT_EQ(copy->getConnectionPassword(), std::optional<IUString>(IUString("s3cret")));
}

}  // namespace catalog_test
