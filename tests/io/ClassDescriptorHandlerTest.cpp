// Class descriptors and handles: the descriptor bytes, super classes written before
// their subclass's entries, descriptor references, and the handle table's rules.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "icore/IPackage.h"
#include "io/ClassDescriptorHandler.h"
#include "io/HandleManager.h"
#include "io/StreamReader.h"
#include "io/StreamWriter.h"
#include "platform/WkLocale.h"
#include "tests/io/BinaryStreamTestSupport.h"
#include "utils/ILoggerUtils.h"

namespace {

using namespace binary_test;
namespace catalog = com::example::catalog;
namespace icore = com::veltrana::qvx::icore;
using com::veltrana::qvx::io::ClassDescriptor;
using com::veltrana::qvx::io::ClassDescriptorHandler;
using com::veltrana::qvx::io::HandleManager;
using com::veltrana::qvx::io::StreamReader;
using com::veltrana::qvx::io::StreamWriter;
using com::veltrana::qvx::utils::ILoggerUtils;

class ClassDescriptorHandlerTest : public ::testing::Test {
 protected:
  template <typename Write>
  std::string written(Write&& write) {
    std::ostringstream out;
    StreamWriter writer(&out, &locale_);
    HandleManager handles(&logger_);
    ClassDescriptorHandler handler(&writer, &handles, &logger_);
    write(handler);
    writer.flush();
    return out.str();
  }

