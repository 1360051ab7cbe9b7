// Objects of the catalog package through the reflective facade, the way the readers and
// writers use it: every kind of property value, the two ends of Table.columns /
// Column.table, the encrypted password, and proxies of catalog classes.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <tuple>

#include "icore/IcoreIPackage.h"
#include "icore/internal/CollectionAccess.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/runtime/StringIdentity.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using namespace catalog_test;               // NOLINT: test file
using namespace com::example::catalog;      // NOLINT: test file
using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using namespace com::veltrana::qvx::icore::exception;  // NOLINT: test file

template <typename T>
void put(IObject* object, IProperty* property, T value) {
  infoOf(object).set(*property, &value, 0, ITRUE);
}
void refer(IObject* object, IProperty* property, void* target) { infoOf(object).set(*property, target, 0, IFALSE); }
template <typename T>
IVector<T*>& itemsOf(IObject* object, IProperty* property) {
  return *static_cast<IVector<T*>*>(const_cast<void*>(infoOf(object).get(*property, IFALSE)));
}

// Copies the tree below `source` through the facade alone, as a reader rebuilds what a
// writer read: each object from its class, then its values and contained objects.
// References are set last (copyReferences), retargeted to the copies.
IObject* copyTree(IObject* source, std::map<IObject*, IObject*>& copies) {
  IObjectInfo& from = infoOf(source);
  IObject* copy = copies[source] = from.getIClass()->create();
  for (IProperty* property : from.getIClass()->getAllProperties(IFALSE)) {
    const bool isObject = property->getType()->isClass();
    if (property->isContainer() || (isObject && !property->isContainment())) continue;
    unsigned int length = 0;
    void* value = const_cast<void*>(from.get(*property, &length, IFALSE));
    if (isObject && property->isCollection()) {
      for (IObject* child : *static_cast<IVector<IObject*>*>(value)) {
        IObject* childCopy = copyTree(child, copies);
        itemsOf<IObject>(copy, property).append(childCopy);
        infoOf(childCopy).getAssociatedObject()->iSetContainer(infoOf(copy).getAssociatedObject(), property);
      }
    } else if (isObject) {
      refer(copy, property, value != nullptr ? copyTree(static_cast<IObject*>(value), copies) : nullptr);
    } else if (property->isCollection()) {
      internal::CollectionAccess::replaceWithCopy(*property, const_cast<void*>(infoOf(copy).get(*property, IFALSE)), value);
    } else {
      infoOf(copy).set(*property, value, length, IFALSE);
    }
  }
  return copy;
}

void copyReferences(std::map<IObject*, IObject*> const& copies) {
  auto retarget = [&copies](IObject* target) { return copies.count(target) != 0 ? copies.at(target) : target; };
  for (auto [source, copy] : copies) {
    for (IProperty* property : infoOf(source).getIClass()->getAllProperties(IFALSE)) {
      if (!property->getType()->isClass() || property->isContainment() || property->isContainer()) continue;
      if (!property->isCollection()) {
        refer(copy, property, retarget(static_cast<IObject*>(const_cast<void*>(infoOf(source).get(*property, IFALSE)))));
        continue;
      }
      for (IObject* target : itemsOf<IObject>(source, property)) itemsOf<IObject>(copy, property).append(retarget(target));
    }
  }
}

