// Proxies of catalog classes: what the factory makes, what a proxy refuses and with
// which message, and resolving a proxy with a fully read object.
#include <gtest/gtest.h>

#include <memory>

#include "examples/catalog/CatalogIFactory.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/Position.h"
#include "examples/catalog/Table.h"
#include "examples/catalog/View.h"
#include "icore/IClass.h"
#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/runtime/StringIdentity.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using catalog_test::infoOf;
using catalog_test::pkg;
using com::example::catalog::CatalogIFactory;
using com::example::catalog::Column;
using com::example::catalog::Position;
using com::example::catalog::Table;
using com::example::catalog::TableKind;
using com::example::catalog::View;
using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IObjectInfo;
using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::qvxFormatMsg;
using com::veltrana::qvx::icore::qvxGetMsg;
using com::veltrana::qvx::icore::exception::IllegalArgumentException;
using com::veltrana::qvx::icore::exception::InstantiationException;
using com::veltrana::qvx::icore::exception::UnresolvedProxyException;
using com::veltrana::qvx::icore::exception::UnsupportedOperationException;
using com::veltrana::qvx::icore::runtime::StringIdentity;

std::unique_ptr<IObject> makeProxy(IClass const& objectClass, const char* id) {
  auto identity = std::make_unique<StringIdentity>(IUString(id));
  IIdentity const* handedOver = identity.get();
  std::unique_ptr<IObject> proxy(CatalogIFactory::iGetInstance()->createProxy(objectClass, handedOver));
  identity.release();  // the proxy owns it now
  return proxy;
}

TEST(CatalogProxyTest, ProxyCarriesItsClassAndIdentityButNoValues) {
  auto* p = pkg();
  std::unique_ptr<IObject> proxy = makeProxy(*p->getTableIClass(), "orders");
  IObjectInfo& info = infoOf(proxy.get());
  EXPECT_TRUE(info.isProxy());
  EXPECT_EQ(info.getIClass(), p->getTableIClass());
  EXPECT_EQ(info.getIdentityString(), IUString("orders"));

  auto* table = static_cast<Table*>(proxy.get());
  EXPECT_THROW_MSG(table->getName(), UnresolvedProxyException, qvxGetMsg(75004));
  EXPECT_THROW_MSG(table->addColumn(nullptr), UnresolvedProxyException, qvxGetMsg(75004));
  EXPECT_THROW_MSG(info.get(*p->getTable_RowCountIProperty(), ITRUE), UnresolvedProxyException, qvxGetMsg(75004));
  // The three-argument set leaves the check to the object (75004), the four-argument
  // one makes it itself (75000).
  std::int64_t rows = 1;
  EXPECT_THROW_MSG(info.set(*p->getTable_RowCountIProperty(), &rows, ITRUE), UnresolvedProxyException,
                   qvxGetMsg(75004));
  EXPECT_THROW_MSG(info.set(*p->getTable_RowCountIProperty(), &rows, 0, ITRUE), UnresolvedProxyException,
                   qvxGetMsg(75000));
  EXPECT_THROW_MSG(info.getCardinality(*p->getTable_ColumnsIProperty()), UnresolvedProxyException,
                   qvxGetMsg(75000));
  EXPECT_THROW_MSG(infoOf(proxy.get()).hasItems(*p->getTable_ColumnsIProperty()), UnresolvedProxyException,
                   qvxGetMsg(75000));
  // Asked directly, a proxy refuses a property that is not multi-valued with 75004.
  EXPECT_THROW_MSG(table->iHasItems(*p->getTable_RowCountIProperty()), UnresolvedProxyException, qvxGetMsg(75004));
  // Membership is checked before the proxy state.
  EXPECT_THROW(info.get(*p->getColumn_LengthIProperty(), ITRUE), IllegalArgumentException);
}

