// Graphs written with QVXBinaryOutputStream and read back with QVXBinaryInputStream
// compare equal, identities included; seeds come back as the registry's objects and
// proxies as proxies.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <thread>
#include <vector>

#include "icore/IIdentity.h"
#include "tests/io/BinaryStreamTestSupport.h"

namespace {

using namespace binary_test;
namespace catalog = com::example::catalog;
namespace icore = com::veltrana::qvx::icore;
using icore::ObjectGraphComparator;

class BinaryStreamRoundTripTest : public ::testing::Test {
 protected:
  void SetUp() override { prepareCatalog(); }
};

std::string writtenCatalog(catalog::Catalog const* built) {
  std::ostringstream out;
  QVXBinaryOutputStream stream(&out, nullptr, nullptr);
  stream.writeObject(built);
  stream.markEnd();
  return out.str();
}

TEST_F(BinaryStreamRoundTripTest, TheSmallCatalogReadsBackEqualWithItsIdentitiesAndSeeds) {
  std::unique_ptr<catalog::Catalog> built(catalog::buildCatalog(catalog::kSmallCatalog));
  const std::string data = writtenCatalog(built.get());
  std::istringstream in(data);
  QVXBinaryInputStream stream(&in, nullptr, nullptr);
  std::unique_ptr<icore::IObject> read(stream.readObject());
  ASSERT_NE(read, nullptr);
  const auto result = ObjectGraphComparator::compare(built.get(), read.get());
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  EXPECT_EQ(stream.hasNextObject(), IFALSE);
  std::unique_ptr<IVector<icore::IObject*>> detached(stream.releaseDetachedObjects());
  EXPECT_TRUE(detached->isEmpty());

  auto* back = static_cast<catalog::Catalog*>(read.get());
  catalog_test::expectCopyKeepsSeedsAndPassword(back);
  // Written again, the copy gives the same bytes: nothing was lost or reordered.
  EXPECT_EQ(writtenCatalog(back), data);
}

TEST_F(BinaryStreamRoundTripTest, ProxiesComeBackAsProxiesWithTheirIdentities) {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  icore::IIdentity const* identity = runtime->generateNewId();
  const IUString identityText = runtime->identityToString(identity);
  std::unique_ptr<icore::IObject> proxy(catalog::CatalogIPackage::iGetInstance()->getTableIClass()->createProxy(identity));
  catalog::ForeignKey key;
  key.setName("fk");
  key.setTargetTable(static_cast<catalog::Table*>(proxy.get()));
  std::ostringstream out;
  QVXBinaryOutputStream writer(&out, nullptr, nullptr);
  writer.writeObject(&key);
  std::istringstream in(out.str());
  QVXBinaryInputStream reader(&in, nullptr, nullptr);
  std::unique_ptr<icore::IObject> read(reader.readObject());
  ASSERT_NE(read, nullptr);
  const auto result = ObjectGraphComparator::compare(&key, read.get());
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  catalog::Table* target = static_cast<catalog::ForeignKey*>(read.get())->getTargetTable();
  ASSERT_NE(target, nullptr);
  EXPECT_EQ(runtime->getIObjectInfo(target)->isProxy(), ITRUE);
  EXPECT_EQ(runtime->identityToString(runtime->getIObjectInfo(target)->getIdentity()), identityText);
  // The proxy is contained nowhere: the stream keeps it until the caller takes it.
  std::unique_ptr<IVector<icore::IObject*>> detached(reader.releaseDetachedObjects());
  ASSERT_EQ(detached->size(), 1U);
  EXPECT_EQ((*detached)[0], target);
  delete target;
}

TEST_F(BinaryStreamRoundTripTest, ObjectsOfEarlierCallsAreReferencedByHandle) {
  catalog::Table first;
  first.setName("first");
  catalog::ForeignKey key;
  key.setName("fk");
  key.setTargetTable(&first);
  std::ostringstream out;
  QVXBinaryOutputStream writer(&out, nullptr, nullptr);
  writer.writeObject(&first);
  writer.writeObject(&key);
  std::istringstream in(out.str());
  QVXBinaryInputStream reader(&in, nullptr, nullptr);
  std::unique_ptr<icore::IObject> table(reader.readObject());
  std::unique_ptr<icore::IObject> readKey(reader.readObject());
  ASSERT_NE(readKey, nullptr);
  EXPECT_EQ(static_cast<catalog::ForeignKey*>(readKey.get())->getTargetTable(), table.get());
}

TEST_F(BinaryStreamRoundTripTest, AListWithTopLevelObjectsIncludesTheDetachedOnes) {
  catalog::Table target;
  target.setName("target");
  catalog::ForeignKey key;
  key.setName("fk");
  key.setTargetTable(&target);
  IVector<icore::IObject*> objects;
  objects.append(&key);
  std::ostringstream out;
  QVXBinaryOutputStream writer(&out, nullptr, nullptr);
  writer.writeObjects(&objects);
  writer.writeObjects(&objects);
  std::istringstream in(out.str());
  QVXBinaryInputStream reader(&in, nullptr, nullptr);
  std::unique_ptr<IVector<icore::IObject*>> read(reader.readObjects(QVXBinaryInputStream::INCLUDE_TOP_LEVEL_OBJECTS));
  ASSERT_EQ(read->size(), 2U);
  auto* readKey = static_cast<catalog::ForeignKey*>((*read)[0]);
  EXPECT_EQ(readKey->getTargetTable(), (*read)[1]);
  // The second list refers to the same objects by handle.
  std::unique_ptr<IVector<icore::IObject*>> again(reader.readObjects());
  ASSERT_EQ(again->size(), 1U);
  EXPECT_EQ((*again)[0], readKey);
  for (icore::IObject* object : *read) delete object;
}

TEST_F(BinaryStreamRoundTripTest, StreamsInSeveralThreadsEachReadTheirOwnGraph) {
  std::vector<std::unique_ptr<catalog::Catalog>> built;
  std::vector<std::string> data;
  for (int i = 0; i < 4; ++i) {
    built.emplace_back(catalog::buildCatalog(1, 3 + i, 2, 1));
    data.push_back(writtenCatalog(built.back().get()));
  }
  std::vector<std::unique_ptr<icore::IObject>> read(4);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 5; ++round) {
        std::istringstream in(data[static_cast<std::size_t>(i)]);
        QVXBinaryInputStream stream(&in, nullptr, nullptr);
        read[static_cast<std::size_t>(i)].reset(stream.readObject());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < 4; ++i) {
    const auto result = ObjectGraphComparator::compare(built[i].get(), read[i].get());
    EXPECT_TRUE(result.equal) << i << ": " << result.difference.toUtf8();
  }
}

