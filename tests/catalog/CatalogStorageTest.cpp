// How catalog objects keep their values: generated identities made in place inside the
// object, rarely set values held only while set, sample values in a block of their
// column mixed with values that generic code appends, and graphs freed as a whole.
// The sanitizer build turns a wrong free or a leak here into a failure.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "icore/exception/IdentityException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/runtime/StringIdentity.h"
#include "icore/runtime/UUIIdentity.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using namespace catalog_test;               // NOLINT: test file
using namespace com::example::catalog;      // NOLINT: test file
using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using namespace com::veltrana::qvx::icore::exception;  // NOLINT: test file

IVector<std::int32_t*>& sampleValuesOf(Column& column) {
  void const* items = infoOf(&column).get(*pkg()->getColumn_SampleValuesIProperty(), IFALSE);
  return *static_cast<IVector<std::int32_t*>*>(const_cast<void*>(items));
}

bool liesInside(void const* address, Column const& object) {
  auto const* first = reinterpret_cast<unsigned char const*>(&object);
  auto const* at = static_cast<unsigned char const*>(address);
  return at >= first && at < first + sizeof object;
}

TEST(CatalogStorageTest, GeneratedIdentityIsMadeInPlaceAndGuardedLikeAnyOther) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  Column first;
  Column second;
  IIdentity const* assigned = runtime->assignUUID(&first);
  ASSERT_NE(assigned, nullptr);
  EXPECT_TRUE(liesInside(assigned, first));
  EXPECT_EQ(infoOf(&first).getIdentity(), assigned);
  EXPECT_EQ(infoOf(&first).getIdentityString().length(), runtime::UUIIdentity::kTextLength);
  const IUString text = runtime->identityToString(assigned);
  EXPECT_TRUE(text.startsWith(IUString("uuidV1:")));
  // The inline identity reads back through the identity manager like a heap one.
  std::unique_ptr<IIdentity> parsed(runtime->identityFromString(text));
  ASSERT_NE(parsed, nullptr);
  EXPECT_TRUE(*parsed == *assigned);
  EXPECT_FALSE(*runtime->assignUUID(&second) == *assigned);

  EXPECT_EQ(messageOf<IdentityException>([&] { runtime->assignUUID(&first); }), qvxGetMsg(74002));
  EXPECT_EQ(infoOf(&first).getIdentity(), assigned);
  EXPECT_EQ(runtime->identityToString(infoOf(&first).getIdentity()), text);

  // An identity made elsewhere is owned through its pointer, and then blocks a generated one.
  Column named;
  IIdentity const* given = new runtime::StringIdentity(IUString("col-given"));
  infoOf(&named).setIdentity(given);
  EXPECT_EQ(infoOf(&named).getIdentity(), given);
  EXPECT_EQ(messageOf<IdentityException>([&] { runtime->assignUUID(&named); }), qvxGetMsg(74002));

  // A proxy is refused before anything is generated; its identity stays.
  IIdentity const* proxyIdentity = new runtime::StringIdentity(IUString("col-proxy"));
  std::unique_ptr<IObject> proxy(pkg()->getColumnIClass()->createProxy(proxyIdentity));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { runtime->assignUUID(proxy.get()); }), qvxGetMsg(75000));
  EXPECT_EQ(infoOf(proxy.get()).getIdentityString(), IUString("col-proxy"));
}

