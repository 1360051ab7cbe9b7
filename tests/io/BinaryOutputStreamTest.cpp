// The bytes that QVXBinaryOutputStream writes: the header, null objects, object records,
// handles, value-class objects, skipped properties, lists and the end marker.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>

#include "icore/IIdentity.h"
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

// What each kind of item writes, from a fresh stream (so after the header, when there
// is one).
TEST_F(BinaryOutputStreamTest, EachKindOfItemIsWrittenWithItsMarkers) {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  catalog::Position first(3, 4);
  catalog::Position equal(3, 4);
  int one = 1;
  IVector<int*> ints;
  ints.append(&one);
  ints.append(nullptr);
  IVector<icore::IObject*> objects;
  objects.append(&first);
  objects.append(nullptr);
  icore::IIdentity const* identity = runtime->generateNewId();
  std::unique_ptr<icore::IObject> proxy(catalog::CatalogIPackage::iGetInstance()->getTableIClass()->createProxy(identity));
  icore::IObject* seed = catalog::CatalogSeeds::getDataTypeSeed(catalog::DataType::INTEGER);
  const std::string positionAgain = bytes({0x03, 0x02}) + int32(0) + positionBody(3, 4);
  const struct {
    std::function<void(QVXBinaryOutputStream&)> write;
    std::string expected;
  } cases[] = {
      {[](QVXBinaryOutputStream& s) { s.writeObject(nullptr); }, bytes({0x01, 0, 0, 0, 6}) + "14.0.0" + bytes({0x10})},
      {[](QVXBinaryOutputStream& s) { s.markEnd(); }, bytes({0x34})},
      // Value-class objects are written in full each time, equal or not, without handles.
      {[&](QVXBinaryOutputStream& s) {
         s.writeObject(&first);
         s.writeObject(&equal);
         s.writeObject(&first);
       },
       header() + bytes({0x03}) + positionDescriptor() + positionBody(3, 4) + positionAgain + positionAgain},
      {[&](QVXBinaryOutputStream& s) { s.writeInts(&ints); },
       header() + bytes({0x25}) + int32(2) + bytes({0x08}) + int32(1) + bytes({0x10})},
      {[&](QVXBinaryOutputStream& s) { s.writeObjects(&objects); },
       header() + bytes({0x1C}) + int32(2) + bytes({0x03}) + positionDescriptor() + positionBody(3, 4) + bytes({0x10})},
      {[](QVXBinaryOutputStream& s) {
         s.writeByte(7);
         s.writeBoolean(ITRUE);
         s.writeShort(-2);
         s.writeUnichar(0x41);
         s.writeString("s");
         s.writeBlob("\x05", 1);
         s.writeDate(nullptr);
       },
       header() + bytes({0x05, 7, 0x06, 1, 0x07, 0xFF, 0xFE, 0x0C, 0, 0x41, 0x0D}) + text("s") + bytes({0x0E}) +
           int32(1) + bytes({5, 0x10})},
      // A proxy by class and identity, then by handle; a seed by its seed identity.
      {[&](QVXBinaryOutputStream& s) {
         s.writeObject(proxy.get());
         s.writeObject(proxy.get());
       },
       header() + bytes({0x03, 0x15}) + int32(0) + text("com.example.catalog.Table") +
           text(runtime->identityToString(identity).toUtf8()) + bytes({0x12, 0x12, 0x11}) + int32(0)},
      {[&](QVXBinaryOutputStream& s) { s.writeObject(seed); },
       header() + bytes({0x03, 0x17}) + int32(0) + text(runtime->getIObjectInfo(seed)->getIdentityString().toUtf8())},
  };
  for (const auto& c : cases) {
    std::ostringstream out;
    QVXBinaryOutputStream stream(&out, nullptr, nullptr);
    c.write(stream);
    EXPECT_EQ(out.str(), c.expected);
  }
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
