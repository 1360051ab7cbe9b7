// The XML serializer on the catalog sample package: what it writes for each situation
// of a graph (repeated containment, references out of the tree, proxies, seeds,
// missing identities), its options, log lines and errors, the workload checked
// structurally through a parser, and reuse from a second call and a second thread.
#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <map>
#include <set>
#include <sstream>
#include <thread>

#include "icore/exception/IllegalArgumentException.h"
#include "io/XMLSerializerValues.h"
#include "io/exception/IOException.h"
#include "tests/io/XmlWriteTestSupport.h"

namespace {

using namespace xml_write_test;        // NOLINT: test file
using namespace com::example::catalog;  // NOLINT: test file
using com::veltrana::qvx::icore::exception::IllegalArgumentException;
using com::veltrana::qvx::io::Serializer;
using com::veltrana::qvx::io::XMLSerializer;
using com::veltrana::qvx::io::exception::IOException;
using qvx_test::messageOf;

class XMLSerializerTest : public testing::Test {
 protected:
  void SetUp() override { catalog_test::useTestEncryptionKey(); }

  static std::unique_ptr<Table> table(const char* name, int id) {
    auto made = std::make_unique<Table>();
    made->setName(name);
    identify(made.get(), fixedUuid(id).c_str());
    return made;
  }

  static std::unique_ptr<IObject> proxyTable(int id) {
    icore::IIdentity const* identity = icore::QVXRuntime::getInstance()->identityFromString(fixedUuid(id).c_str());
    return std::unique_ptr<IObject>(catalog_test::pkg()->getTableIClass()->createProxy(identity));
  }

  // The schema's own list of tables, to put in what the typed interface refuses.
  static IVector<IObject*>& tablesOf(Schema* schema) {
    void const* tables = catalog_test::infoOf(schema).get(*catalog_test::pkg()->getSchema_TablesIProperty(), IFALSE);
    return *const_cast<IVector<IObject*>*>(static_cast<IVector<IObject*> const*>(tables));
  }