TEST(CatalogObjectsTest, FacadeCopiesEveryKindOfPropertyOfTheWorkloadCatalog) {
  useTestEncryptionKey();
  std::unique_ptr<Catalog> source(buildCatalog(kSmallCatalog));
  std::map<IObject*, IObject*> copies;
  std::unique_ptr<Catalog> copy(static_cast<Catalog*>(copyTree(source.get(), copies)));
  copyReferences(copies);
  ObjectGraphComparator::Options ignoreIdentities;
  ignoreIdentities.ignoreIdentities = true;
  auto result = ObjectGraphComparator::compare(source.get(), copy.get(), ignoreIdentities);
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  // What the facade set, the typed interface reads.
  auto typed = [](Table* t) {
    Column* c = t->getColumns()[3];
    return std::make_tuple(t->getKind(), t->getRowCount(), t->getThumbnail(), t->getLayout()->getX(), c->getDataType(),
                           c->getLength(), c->getPrecision(), c->getScale(), c->isNullable(), c->getDefaultValue(),
                           c->getSelectivity(), c->getWeight(), c->getInitial(), c->getType(), c->getTable() == t);
  };
  EXPECT_EQ(typed(copy->getSchemas()[1]->getTables()[4]), typed(source->getSchemas()[1]->getTables()[4]));
  EXPECT_EQ(copy->getConnectionPassword(), IUString("s3cret"));
}

TEST(CatalogObjectsTest, ColumnsAndTheirTableStayInStepFromEitherEnd) {
  auto* p = pkg();
  Table first;
  Table second;
  auto* column = new Column();
  first.addColumn(column);
  column->setTable(&second);
  EXPECT_TRUE(first.getColumns().isEmpty());
  ASSERT_EQ(second.getColumns().size(), 1U);
  refer(column, p->getColumn_TableIProperty(), &first);  // as a reader sets the container
  EXPECT_TRUE(second.getColumns().isEmpty());
  EXPECT_EQ(first.getColumns()[0], column);
  EXPECT_EQ(infoOf(column).get(*p->getColumn_TableIProperty(), IFALSE), static_cast<IObject*>(&first));
  // A column appended by generic code, with its container set as a reader does.
  auto* appended = new Column();
  itemsOf<IObject>(&second, p->getTable_ColumnsIProperty()).append(appended);
  appended->iSetContainer(&second, p->getTable_ColumnsIProperty());
  EXPECT_EQ(appended->getTable(), &second);
  column->setTable(nullptr);
  EXPECT_TRUE(first.getColumns().isEmpty());
  delete column;
  EXPECT_TRUE(second.removeColumn(appended));
  EXPECT_EQ(appended->getTable(), nullptr);
  delete appended;
}

TEST(CatalogObjectsTest, PasswordIsKeptEncryptedAndReadBackInClearText) {
  useTestEncryptionKey();
  IProperty* password = pkg()->getCatalog_ConnectionPasswordIProperty();
  Catalog catalog;
  EXPECT_EQ(infoOf(&catalog).get(*password, ITRUE), nullptr);
  catalog.setConnectionPassword(IUString("s3cret"));
  const IUString stored = *static_cast<IUString const*>(infoOf(&catalog).get(*password, ITRUE));
  EXPECT_EQ(stored.find(IUString("s3cret")), IUString::npos);
  EXPECT_TRUE(stored.startsWith(IUString(WkEncryption::kVersionTag)));
  // A reader copies the reflective value; the copy decrypts to the same clear text.
  Catalog copy;
  put(&copy, password, stored);
  EXPECT_EQ(copy.getConnectionPassword(), IUString("s3cret"));
  catalog.setConnectionPassword(std::nullopt);
  EXPECT_EQ(infoOf(&catalog).get(*password, ITRUE), nullptr);
}