  WkLocale locale_{IUString(WkLocale::kUtf8LocaleName)};
  ILoggerUtils logger_;
};

TEST_F(ClassDescriptorHandlerTest, AClassWithoutSuperClassOrPropertiesIsItsHeaderAndTC_NOT_SPECIFIED) {
  icore::IPackage package;
  package.setName("p");
  package.setVersion("1.0");
  auto* described = new icore::IClass();
  described->setName("C");
  described->setPackage(&package);
  package.getTypes().append(described);  // the package deletes it
  EXPECT_EQ(written([&](ClassDescriptorHandler& handler) { handler.writeClassDescriptor(described); }),
            bytes({0x04, 0, 0, 0, 0, 0, 0, 0, 3}) + "p.C" + bytes({0, 0, 0, 3}) + "1.0" + bytes({0, 0, 0x12}));
}

TEST_F(ClassDescriptorHandlerTest, ASuperClassIsCompleteBeforeItsSubclassEntriesAndReferencedAfterwards) {
  catalog::CatalogIPackage* package = catalog::CatalogIPackage::iGetInstance();
  const std::string data = written([&](ClassDescriptorHandler& handler) {
    handler.writeClassDescriptor(package->getViewIClass());
    handler.writeClassDescriptor(package->getSchemaIClass());
    handler.writeClassDescriptor(package->getViewIClass());
  });
  const std::string view = bytes({0x04}) + int32(0) + text("com.example.catalog.View") + text("1.2.0") + bytes({0, 2});
  const std::string table = bytes({0x04}) + int32(1) + text("com.example.catalog.Table") + text("1.2.0") +
                            bytes({0, 8});
  const std::string named = bytes({0x04}) + int32(2) + text("com.example.catalog.NamedElement") + text("1.2.0") +
                            bytes({0, 2, 0x12}) + bytes({0x0D}) + text("name") + bytes({0x0D}) + text("description");
  ASSERT_EQ(data.substr(0, view.size() + table.size() + named.size()), view + table + named);
  // Table's entries follow NamedElement's, then View's: query and kind.
  const std::string viewEntries = bytes({0x0D}) + text("query") + bytes({0x14}) +
                                  text("com.example.catalog.TableKind") + text("kind");
  const std::size_t viewAt = data.find(viewEntries);
  ASSERT_NE(viewAt, std::string::npos);
  // Schema refers to NamedElement by handle; the second View is a reference.
  const std::string schema = bytes({0x04}) + int32(3) + text("com.example.catalog.Schema") + text("1.2.0") +
                             bytes({0, 2, 0x02}) + int32(2);
  EXPECT_EQ(data.substr(viewAt + viewEntries.size(), schema.size()), schema);
  EXPECT_EQ(data.substr(data.size() - 5), bytes({0x02}) + int32(0));
}

TEST_F(ClassDescriptorHandlerTest, DescriptorsReadBackWithTheirInheritedPropertiesFirst) {
  catalog::CatalogIPackage* package = catalog::CatalogIPackage::iGetInstance();
  const std::string data = written([&](ClassDescriptorHandler& handler) {
    handler.writeClassDescriptor(package->getViewIClass());
  });
  std::istringstream in(data.substr(1));  // the caller consumes TC_CLASSDESC
  StreamReader reader(&in, &locale_);
  HandleManager handles(&logger_);
  ClassDescriptorHandler handler(&reader, &handles, &logger_);
  ClassDescriptor* view = handler.readClassDescriptor();
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(view->getIClassName(), IUString("com.example.catalog.View"));
  EXPECT_EQ(view->getPackageVersion(), IUString("1.2.0"));
  EXPECT_EQ(view->getDeclPropCount(), 2);
  ASSERT_NE(view->getSuperClassDesc(), nullptr);
  EXPECT_EQ(view->getSuperClassDesc()->getIClassName(), IUString("com.example.catalog.Table"));
  IVector<icore::IProperty*> const& all = package->getViewIClass()->getAllProperties(ITRUE);
  ASSERT_EQ(view->getAllPropsInfo().size(), all.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    EXPECT_EQ(view->getAllPropsInfo()[i]->getPropertyName(), all[i]->getName()) << i;
  }
  // Shared with the super class's descriptor, not copied.
  EXPECT_EQ(view->getAllPropsInfo()[0], view->getSuperClassDesc()->getAllPropsInfo()[0]);
  EXPECT_EQ(handles.findClassDescriptor(2)->getIClassName(), IUString("com.example.catalog.NamedElement"));
  EXPECT_EQ(in.peek(), EOF);
}

TEST_F(ClassDescriptorHandlerTest, AnUnexpectedSuperClassMarkerAndAnUnknownReferenceAreRejected) {
  const std::string badSuper = int32(0) + text("p.C") + text("1.0") + bytes({0, 0, 0x07});
  std::istringstream in(badSuper + bytes({0, 0, 0, 9}));
  StreamReader reader(&in, &locale_);
  HandleManager handles(&logger_);
  ClassDescriptorHandler handler(&reader, &handles, &logger_);
  const IUString bad = messageOf<InvalidDataException>([&] { handler.readClassDescriptor(); });
  EXPECT_TRUE(bad.startsWith(icore::qvxFormatMsg(81004, "TC_CLASSDESC TC_CLASSDESC_REFERENCE TC_NOT_SPECIFIED", 7)))
      << bad.toUtf8();
  const IUString unknown = messageOf<IOException>([&] { handler.readClassDescriptorReference(); });
  EXPECT_TRUE(unknown.startsWith(icore::qvxFormatMsg(81012, 9))) << unknown.toUtf8();
}

TEST_F(ClassDescriptorHandlerTest, HandlesAreConsecutiveAndAssignedOnce) {
  HandleManager handles(&logger_);
  catalog::Position first;
  catalog::Position second;
  EXPECT_EQ(handles.assignHandle(&first), 0);
  EXPECT_EQ(handles.assignHandle(catalog::CatalogIPackage::iGetInstance()->getTableIClass()), 1);
  EXPECT_EQ(handles.assignHandle(&second), 2);
  EXPECT_EQ(handles.getHandle(&second), 2);
  EXPECT_EQ(handles.getHandle(&handles), -1);
  const IUString again = messageOf<IOException>([&] { handles.assignHandle(&first); });
  EXPECT_EQ(again, icore::qvxFormatMsg(82001, "com.example.catalog.Position", 0));
}

TEST_F(ClassDescriptorHandlerTest, InputHandlesKeepTheFirstValueObjectAndRefuseOtherConflicts) {
  HandleManager handles(&logger_);
  catalog::Position first;
  catalog::Position second;
  catalog::Table table;
  handles.assign(&first, 0);
  handles.assign(&second, 0);
  EXPECT_EQ(handles.findObject(0), &first);
  const IUString conflict = messageOf<IOException>([&] { handles.assign(&table, 0); });
  EXPECT_EQ(conflict, icore::qvxFormatMsg(82002, 0, "com.example.catalog.Position", "com.example.catalog.Table"));
  ClassDescriptor descriptor;
  EXPECT_EQ(messageOf<IOException>([&] { handles.assign(&descriptor, 0); }), icore::qvxFormatMsg(82003, 0));
  // A descriptor's handle is not an object's, and the other way round.
  handles.assign(&descriptor, 5);
  EXPECT_EQ(handles.findObject(5), nullptr);
  EXPECT_EQ(handles.findClassDescriptor(0), nullptr);
  EXPECT_EQ(handles.findClassDescriptor(5), &descriptor);
  // A handle far beyond the table is kept apart and found again.
  handles.assign(&table, 1000000000);
  EXPECT_EQ(handles.findObject(1000000000), &table);
}

}  // namespace