  static ForeignKey* foreignKeyTo(Table& owner, IObject* target) {
    auto* key = new ForeignKey();
    owner.addForeignKey(key);
    static int lastKey = 900;  // every key of the process has its own id
    identify(key, fixedUuid(++lastKey).c_str());
    key->setName("fk");
    catalog_test::infoOf(key).set(*catalog_test::pkg()->getForeignKey_TargetTableIProperty(), target, IFALSE);
    return key;
  }
};

TEST_F(XMLSerializerTest, DefaultValuesAreLeftOutAndOtherValuesWritten) {
  auto view = std::make_unique<View>();
  identify(view.get(), fixedUuid(1).c_str());
  view->setName("v");
  auto* column = new Column();
  view->addColumn(column);
  identify(column, fixedUuid(2).c_str());
  column->setName("c");
  column->setNullable(true);
  column->setDataType(catalog_test::pkg()->getLiteral(DataType::VARCHAR));
  std::string text = serializeToText({view.get()});
  EXPECT_EQ(startTag(text, "<cat:View "), "<cat:View ozl:id=\"" + fixedUuid(1) + "\" name=\"v\">");
  EXPECT_EQ(startTag(text, "<Column "), "<Column ozl:id=\"" + fixedUuid(2) + "\" xsi:type=\"cat:Column\" name=\"c\" table=\"" +
                                            fixedUuid(1) + "\"/>");

  // The view's own default is VIEW: TABLE differs from it, though it is the table's.
  view->setKind(catalog_test::pkg()->getLiteral(TableKind::TABLE));
  column->setNullable(false);
  column->setLength(0);
  column->setSelectivity(0.0);
  column->setScale(3);
  text = serializeToText({view.get()});
  EXPECT_EQ(attributeAfter(text, "kind"), "TABLE");
  EXPECT_EQ(attributeAfter(text, "nullable"), "false");
  EXPECT_EQ(attributeAfter(text, "scale"), "3");
  EXPECT_EQ(attributeAfter(text, "length"), "<none>");
  EXPECT_EQ(attributeAfter(text, "selectivity"), "<none>");

  auto catalog = std::make_unique<Catalog>();
  identify(catalog.get(), fixedUuid(3).c_str());
  catalog->setName("c");
  EXPECT_EQ(attributeAfter(serializeToText({catalog.get()}), "version"), "<none>");
  catalog->setVersion("2.0");
  EXPECT_EQ(attributeAfter(serializeToText({catalog.get()}), "version"), "2.0");
}

TEST_F(XMLSerializerTest, AnObjectMetAgainThroughContainmentBecomesAReferenceElement) {
  auto catalog = std::make_unique<Catalog>();
  identify(catalog.get(), fixedUuid(1).c_str());
  catalog->setName("c");
  auto* schema = new Schema();
  catalog->addSchema(schema);
  identify(schema, fixedUuid(2).c_str());
  schema->setName("s");
  const std::string text = serializeToText({schema, catalog.get()});
  EXPECT_EQ(countOf(text, "<cat:Schema "), 1U);
  EXPECT_LT(text.find("<cat:Schema "), text.find("<cat:Catalog "));
  EXPECT_NE(text.find("<schemas>\n<Schema ozl:idref=\"" + fixedUuid(2) + "\" xsi:type=\"cat:Schema\"/>\n</schemas>"),
            std::string::npos);
}

TEST_F(XMLSerializerTest, AnObjectListedTwiceIsWrittenOnceAndTheRepeatLogged) {
  auto only = table("t", 1);
  RecordingLogger logger(4);
  StringOutputStream out;
  XMLSerializer serializer(&out, &logger);
  serializer.serialize(listOf({only.get(), only.get()}));
  EXPECT_EQ(countOf(out.text, "<cat:Table "), 1U);
  EXPECT_TRUE(logger.has(4, msg(79004, fixedUuid(1))));
}

TEST_F(XMLSerializerTest, ReferencedObjectsOutsideTheTreeFollowAsTopLevelElementsInOrderMet) {
  auto first = table("first", 1);
  auto second = table("second", 2);
  auto third = table("third", 3);
  foreignKeyTo(*first, third.get());
  foreignKeyTo(*first, second.get());
  foreignKeyTo(*third, first.get());  // a cycle back to a listed object
  const std::string text = serializeToText({first.get()});
  const std::size_t firstAt = text.find("<cat:Table ozl:id=\"" + fixedUuid(1));
  const std::size_t thirdAt = text.find("<cat:Table ozl:id=\"" + fixedUuid(3));
  const std::size_t secondAt = text.find("<cat:Table ozl:id=\"" + fixedUuid(2));
  ASSERT_NE(secondAt, std::string::npos);
  EXPECT_LT(firstAt, thirdAt);
  EXPECT_LT(thirdAt, secondAt);
  EXPECT_EQ(countOf(text, "<cat:Table "), 3U);
  EXPECT_EQ(attributeAfter(text, "targetTable", thirdAt), fixedUuid(1));
}

TEST_F(XMLSerializerTest, ProxiesAreWrittenOnceUnderProxiesWhereverTheyAreReferenced) {
  auto owner = table("owner", 1);
  std::unique_ptr<IObject> proxy = proxyTable(50);
  foreignKeyTo(*owner, proxy.get());
  foreignKeyTo(*owner, proxy.get());
  auto schema = std::make_unique<Schema>();
  identify(schema.get(), fixedUuid(2).c_str());
  schema->setName("s");
  schema->addTable(owner.release());
  RecordingLogger logger(4);
  StringOutputStream out;
  XMLSerializer serializer(&out, &logger);
  serializer.serialize(listOf({schema.get()}));
  const std::string& text = out.text;

  const std::string proxyId = attributeAfter(text, "targetTable");
  ASSERT_EQ(proxyId.rfind("ID_", 0), 0U) << text;
  EXPECT_EQ(countOf(text, "targetTable=\"" + proxyId + "\""), 2U);
  EXPECT_EQ(countOf(text, "<proxy "), 1U);
  EXPECT_NE(text.find("<ozl:proxies>\n<proxy ozl:id=\"" + proxyId + "\" objectId=\"" + fixedUuid(50) +
                      "\" type=\"cat:Table\" xsi:type=\"ozl:proxy\"/>\n</ozl:proxies>\n</ozl:OZL>"),
            std::string::npos)
      << text;
  EXPECT_TRUE(logger.has(4, msg(79004, proxyId)));
  EXPECT_TRUE(logger.has(4, msg(79006, "", "proxy", proxyId)));
}

TEST_F(XMLSerializerTest, AContainedProxyIsAReferenceElementToItsProxyEntry) {
  auto schema = std::make_unique<Schema>();
  identify(schema.get(), fixedUuid(2).c_str());
  schema->setName("s");
  std::unique_ptr<IObject> proxy = proxyTable(51);
  tablesOf(schema.get()).append(proxy.get());
  const std::string text = serializeToText({schema.get()});
  tablesOf(schema.get()).removeAt(0);  // the schema must not free it
  const std::string id = attributeAfter(text, "ozl:idref");
  EXPECT_EQ(startTag(text, "<Table "), "<Table ozl:idref=\"" + id + "\" xsi:type=\"cat:Table\"/>");
  EXPECT_EQ(attributeAfter(text, "objectId"), fixedUuid(51));
}

TEST_F(XMLSerializerTest, TwoProxiesWithOneIdentityFailUnlessDuplicatesAreAllowed) {
  auto owner = table("owner", 1);
  std::unique_ptr<IObject> proxy = proxyTable(60);
  std::unique_ptr<IObject> twin = proxyTable(60);
  foreignKeyTo(*owner, proxy.get());
  foreignKeyTo(*owner, twin.get());
  RecordingLogger logger(1);
  StringOutputStream out;
  XMLSerializer serializer(&out, &logger);
  const IUString message = messageOf<IOException>([&] { serializer.serialize(listOf({owner.get()})); });
  EXPECT_EQ(message.toUtf8(), msg(77011, fixedUuid(60)));
  EXPECT_TRUE(logger.has(1, message.toUtf8()));
  EXPECT_EQ(out.text, "");  // nothing reaches the stream when the walk fails

  const std::string text = serializeToText({owner.get()}, Serializer::ALLOW_DUPLICATE_PROXYOBJECTS);
  EXPECT_EQ(countOf(text, "objectId=\"" + fixedUuid(60) + "\""), 2U);
}

TEST_F(XMLSerializerTest, SkipReferenceWritesReferencedObjectsAsProxiesInstead) {
  auto owner = table("owner", 1);
  auto target = table("target", 2);
  foreignKeyTo(*owner, target.get());
  RecordingLogger logger(2);
  const std::string text = serializeToText({owner.get()}, Serializer::SKIP_REFERENCE, &logger);
  EXPECT_EQ(countOf(text, "<cat:Table "), 1U);
  const std::string id = attributeAfter(text, "targetTable");
  EXPECT_NE(text.find("<proxy ozl:id=\"" + id + "\" objectId=\"" + fixedUuid(2) + "\" type=\"cat:Table\""),
            std::string::npos);
  EXPECT_TRUE(logger.has(2, msg(79009, fixedUuid(2))));
}

TEST_F(XMLSerializerTest, SeedsAreReferencedByIdAndWrittenOnlyWhenAsked) {
  auto catalog = std::make_unique<Catalog>();
  identify(catalog.get(), fixedUuid(1).c_str());
  catalog->setName("c");
  catalog->addDataType(CatalogSeeds::getDataTypeSeed(DataType::CHAR));
  std::string text = serializeToText({catalog.get()});
  EXPECT_EQ(attributeAfter(text, "dataTypes"), "smd:com.example.catalog:types.CHAR");
  EXPECT_EQ(text.find("DataTypeDef"), std::string::npos);

  text = serializeToText({catalog.get()}, Serializer::SERIALIZE_SEEDED_OBJECTS);
  EXPECT_EQ(startTag(text, "<cat:DataTypeDef"),
            "<cat:DataTypeDef ozl:id=\"smd:com.example.catalog:types.CHAR\" name=\"CHAR\" sqlName=\"CHAR\" "
            "maxLength=\"65535\"/>");
}

TEST_F(XMLSerializerTest, AnObjectWithoutIdentityGetsAGeneratedOneOrAnAddressId) {
  auto unnamed = std::make_unique<Table>();
  unnamed->setName("t");
  std::string text = serializeToText({unnamed.get()}, Serializer::SKIP_IDENTITY_GENERATION);
  EXPECT_EQ(attributeAfter(text, "ozl:id").rfind("ID_", 0), 0U);
  EXPECT_EQ(catalog_test::infoOf(unnamed.get()).getIdentity(), nullptr);

  RecordingLogger logger(4);
  text = serializeToText({unnamed.get()}, 0, &logger);
  icore::IIdentity const* generated = catalog_test::infoOf(unnamed.get()).getIdentity();
  ASSERT_NE(generated, nullptr);
  const std::string id = icore::QVXRuntime::getInstance()->identityToString(generated).toUtf8();
  EXPECT_EQ(id.rfind("uuidV1:", 0), 0U);
  EXPECT_EQ(attributeAfter(text, "ozl:id"), id);
  EXPECT_TRUE(logger.has(4, msg(79010, id, "Table")));
}

TEST_F(XMLSerializerTest, ABadListABadSeedOrABadStreamFailsWithItsMessage) {
  RecordingLogger logger(1);
  StringOutputStream out;
  XMLSerializer serializer(&out, &logger);
  IVector<IObject*> empty;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { serializer.serialize(empty); }).toUtf8(), msg(77005));
  auto good = table("t", 1);
  Position position(1, 2);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { serializer.serialize(listOf({good.get(), &position})); })
                .toUtf8(),
            msg(77009, 1));
  std::unique_ptr<IObject> proxy = proxyTable(5);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { serializer.serialize(listOf({proxy.get()})); }).toUtf8(),
            msg(77014, 0));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { serializer.serialize(listOf({nullptr})); }).toUtf8(),
            msg(77008));
  EXPECT_EQ(logger.lines.size(), 4U);  // each logged at error level before the throw
  EXPECT_EQ(out.text, "");

  // A seed without identity, a failing stream and no stream at all fail the write.
  auto column = std::make_unique<Column>();
  identify(column.get(), fixedUuid(2).c_str());
  column->setName("c");
  auto seed = std::make_unique<DataTypeDef>();
  column->setType(seed.get());
  EXPECT_EQ(messageOf<IOException>([&] { serializeToText({column.get()}); }).toUtf8(), msg(77010, "DataTypeDef"));
  FailingOutputStream failing;
  XMLSerializer toFailing(&failing, nullptr);
  EXPECT_EQ(messageOf<IOException>([&] { toFailing.serialize(listOf({good.get()})); }).toUtf8(), msg(77007));
  XMLSerializer toNothing(nullptr, nullptr);
  EXPECT_EQ(messageOf<IOException>([&] { toNothing.serialize(listOf({good.get()})); }).toUtf8(), msg(77007));
}