// Each catalog class checks the property itself before its own switch: a property of
// another class is refused for get, set and hasItems alike, inherited ones still reach
// the base class's values, and a reference takes its class or a subclass.
TEST(CatalogObjectsTest, EveryClassChecksThePropertyBeforeItsOwnValues) {
  auto* p = pkg();
  ForeignKey key;
  View view;
  Table table;
  IProperty* target = p->getForeignKey_TargetTableIProperty();
  refer(&key, target, &view);
  EXPECT_EQ(key.getTargetTable(), &view);
  refer(&key, target, &table);
  EXPECT_EQ(infoOf(&key).get(*target, IFALSE), static_cast<IObject*>(&table));
  put(&view, p->getNamedElement_NameIProperty(), IUString("v1"));
  EXPECT_EQ(view.getName(), IUString("v1"));
  put(&view, p->getView_QueryIProperty(), IUString("select 1"));
  EXPECT_EQ(view.getQuery(), IUString("select 1"));
  EXPECT_EQ(*static_cast<IUString const*>(infoOf(&view).get(*p->getNamedElement_NameIProperty(), IFALSE)),
            IUString("v1"));
  IProperty* foreign = p->getForeignKey_ColumnsIProperty();
  const IUString refused = qvxFormatMsg(73005, foreign->getName(), IUString("com.example.catalog.View"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { infoOf(&view).get(*foreign, IFALSE); }), refused);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { refer(&view, foreign, nullptr); }), refused);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { infoOf(&view).hasItems(*foreign); }), refused);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { infoOf(&key).hasItems(*target); }),
            qvxFormatMsg(73005, target->getName(), IUString("com.example.catalog.ForeignKey")));
  EXPECT_FALSE(infoOf(&key).hasItems(*foreign));
  EXPECT_EQ(infoOf(&view).getCardinality(*p->getTable_ColumnsIProperty()), 0);
}

std::unique_ptr<IObject> proxyOf(IClass* objectClass, const char* id) {
  IIdentity const* identity = new runtime::StringIdentity(IUString(id));
  return std::unique_ptr<IObject>(objectClass->createProxy(identity));
}

TEST(CatalogProxyTest, TypedAccessorsRefuseAProxyAndTheFactoryChecksInOrder) {
  auto* p = pkg();
  std::unique_ptr<IObject> proxy = proxyOf(p->getTableIClass(), "orders");
  auto* table = static_cast<Table*>(proxy.get());
  EXPECT_EQ(infoOf(table).getIdentityString(), IUString("orders"));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { table->getName(); }), qvxGetMsg(75004));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { table->addColumn(nullptr); }), qvxGetMsg(75004));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { put(table, p->getTable_RowCountIProperty(), std::int64_t{1}); }),
            qvxGetMsg(75000));
  CatalogIFactory* factory = CatalogIFactory::iGetInstance();
  auto identity = std::make_unique<runtime::StringIdentity>(IUString("x"));
  IIdentity const* given = identity.get();
  IIdentity const* none = nullptr;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory->createProxy(*p->getTableIClass(), none); }),
            qvxGetMsg(75007));
  EXPECT_EQ(messageOf<InstantiationException>([&] { factory->createProxy(*p->getPositionIClass(), given); }),
            qvxFormatMsg(75009, IUString("com.example.catalog.Position")));
  EXPECT_EQ(messageOf<InstantiationException>([&] { factory->createProxy(*p->getNamedElementIClass(), given); }),
            qvxGetMsg(75008));
  IClass* foreign = IcoreIPackage::iGetInstance()->getIClassIClass();
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory->createProxy(*foreign, given); }),
            qvxFormatMsg(73011, IUString("catalog"), foreign->getQualifiedName()));
  // The identity stayed with the caller through every failure (the sanitizer build
  // would report a double free otherwise).
}

TEST(CatalogProxyTest, ResolvingTakesOverColumnsWithTheirBackPointersAndNeedsTheExactClass) {
  auto* p = pkg();
  std::unique_ptr<IObject> proxy = proxyOf(p->getTableIClass(), "orders");
  auto* table = static_cast<Table*>(proxy.get());
  View view;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { infoOf(table).resolveProxy(&view); }), qvxGetMsg(75003));
  Table full;
  full.setLayout(new Position(1, 2));
  auto* column = new Column();
  full.addColumn(column);
  full.addPrimaryKeyColumn(column);
  infoOf(table).resolveProxy(&full);
  ASSERT_EQ(table->getColumns().size(), 1U);
  EXPECT_EQ(column->getTable(), table);
  EXPECT_TRUE(full.getColumns().isEmpty());
  EXPECT_EQ(table->getPrimaryKey()[0], column);
  EXPECT_EQ(infoOf(table->getLayout()).getContainer(), table);
  EXPECT_EQ(full.getLayout(), nullptr);
}

}  // namespace