TEST_F(BinaryStreamRoundTripTest, ReadingLogsItsStepsWhenAskedTo) {
  std::unique_ptr<catalog::Catalog> built(catalog::buildCatalog(1, 1, 1, 0));
  std::istringstream in(writtenCatalog(built.get()));
  RecordingLogger logger(4);
  QVXBinaryInputStream stream(&in, &logger, nullptr);
  std::unique_ptr<icore::IObject> read(stream.readObject());
  ASSERT_NE(read, nullptr);
  EXPECT_TRUE(logger.has(RecordingLogger::PROGRESS_LEVEL, "Successfully initialized the stream."));
  EXPECT_TRUE(logger.has(RecordingLogger::PROGRESS_LEVEL, "Reading object data"));
  EXPECT_TRUE(logger.has(RecordingLogger::PROGRESS_LEVEL, "Read the handle for the class descriptor. Handle: [0]"));
  const std::string seedId = catalog::CatalogSeeds::getDataTypeSeedId(catalog::DataType::VARCHAR).toUtf8();
  EXPECT_TRUE(logger.has(RecordingLogger::PROGRESS_LEVEL, "Read seede object with identity [" + seedId + "]"));
  EXPECT_TRUE(logger.has(RecordingLogger::PROGRESS_LEVEL, "Deserialization complete."));
}

}  // namespace