// Each rarely set value is reached through its typed accessor and through the facade,
// unset by a null value and set again afterwards.
TEST(CatalogStorageTest, RarelySetValuesCanBeSetClearedAndSetAgainThroughEitherAccess) {
  auto* p = pkg();
  Column column;
  View view;
  IProperty* defaultValue = p->getColumn_DefaultValueIProperty();
  IProperty* created = p->getColumn_CreatedIProperty();
  IProperty* initial = p->getColumn_InitialIProperty();
  IProperty* description = p->getNamedElement_DescriptionIProperty();
  IProperty* query = p->getView_QueryIProperty();
  IProperty* thumbnail = p->getTable_ThumbnailIProperty();
  for (int round = 0; round < 2; ++round) {
    column.setDefaultValue(IUString("none"));
    view.setDescription(IUString("a view described at some length"));
    WkDate date = WkDate::fromTime(86400 * 365 + round, 5);
    infoOf(&column).set(*created, &date, 0, ITRUE);
    char16_t letter = u'q';
    infoOf(&column).set(*initial, &letter, 0, ITRUE);
    IUString text("SELECT 1");
    infoOf(&view).set(*query, &text, 0, ITRUE);
    infoOf(&view).set(*thumbnail, const_cast<char*>(""), 0, ITRUE);  // an empty blob is a value

    EXPECT_EQ(*static_cast<IUString const*>(infoOf(&column).get(*defaultValue, ITRUE)), IUString("none"));
    EXPECT_EQ(*static_cast<IUString const*>(infoOf(&view).get(*description, ITRUE)),
              IUString("a view described at some length"));
    EXPECT_EQ(column.getCreated(), date);
    EXPECT_EQ(column.getInitial(), u'q');
    EXPECT_EQ(view.getQuery(), IUString("SELECT 1"));
    unsigned int length = 99;
    EXPECT_NE(infoOf(&view).get(*thumbnail, &length, ITRUE), nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_TRUE(view.getThumbnail().has_value());

    for (IProperty* property : {defaultValue, created, initial}) infoOf(&column).set(*property, nullptr, 0, ITRUE);
    for (IProperty* property : {description, query, thumbnail}) infoOf(&view).set(*property, nullptr, 0, ITRUE);
    EXPECT_FALSE(column.getDefaultValue() || column.getCreated() || column.getInitial());
    EXPECT_FALSE(view.getDescription() || view.getQuery() || view.getThumbnail());
    for (IProperty* property : {defaultValue, created, initial}) {
      EXPECT_EQ(infoOf(&column).get(*property, ITRUE), nullptr) << property->getName().toUtf8();
      EXPECT_EQ(infoOf(&column).getCardinality(*property), 1);  // a primitive counts as one even unset
    }
    EXPECT_EQ(infoOf(&view).get(*thumbnail, &length, ITRUE), nullptr);
  }
}

TEST(CatalogStorageTest, SampleValuesOfTheColumnAndFromOutsideAreFreedWithTheColumn) {
  auto column = std::make_unique<Column>();
  for (std::int32_t value = 1; value <= 6; ++value) {
    column->addSampleValue(value);
    sampleValuesOf(*column).append(new std::int32_t(-value));  // as a reader appends
  }
  std::int32_t* firstOwn = sampleValuesOf(*column)[0];
  ASSERT_EQ(column->getSampleValues().size(), 12u);
  EXPECT_EQ(*firstOwn, 1);  // still in place after the collection grew
  EXPECT_EQ(*column->getSampleValues()[11], -6);

  // Resolving a proxy copies the values into the proxy's own collection.
  IIdentity const* identity = new runtime::StringIdentity(IUString("col-resolved"));
  std::unique_ptr<IObject> proxy(pkg()->getColumnIClass()->createProxy(identity));
  infoOf(proxy.get()).resolveProxy(column.get());
  auto* resolved = static_cast<Column*>(proxy.get());
  ASSERT_EQ(resolved->getSampleValues().size(), 12u);
  EXPECT_NE(resolved->getSampleValues()[0], firstOwn);
  EXPECT_EQ(*resolved->getSampleValues()[1], -1);

  column->clearSampleValues();
  column->addSampleValue(7);
  sampleValuesOf(*column).append(new std::int32_t(8));
  EXPECT_EQ(*column->getSampleValues()[1], 8);
  column.reset();
  EXPECT_EQ(*resolved->getSampleValues()[11], -6);  // the copy owns its own values
}

// A whole workload graph with values appended by generic code in every collection kind,
// deleted from the top; the sanitizer build reports anything freed twice or never.
TEST(CatalogStorageTest, DeletingAGraphFreesOwnAndAppendedValuesAlike) {
  useTestEncryptionKey();
  std::unique_ptr<Catalog> catalog(buildCatalog(kSmallCatalog));
  Table* table = catalog->getSchemas()[1]->getTables()[2];
  auto* tags = static_cast<IVector<IUString*>*>(
      const_cast<void*>(infoOf(table).get(*pkg()->getTable_TagsIProperty(), IFALSE)));
  tags->append(new IUString("appended tag"));
  Column* column = table->getColumns()[3];
  sampleValuesOf(*column).append(new std::int32_t(1000));
  EXPECT_EQ(*column->getSampleValues()[3], 1000);
  EXPECT_EQ(*column->getSampleValues()[2], 9);
  catalog.reset();
}

}  // namespace
