// The bytes that QVXBinaryOutputStream writes: the header, null objects, object records,
// handles, value-class objects, skipped properties, lists and the end marker.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogIPackage.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/Position.h"
#include "examples/catalog/Table.h"
#include "icore/IClass.h"
#include "icore/IIdentity.h"
#include "icore/IObjectInfo.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IllegalArgumentException.h"
#include "platform/WkDate.h"
#include "tests/io/BinaryStreamTestSupport.h"

namespace {

using namespace binary_test;
namespace catalog = com::example::catalog;
namespace icore = com::veltrana::qvx::icore;

class BinaryOutputStreamTest : public ::testing::Test {
 protected:
  void SetUp() override { prepareCatalog(); }

  std::ostringstream out_;
  QVXBinaryOutputStream stream_{&out_, nullptr, nullptr};
};

std::string positionDescriptor(int handle) {
  return bytes({0x04}) + int32(handle) + text("com.example.catalog.Position") + text("1.2.0") + bytes({0, 2, 0x12}) +
         bytes({0x08}) + text("x") + bytes({0x08}) + text("y");
}

// The handle, identity and annotations parts of a value-class object, and its x and y.
std::string positionBody(int x, int y) {
  return bytes({0x12, 0x12, 0x12, 0x12}) + bytes({0x08}) + int32(x) + bytes({0x08}) + int32(y);
}

TEST_F(BinaryOutputStreamTest, ANullObjectOnAFreshStreamIsTheHeaderAndTC_NULL) {
  stream_.writeObject(nullptr);
  EXPECT_EQ(out_.str(), bytes({0x01, 0, 0, 0, 6}) + "14.0.0" + bytes({0x10}));
}

TEST_F(BinaryOutputStreamTest, ValueClassObjectsAreWrittenInFullEachTimeWithoutHandles) {
  catalog::Position first(3, 4);
  catalog::Position equal(3, 4);
  stream_.writeObject(&first);
  stream_.writeObject(&equal);
  stream_.writeObject(&first);
  const std::string record = bytes({0x03}) + positionDescriptor(0) + positionBody(3, 4);
  const std::string again = bytes({0x03, 0x02}) + int32(0) + positionBody(3, 4);
  EXPECT_EQ(out_.str(), header() + record + again + again);
}

TEST_F(BinaryOutputStreamTest, AnObjectWrittenTwiceIsAReferenceTheSecondTime) {
  std::unique_ptr<catalog::Column> column(new catalog::Column());
  column->setName("c");
  stream_.writeObject(column.get());
  const std::size_t first = out_.str().size();
  stream_.writeObject(column.get());
  // The descriptors of Column and NamedElement took handles 0 and 1.
  EXPECT_EQ(out_.str().substr(first), bytes({0x11}) + int32(2));
  // Column: 04 0 "...Column" "1.2.0" count; its super class NamedElement follows in full.
  const std::string start = header() + bytes({0x03, 0x04}) + int32(0) + text("com.example.catalog.Column") +
                            text("1.2.0") + bytes({0, 13}) + bytes({0x04}) + int32(1) +
                            text("com.example.catalog.NamedElement") + text("1.2.0") + bytes({0, 2, 0x12}) +
                            bytes({0x0D}) + text("name") + bytes({0x0D}) + text("description") + bytes({0x13}) +
                            text("com.example.catalog.Table") + text("table");
  EXPECT_EQ(out_.str().substr(0, start.size()), start);
}

TEST_F(BinaryOutputStreamTest, AnUnsetOptionalPropertyIsWrittenAsSkipped) {
  catalog::Column column;
  column.setName("c");
  stream_.writeObject(&column);
  // After the name come description (unset), then table (unset reference).
  const std::string data = out_.str();
  const std::string nameEntry = bytes({0x0D}) + text("c");
  const std::size_t at = data.find(nameEntry + bytes({0x1B, 0x1B}));
  EXPECT_NE(at, std::string::npos);
}

TEST_F(BinaryOutputStreamTest, TheIdentityPartCarriesTheIdentityText) {
  catalog::Table table;
  table.setName("t");
  icore::IIdentity const* identity = icore::QVXRuntime::getInstance()->assignUUID(&table);
  stream_.writeObject(&table);
  const IUString expected = icore::QVXRuntime::getInstance()->identityToString(identity);
  EXPECT_NE(out_.str().find(bytes({0x35}) + int32(2) + bytes({0x1D}) + text(expected.toUtf8()) + bytes({0x12, 0x12})),
            std::string::npos);
}

TEST_F(BinaryOutputStreamTest, EmptyAndNullListsThrowAndWriteNothing) {
  IVector<icore::IObject*> none;
  EXPECT_EQ(messageOf<IOException>([&] { stream_.writeObjects(&none); }), icore::qvxGetMsg(80004));
  IVector<int*> noInts;
  EXPECT_EQ(messageOf<IOException>([&] { stream_.writeInts(&noInts); }), icore::qvxGetMsg(80004));
  EXPECT_EQ(messageOf<IOException>([&] { stream_.writeInts(nullptr); }), icore::qvxGetMsg(80007));
  EXPECT_TRUE(out_.str().empty());
}

TEST_F(BinaryOutputStreamTest, ListsOfPrimitivesMarkEachElementAndNullElements) {
  int one = 1;
  IVector<int*> ints;
  ints.append(&one);
  ints.append(nullptr);
  stream_.writeInts(&ints);
  EXPECT_EQ(out_.str(), header() + bytes({0x25}) + int32(2) + bytes({0x08}) + int32(1) + bytes({0x10}));
}

TEST_F(BinaryOutputStreamTest, SinglePrimitivesCarryTheirMarkers) {
  stream_.writeByte(7);
  stream_.writeBoolean(ITRUE);
  stream_.writeShort(-2);
  stream_.writeUnichar(0x41);
  stream_.writeString("s");
  stream_.writeBlob("\x05", 1);
  stream_.writeDate(nullptr);
  EXPECT_EQ(out_.str(), header() + bytes({0x05, 7, 0x06, 1, 0x07, 0xFF, 0xFE, 0x0C, 0, 0x41, 0x0D}) + text("s") +
                            bytes({0x0E}) + int32(1) + bytes({5, 0x10}));
}

TEST_F(BinaryOutputStreamTest, MarkEndOnAFreshStreamIsOneByte) {
  stream_.markEnd();
  EXPECT_EQ(out_.str(), bytes({0x34}));
}

TEST_F(BinaryOutputStreamTest, AListOfObjectsCountsItsElementsAndWritesNullElements) {
  catalog::Position position(1, 2);
  IVector<icore::IObject*> objects;
  objects.append(&position);
  objects.append(nullptr);
  stream_.writeObjects(&objects);
  EXPECT_EQ(out_.str(), header() + bytes({0x1C}) + int32(2) + bytes({0x03}) + positionDescriptor(0) +
                            positionBody(1, 2) + bytes({0x10}));
}

TEST_F(BinaryOutputStreamTest, AProxyIsWrittenByClassAndIdentity) {
  icore::IIdentity const* identity = icore::QVXRuntime::getInstance()->generateNewId();
  const IUString identityText = icore::QVXRuntime::getInstance()->identityToString(identity);
  std::unique_ptr<icore::IObject> proxy(catalog::CatalogIPackage::iGetInstance()->getTableIClass()->createProxy(identity));
  stream_.writeObject(proxy.get());
  stream_.writeObject(proxy.get());
  EXPECT_EQ(out_.str(), header() + bytes({0x03, 0x15}) + int32(0) + text("com.example.catalog.Table") +
                            text(identityText.toUtf8()) + bytes({0x12, 0x12}) + bytes({0x11}) + int32(0));
}

TEST_F(BinaryOutputStreamTest, ASeededObjectIsWrittenByItsSeedIdentity) {
  catalog::DataTypeDef* seed = catalog::CatalogSeeds::getDataTypeSeed(catalog::DataType::INTEGER);
  ASSERT_NE(seed, nullptr);
  stream_.writeObject(seed);
  EXPECT_EQ(out_.str(), header() + bytes({0x03, 0x17}) + int32(0) +
                            text(icore::QVXRuntime::getInstance()->getIObjectInfo(seed)->getIdentityString().toUtf8()));
}

TEST_F(BinaryOutputStreamTest, ANullOutputStreamIsRefusedAndLogged) {
  RecordingLogger logger(1);
  EXPECT_THROW(QVXBinaryOutputStream(nullptr, &logger, nullptr), icore::exception::IllegalArgumentException);
  EXPECT_TRUE(logger.has(RecordingLogger::ERROR_LEVEL, icore::qvxGetMsg(80001).toUtf8()));
}

TEST_F(BinaryOutputStreamTest, ProgressIsLoggedOnlyWhenTheLevelAsksForIt) {
  RecordingLogger quiet(3);
  RecordingLogger verbose(4);
  catalog::Position position(1, 2);
  std::ostringstream first;
  std::ostringstream second;
  QVXBinaryOutputStream(&first, &quiet, nullptr).writeObject(&position);
  QVXBinaryOutputStream(&second, &verbose, nullptr).writeObject(&position);
  EXPECT_TRUE(quiet.lines.empty());
  EXPECT_TRUE(verbose.has(RecordingLogger::PROGRESS_LEVEL, "Successfully initialized the stream."));
  EXPECT_TRUE(verbose.has(RecordingLogger::PROGRESS_LEVEL, "Writing handle for the class descriptor. Handle: [0]"));
  EXPECT_TRUE(verbose.has(RecordingLogger::PROGRESS_LEVEL, "The object does not have an identity."));
}

}  // namespace