TEST_F(XMLSerializerTest, OptionNamesFollowTheBitOrder) {
  EXPECT_EQ(XMLSerializer::getOptionsString(0).toUtf8(), "");
  EXPECT_EQ(XMLSerializer::getOptionsString(Serializer::SKIP_IDENTITY_GENERATION).toUtf8(), "");
  EXPECT_EQ(XMLSerializer::getOptionsString(31).toUtf8(),
            "SKIP_ANNOTATIONS SKIP_REFERENCE SERIALIZE_SEEDED_OBJECTS ALLOW_DUPLICATE_PROXYOBJECTS");
  EXPECT_EQ(XMLSerializer::getOptionsString(Serializer::ALLOW_DUPLICATE_PROXYOBJECTS | Serializer::SKIP_REFERENCE)
                .toUtf8(),
            "SKIP_REFERENCE ALLOW_DUPLICATE_PROXYOBJECTS");
}

TEST_F(XMLSerializerTest, ProgressLinesFrameTheRunAndEveryElement) {
  auto only = table("t", 1);
  only->setRowCount(5);
  RecordingLogger logger(4);
  serializeToText({only.get()}, 0, &logger);
  ASSERT_GE(logger.lines.size(), 4U);
  EXPECT_EQ(logger.lines.front().text, msg(79000));
  EXPECT_EQ(logger.lines.back().text, msg(79001));
  EXPECT_TRUE(logger.has(4, msg(79005, "", "cat:Table", fixedUuid(1))));
  EXPECT_TRUE(logger.has(4, "<cat:Table id=\"" + fixedUuid(1) + "\">"));
  EXPECT_TRUE(logger.has(4, "<\\cat:Table >"));
  EXPECT_TRUE(logger.has(2, msg(79007, "rowCount")));
  EXPECT_FALSE(logger.has(2, msg(79007, "kind")));  // default values are not written

  RecordingLogger withOptions(4);
  serializeToText({only.get()}, Serializer::SKIP_REFERENCE | Serializer::SKIP_ANNOTATIONS, &withOptions);
  EXPECT_EQ(withOptions.lines.front().text, msg(79002, "SKIP_ANNOTATIONS SKIP_REFERENCE"));
  EXPECT_EQ(withOptions.lines.back().text, msg(79003, "SKIP_ANNOTATIONS SKIP_REFERENCE"));
  EXPECT_FALSE(withOptions.has(4, msg(79000)));

  RecordingLogger quiet(3);
  serializeToText({only.get()}, 0, &quiet);
  for (const RecordingLogger::Line& line : quiet.lines) EXPECT_LE(line.level, 3) << line.text;
}

