// A small metamodel built in code for the object-model tests, with concrete object
// classes written the way generated classes are: typed members behind iGet / iSet.
// Package "com.veltrana.qvx.test.testmodel": the identifiable class Node (one property
// of every primitive type, an enumeration, single and multi-valued references and
// containments), its seeded subclass SeededNode, the non-identifiable value class
// Value, and the enumeration Colour. The package is not registered with the runtime.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "icore/IClass.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IFactory.h"
#include "icore/IIdentity.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/IVector.h"
#include "platform/WkDate.h"

namespace testmodel {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IEnumeration;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IFactory;
using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IPackage;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::internal::IObjectInternal;

// A package whose protected construction operations are open to the tests.
class TestPackage : public IPackage {
 public:
  using IPackage::addIEnumerationLiteral;
  using IPackage::createIClass;
  using IPackage::createIEnumeration;
  using IPackage::createIProperty;
  using IPackage::initIClass;
  using IPackage::initIEnumeration;
  using IPackage::initIProperty;
};

// Property ids of Node (SeededNode adds kLevel, Value has only kAmount).
enum NodeProperty : int {
  kName, kCount, kRatio, kData, kColour, kPartner, kChildren, kParent, kLinks, kDetail, kTags,
  kWhen, kShades, kFlag, kInitial, kWeight, kBig, kSmall, kOctet, kScores, kLevel,
};
constexpr int kAmount = 0;

// An instance of Node or SeededNode. Owns its contained objects (children, detail), its
// identity and its multi-valued primitive values. Destruction of a deep containment tree
// runs in a loop, so a long chain does not exhaust the stack.
class TestObject : public IObjectInternal {
 public:
  explicit TestObject(IClass* objectClass);
  ~TestObject() override;
  TestObject(const TestObject&) = delete;
  TestObject& operator=(const TestObject&) = delete;

  // Makes this new object a proxy for `identity`, which it takes over.
  void becomeProxy(IIdentity const* identity);

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(IProperty const& property) override;
  IIdentity const* iGetIdentity() const override { return identity_.get(); }
  void iSetIdentity(IIdentity const*& identity) override;
  using IObjectInternal::iSetIdentity;

  // Direct access for building graphs in tests (no proxy checks).
  IVector<IObject*>& children() { return children_; }
  IVector<IObject*>& links() { return links_; }
  IVector<IUString*>& tags() { return tags_; }
  IVector<IEnumerationLiteral*>& shades() { return shades_; }
  IVector<double*>& scores() { return scores_; }
  // Appends `child` to children and sets its container.
  TestObject* addChild(TestObject* child);

 private:
  // Moves the objects this one owns to `out` and forgets them.
  void releaseOwned(std::vector<IObject*>& out);

  std::unique_ptr<IIdentity const> identity_;
  IUString name_;
  std::int32_t count_ = 0;
  double ratio_ = 0;
  std::unique_ptr<char[]> data_;
  unsigned int dataLength_ = 0;
  IEnumerationLiteral* colour_ = nullptr;
  IObject* partner_ = nullptr;
  // Collections start without storage: deep test chains hold many objects.
  IVector<IObject*> children_{0, 8, 64};
  IVector<IObject*> links_{0, 8, 64};
  IObject* detail_ = nullptr;
  IVector<IUString*> tags_{0, 8, 64};
  WkDate when_;
  IVector<IEnumerationLiteral*> shades_{0, 8, 64};
  IBOOLEAN flag_ = IFALSE;
  char16_t initial_ = 0;
  float weight_ = 0;
  std::int64_t big_ = 0;
  std::int16_t small_ = 0;
  char octet_ = 0;
  IVector<double*> scores_{0, 8, 64};
  std::int32_t level_ = 0;
};

// An instance of Value: not identifiable, so it keeps the base identity operations.
class TestValue : public IObjectInternal {
 public:
  explicit TestValue(IClass* objectClass) { iSetIClass(objectClass); }
  ~TestValue() override;

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(IProperty const& property) override;

 private:
  std::int64_t amount_ = 0;
};

class TestFactory : public IFactory {
 public:
  IObject* create(IClass const& objectClass) override;
  IObject* createProxy(IClass const& objectClass, IIdentity const*& identity) override;
};

// The test package, built once and kept for the process.
class TestModel {
 public:
  static TestModel& get();

  TestPackage package;
  TestFactory factory;
  IClass* node = nullptr;
  IClass* seededNode = nullptr;
  IClass* value = nullptr;
  IEnumeration* colour = nullptr;
  IEnumerationLiteral* red = nullptr;
  IEnumerationLiteral* green = nullptr;
  IEnumerationLiteral* blue = nullptr;

  // Node's property with this id (kLevel: SeededNode's).
  IProperty& property(int id) const;
  IProperty& amount() const;

  TestObject* newNode(const char* name = "") const;
  TestObject* newSeededNode(const char* name = "") const;
  TestValue* newValue() const;

 private:
  TestModel();
};

// Runs `operation`, which must throw `Exception`, and returns the exception's message.
template <typename Exception, typename Operation>
IUString messageOf(Operation&& operation) {
  try {
    operation();
  } catch (Exception& e) {
    return e.getMessage();
  }
  ADD_FAILURE() << "the expected exception was not thrown";
  return IUString("<no exception>");
}

}  // namespace testmodel