TEST(CatalogProxyTest, FactoryChecksTheClassAndIdentityInOrder) {
  auto* p = pkg();
  CatalogIFactory* factory = CatalogIFactory::iGetInstance();
  IIdentity const* none = nullptr;
  EXPECT_THROW_MSG(factory->createProxy(*p->getTableIClass(), none), IllegalArgumentException, qvxGetMsg(75007));

  auto identity = std::make_unique<StringIdentity>(IUString("x"));
  IIdentity const* handedOver = identity.get();
  EXPECT_THROW_MSG(factory->createProxy(*p->getPositionIClass(), handedOver), InstantiationException,
                   qvxFormatMsg(75009, IUString("com.example.catalog.Position")));
  EXPECT_THROW_MSG(factory->createProxy(*p->getNamedElementIClass(), handedOver), InstantiationException,
                   qvxGetMsg(75008));
  IClass* foreignClass = IcoreIPackage::iGetInstance()->getIClassIClass();
  EXPECT_THROW_MSG(factory->createProxy(*foreignClass, handedOver), IllegalArgumentException,
                   qvxFormatMsg(73011, IUString("catalog"), foreignClass->getQualifiedName()));
  // The identity stayed with the caller through every failure (the sanitizer build
  // would report a double free otherwise).
}

TEST(CatalogProxyTest, ResolvingCopiesValuesAndTakesOverContainedObjects) {
  auto* p = pkg();
  std::unique_ptr<IObject> proxy = makeProxy(*p->getTableIClass(), "orders");
  auto* table = static_cast<Table*>(proxy.get());

  auto full = std::make_unique<Table>();
  full->setName("orders");
  full->setRowCount(42);
  full->addTag("hot");
  full->setLayout(new Position(1, 2));
  auto* column = new Column();
  full->addColumn(column);
  full->addPrimaryKeyColumn(column);

  infoOf(proxy.get()).resolveProxy(full.get());
  EXPECT_FALSE(infoOf(proxy.get()).isProxy());
  EXPECT_EQ(table->getName(), IUString("orders"));
  EXPECT_EQ(table->getRowCount(), 42);
  ASSERT_EQ(table->getTags().size(), 1U);
  EXPECT_EQ(*table->getTags()[0], IUString("hot"));
  EXPECT_NE(table->getTags()[0], full->getTags()[0]);  // primitive values are copied
  ASSERT_EQ(table->getColumns().size(), 1U);
  EXPECT_EQ(table->getColumns()[0], column);
  EXPECT_EQ(column->getTable(), table);
  EXPECT_TRUE(full->getColumns().isEmpty());
  EXPECT_EQ(table->getPrimaryKey()[0], column);
  ASSERT_NE(table->getLayout(), nullptr);
  EXPECT_EQ(infoOf(table->getLayout()).getContainer(), table);
  EXPECT_EQ(full->getLayout(), nullptr);
  EXPECT_EQ(infoOf(proxy.get()).getIdentityString(), IUString("orders"));

  EXPECT_THROW_MSG(infoOf(proxy.get()).resolveProxy(full.get()), UnsupportedOperationException, qvxGetMsg(75001));
}

TEST(CatalogProxyTest, ProxyResolvesOnlyWithAnObjectOfExactlyItsClass) {
  auto* p = pkg();
  std::unique_ptr<IObject> proxy = makeProxy(*p->getTableIClass(), "v");
  View view;
  EXPECT_THROW_MSG(infoOf(proxy.get()).resolveProxy(&view), IllegalArgumentException, qvxGetMsg(75003));
  EXPECT_TRUE(infoOf(proxy.get()).isProxy());

  std::unique_ptr<IObject> viewProxy = makeProxy(*p->getViewIClass(), "v2");
  view.setQuery(IUString("SELECT 1"));
  infoOf(viewProxy.get()).resolveProxy(&view);
  auto* resolved = static_cast<View*>(viewProxy.get());
  EXPECT_EQ(resolved->getQuery(), IUString("SELECT 1"));
  EXPECT_EQ(resolved->getKind(), p->getLiteral(TableKind::VIEW));
}

}  // namespace