TEST_F(XMLSerializerTest, ThePasswordIsWrittenOnlyAsItsEncryptedText) {
  auto catalog = std::make_unique<Catalog>();
  identify(catalog.get(), fixedUuid(1).c_str());
  catalog->setName("c");
  catalog->setConnectionPassword(IUString("s3cret"));
  const std::string text = serializeToText({catalog.get()});
  const IUString& encrypted = *static_cast<IUString const*>(
      catalog_test::infoOf(catalog.get()).get(*catalog_test::pkg()->getCatalog_ConnectionPasswordIProperty(), ITRUE));
  std::string expected;
  com::veltrana::qvx::io::XMLSerializerValues::appendEscaped(encrypted.view(), expected);
  EXPECT_EQ(attributeAfter(text, "connectionPassword"), expected);
  EXPECT_EQ(text.find("s3cret"), std::string::npos);
}

TEST_F(XMLSerializerTest, ASecondCallOnOneSerializerWritesOnlyWhatIsNew) {
  auto first = table("first", 1);
  auto second = table("second", 2);
  StringOutputStream out;
  XMLSerializer serializer(&out, nullptr);
  serializer.serialize(listOf({first.get()}));
  const std::size_t firstDocument = out.text.size();
  serializer.serialize(listOf({first.get(), second.get()}));
  const std::string secondDocument = out.text.substr(firstDocument);
  EXPECT_EQ(secondDocument.rfind(XMLSerializer::HEADER_TEXT, 0), 0U);
  EXPECT_EQ(countOf(secondDocument, "<cat:Table "), 1U);
  EXPECT_NE(secondDocument.find(fixedUuid(2)), std::string::npos);
  EXPECT_EQ(secondDocument.find(fixedUuid(1)), std::string::npos);
}

