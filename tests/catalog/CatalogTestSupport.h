// Shared helpers of the catalog package tests: the package, the facade of an object,
// an encryption key for the password property, and checks of thrown message texts.
#pragma once

#include <gtest/gtest.h>

#include "examples/catalog/CatalogIPackage.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "platform/WkEncryption.h"

namespace catalog_test {

namespace icore = com::veltrana::qvx::icore;
namespace catalog = com::example::catalog;

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

// Runs `statement`, expecting it to throw `Exception` with the message `expectedText`
// (usually a qvxGetMsg / qvxFormatMsg text, which tells the message numbers apart).
#define EXPECT_THROW_MSG(statement, Exception, expectedText)                                 \
  do {                                                                                       \
    try {                                                                                    \
      statement;                                                                             \
      ADD_FAILURE() << "expected " #Exception " from " #statement;                          \
    } catch (Exception & thrown) {                                                           \
      EXPECT_EQ(thrown.getMessage().toUtf8(), IUString(expectedText).toUtf8()) << #statement; \
    }                                                                                        \
  } while (false)

}  // namespace catalog_test