// Parses a document with namespaces on, as any reader would.
class ParsedDocument {
 public:
  explicit ParsedDocument(const std::string& text) {
    parser_.setDoNamespaces(true);
    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "document");
    parser_.parse(source);
    errors_ = parser_.getErrorCount();
  }
  xercesc::DOMElement* root() { return parser_.getDocument()->getDocumentElement(); }
  std::size_t errors() const { return errors_; }

 private:
  xercesc::XercesDOMParser parser_;
  std::size_t errors_ = 0;
};

std::string attributeOf(xercesc::DOMElement* element, const char* name) {
  const XMLCh* value = element->getAttribute(IUString(name).c_str());
  return IUString(value).toUtf8();
}

TEST_F(XMLSerializerTest, TheSmallWorkloadIsAWellFormedDocumentWhoseReferencesAllResolve) {
  std::unique_ptr<Catalog> catalog(buildCatalog(kSmallCatalog));
  const std::string text = serializeToText({catalog.get()});
  EXPECT_EQ(text.rfind(std::string(XMLSerializer::HEADER_TEXT) + "\n<ozl:OZL ", 0), 0U);
  ParsedDocument document(text);
  ASSERT_EQ(document.errors(), 0U);
  xercesc::DOMElement* root = document.root();
  EXPECT_EQ(IUString(root->getTagName()).toUtf8(), "ozl:OZL");
  EXPECT_EQ(attributeOf(root, "xmlns:cat"), "http://com.example.catalog/1");
  EXPECT_EQ(attributeOf(root, "versioncat"), "1.2.0");

  std::map<std::string, int> typeCounts;
  std::set<std::string> ids;
  std::vector<std::string> references;
  xercesc::DOMNodeList* all = root->getElementsByTagName(u"*");
  for (XMLSize_t i = 0; i < all->getLength(); ++i) {
    auto* element = static_cast<xercesc::DOMElement*>(all->item(i));
    const std::string type = attributeOf(element, "xsi:type");
    if (!type.empty()) ++typeCounts[type];
    const std::string id = attributeOf(element, "ozl:id");
    if (!id.empty()) {
      EXPECT_TRUE(ids.insert(id).second) << "duplicate id " << id;
    }
    for (const char* name : {"table", "primaryKey", "targetTable", "columns", "type"}) {
      std::istringstream words(attributeOf(element, name));
      for (std::string word; words >> word;) references.push_back(word);
    }
  }
  EXPECT_EQ(typeCounts, (std::map<std::string, int>{{"cat:Schema", 2},
                                                    {"cat:Table", 18},
                                                    {"cat:View", 2},
                                                    {"cat:Column", 100},
                                                    {"cat:ForeignKey", 20},
                                                    {"cat:Position", 20},
                                                    {"ozl:IBlob", 2}}));
  EXPECT_EQ(ids.size(), 1U + 2 + 20 + 100 + 20 + 2);  // identifiable objects and blobs
  EXPECT_EQ(references.size(), 100U + 100 + 28 + 20 + 20);  // table, type, primaryKey, targetTable, columns
  for (const std::string& reference : references) {
    if (reference.rfind("smd:", 0) == 0) continue;  // seeds are not written without the option
    EXPECT_EQ(ids.count(reference), 1U) << reference;
  }
  EXPECT_EQ(text.find("s3cret"), std::string::npos);
}

TEST_F(XMLSerializerTest, TwoThreadsWritingOneGraphGetTheSameDocument) {
  std::unique_ptr<Catalog> catalog(buildCatalog(kSmallCatalog));
  std::string documents[2];
  std::thread writers[2];
  for (int i = 0; i < 2; ++i) {
    writers[i] = std::thread([&documents, &catalog, i] { documents[i] = serializeToText({catalog.get()}); });
  }
  for (std::thread& writer : writers) writer.join();
  // Only the blob ids differ: each document draws its own from the process's counter.
  for (std::string& document : documents) {
    for (std::size_t at = document.find("ID_"); at != std::string::npos; at = document.find("ID_", at + 3)) {
      std::size_t end = at + 3;
      while (end < document.size() && std::isdigit(static_cast<unsigned char>(document[end]))) ++end;
      document.replace(at + 3, end - at - 3, "n");
    }
  }
  EXPECT_EQ(documents[0], documents[1]);
  EXPECT_EQ(countOf(documents[0], "<IBlob "), 2U);
}

}  // namespace
