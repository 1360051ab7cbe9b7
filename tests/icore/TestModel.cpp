// The test metamodel and its object classes; see TestModel.h.
#include "tests/icore/TestModel.h"

#include <cstring>

#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/exception/IllegalArgumentException.h"

namespace testmodel {

using com::veltrana::qvx::icore::IClassKind;
using com::veltrana::qvx::icore::ICoreDatatypes;
using com::veltrana::qvx::icore::IRedefinability;
using com::veltrana::qvx::icore::IReferenceScope;
using com::veltrana::qvx::icore::IType;
using com::veltrana::qvx::icore::exception::IllegalArgumentException;

namespace {

template <typename T>
void deleteAll(IVector<T*>& items) {
  for (T* item : items) delete item;
  items.clear();
}

}  // namespace

// ---------------------------------------------------------------------------------
// TestObject

TestObject::TestObject(IClass* objectClass) { iSetIClass(objectClass); }

TestObject::~TestObject() {
  std::vector<IObject*> owned;
  releaseOwned(owned);
  while (!owned.empty()) {
    IObject* next = owned.back();
    owned.pop_back();
    if (auto* nested = dynamic_cast<TestObject*>(next)) nested->releaseOwned(owned);
    delete next;
  }
  deleteAll(tags_);
  deleteAll(scores_);
}

void TestObject::releaseOwned(std::vector<IObject*>& out) {
  for (IObject* child : children_) {
    if (child != nullptr) out.push_back(child);
  }
  children_.clear();
  if (detail_ != nullptr) out.push_back(detail_);
  detail_ = nullptr;
}

void TestObject::becomeProxy(IIdentity const* identity) {
  identity_.reset(identity);
  iSetProxy();
}

TestObject* TestObject::addChild(TestObject* child) {
  children_.append(child);
  child->iSetContainer(this, &TestModel::get().property(kChildren));
  return child;
}

void TestObject::iSetIdentity(IIdentity const*& identity) {
  performChecksBeforeSet();
  identity_.reset(identity);
}

void const* TestObject::iGet(IProperty const& property, unsigned int* index, IBOOLEAN) const {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case kName: return &name_;
    case kCount: return &count_;
    case kRatio: return &ratio_;
    case kData:
      if (index != nullptr) *index = dataLength_;
      return data_.get();
    case kColour: return colour_;
    case kPartner: return partner_;
    case kChildren: return &children_;
    case kParent: return static_cast<IObject const*>(iGetContainer());
    case kLinks: return &links_;
    case kDetail: return detail_;
    case kTags: return &tags_;
    case kWhen: return &when_;
    case kShades: return &shades_;
    case kFlag: return &flag_;
    case kInitial: return &initial_;
    case kWeight: return &weight_;
    case kBig: return &big_;
    case kSmall: return &small_;
    case kOctet: return &octet_;
    case kScores: return &scores_;
    case kLevel: return &level_;
    default: throwUnknownGet(property);
  }
}

void TestObject::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN) {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case kName: name_ = *static_cast<IUString*>(value); return;
    case kCount: count_ = *static_cast<std::int32_t*>(value); return;
    case kRatio: ratio_ = *static_cast<double*>(value); return;
    case kData:
      // A blob arrives as its bytes, with the byte count in `index`.
      data_.reset();
      dataLength_ = 0;
      if (value != nullptr) {
        data_ = std::make_unique<char[]>(index);
        std::memcpy(data_.get(), value, index);
        dataLength_ = index;
      }
      return;
    case kColour: colour_ = static_cast<IEnumerationLiteral*>(value); return;
    case kPartner: partner_ = static_cast<IObject*>(value); return;
    case kParent: iSetContainer(static_cast<IObjectInternal*>(static_cast<IObject*>(value))); return;
    case kDetail: {
      // The replaced object is detached and handed back to the caller.
      auto* replaced = static_cast<IObjectInternal*>(detail_);
      detail_ = static_cast<IObject*>(value);
      if (replaced != nullptr && replaced != detail_) replaced->iSetContainer(nullptr, nullptr);
      return;
    }
    case kWhen: when_ = *static_cast<WkDate*>(value); return;
    case kFlag: flag_ = *static_cast<IBOOLEAN*>(value); return;
    case kInitial: initial_ = *static_cast<char16_t*>(value); return;
    case kWeight: weight_ = *static_cast<float*>(value); return;
    case kBig: big_ = *static_cast<std::int64_t*>(value); return;
    case kSmall: small_ = *static_cast<std::int16_t*>(value); return;
    case kOctet: octet_ = *static_cast<char*>(value); return;
    case kLevel: level_ = *static_cast<std::int32_t*>(value); return;
    case kChildren:
    case kLinks:
    case kTags:
    case kShades:
    case kScores: throwCollectionSet(property);
    default: throwUnknownSet(property);
  }
}

IBOOLEAN TestObject::iHasItems(IProperty const& property) {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case kChildren: return children_.isEmpty() ? IFALSE : ITRUE;
    case kLinks: return links_.isEmpty() ? IFALSE : ITRUE;
    case kTags: return tags_.isEmpty() ? IFALSE : ITRUE;
    case kShades: return shades_.isEmpty() ? IFALSE : ITRUE;
    case kScores: return scores_.isEmpty() ? IFALSE : ITRUE;
    default: throwNotMultiValued(property);
  }
}

// ---------------------------------------------------------------------------------
// TestValue

TestValue::~TestValue() = default;

void const* TestValue::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  checkPropertyAccess(property);
  if (property.getPropertyId() == kAmount) return &amount_;
  throwUnknownGet(property);
}

void TestValue::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  checkPropertyAccess(property);
  if (property.getPropertyId() != kAmount) throwUnknownSet(property);
  amount_ = *static_cast<std::int64_t*>(value);
}

IBOOLEAN TestValue::iHasItems(IProperty const& property) {
  checkPropertyAccess(property);
  throwNotMultiValued(property);
}

// ---------------------------------------------------------------------------------
// TestFactory

IObject* TestFactory::create(IClass const& objectClass) {
  TestModel& model = TestModel::get();
  auto* mutableClass = const_cast<IClass*>(&objectClass);
  if (&objectClass == model.value) return new TestValue(mutableClass);
  if (&objectClass == model.node || &objectClass == model.seededNode) return new TestObject(mutableClass);
  throw IllegalArgumentException(IUString("not a class of the test package"));
}

IObject* TestFactory::createProxy(IClass const& objectClass, IIdentity const*& identity) {
  TestModel& model = TestModel::get();
  if (&objectClass != model.node && &objectClass != model.seededNode) {
    throw IllegalArgumentException(IUString("no proxies of this class"));
  }
  auto proxy = std::make_unique<TestObject>(const_cast<IClass*>(&objectClass));
  proxy->becomeProxy(identity);
  return proxy.release();
}

// ---------------------------------------------------------------------------------
// TestModel

TestModel& TestModel::get() {
  static TestModel* model = new TestModel();  // lives for the process
  return *model;
}

TestModel::TestModel() {
  struct Row {
    int id;
    const char* name;
    IType* type;  // null: Node itself; colour: the enumeration
    bool isColour;
    int minOccurs;
    int maxOccurs;
    bool containment;
    bool container;
    int opposite;  // id of the opposite property, or -1
    IReferenceScope const* scope;
  };
  node = package.createIClass(0);
  for (int id = kName; id <= kScores; ++id) package.createIProperty(node, id);
  seededNode = package.createIClass(1);
  package.createIProperty(seededNode, kLevel);
  value = package.createIClass(2);
  package.createIProperty(value, kAmount);
  colour = package.createIEnumeration(3);

  package.setName("testmodel");
  package.setNsPrefix("com.veltrana.qvx.test");
  seededNode->setSuperClass(node);

  package.initIClass(node, "Node", IFALSE, IClassKind::FIRST_CLASS, IReferenceScope::EXTERNAL, IFALSE, IFALSE, "");
  package.initIClass(seededNode, "SeededNode", IFALSE, IClassKind::FIRST_CLASS, IReferenceScope::EXTERNAL, IFALSE,
                     ITRUE, "");
  package.initIClass(value, "Value", IFALSE, IClassKind::VALUE_CLASS, IReferenceScope::INTERNAL, ITRUE, IFALSE, "");
  package.initIEnumeration(colour, "Colour", "");
  red = package.addIEnumerationLiteral(colour, "RED", 0, "");
  green = package.addIEnumerationLiteral(colour, "GREEN", 1, "");
  blue = package.addIEnumerationLiteral(colour, "BLUE", 2, "");

  IReferenceScope const* none = &IReferenceScope::NONE;
  IReferenceScope const* internalScope = &IReferenceScope::INTERNAL;
  IReferenceScope const* deferred = &IReferenceScope::DEFERRED;
  const Row rows[] = {
      {kName, "name", ICoreDatatypes::I_STRING, false, 1, 1, false, false, -1, none},
      {kCount, "count", ICoreDatatypes::I_INTEGER, false, 1, 1, false, false, -1, none},
      {kRatio, "ratio", ICoreDatatypes::I_DOUBLE, false, 1, 1, false, false, -1, none},
      {kData, "data", ICoreDatatypes::I_BLOB, false, 0, 1, false, false, -1, none},
      {kColour, "colour", nullptr, true, 0, 1, false, false, -1, none},
      {kPartner, "partner", nullptr, false, 0, 1, false, false, -1, deferred},
      {kChildren, "children", nullptr, false, 0, -1, true, false, kParent, internalScope},
      {kParent, "parent", nullptr, false, 0, 1, false, true, kChildren, internalScope},
      {kLinks, "links", nullptr, false, 0, -1, false, false, -1, deferred},
      {kDetail, "detail", nullptr, false, 0, 1, true, false, -1, internalScope},
      {kTags, "tags", ICoreDatatypes::I_STRING, false, 0, -1, false, false, -1, none},
      {kWhen, "when", ICoreDatatypes::I_DATE, false, 0, 1, false, false, -1, none},
      {kShades, "shades", nullptr, true, 0, -1, false, false, -1, none},
      {kFlag, "flag", ICoreDatatypes::I_BOOLEAN, false, 1, 1, false, false, -1, none},
      {kInitial, "initial", ICoreDatatypes::I_CHARACTER, false, 1, 1, false, false, -1, none},
      {kWeight, "weight", ICoreDatatypes::I_FLOAT, false, 1, 1, false, false, -1, none},
      {kBig, "big", ICoreDatatypes::I_LONG, false, 1, 1, false, false, -1, none},
      {kSmall, "small", ICoreDatatypes::I_SHORT, false, 1, 1, false, false, -1, none},
      {kOctet, "octet", ICoreDatatypes::I_BYTE, false, 1, 1, false, false, -1, none},
      {kScores, "scores", ICoreDatatypes::I_DOUBLE, false, 0, -1, false, false, -1, none},
  };
  for (const Row& row : rows) {
    IType* type = row.isColour ? static_cast<IType*>(colour) : row.type != nullptr ? row.type : node;
    IProperty* opposite = row.opposite >= 0 ? node->getDeclaredProperties()[static_cast<std::size_t>(row.opposite)]
                                            : nullptr;
    package.initIProperty(node->getDeclaredProperties()[static_cast<std::size_t>(row.id)], type, row.name, "",
                          row.minOccurs, row.maxOccurs, opposite, IFALSE, row.containment ? ITRUE : IFALSE,
                          row.container ? ITRUE : IFALSE, IFALSE, IFALSE, row.maxOccurs == -1 ? ITRUE : IFALSE, "",
                          IRedefinability::FINAL_PROPERTY, *row.scope, "", IFALSE);
  }
  package.initIProperty(seededNode->getDeclaredProperties()[0], ICoreDatatypes::I_INTEGER, "level", "", 1, 1, nullptr,
                        IFALSE, IFALSE, IFALSE, IFALSE, IFALSE, IFALSE, "", IRedefinability::FINAL_PROPERTY,
                        IReferenceScope::NONE, "", IFALSE);
  package.initIProperty(value->getDeclaredProperties()[0], ICoreDatatypes::I_LONG, "amount", "", 1, 1, nullptr, IFALSE,
                        IFALSE, IFALSE, IFALSE, IFALSE, IFALSE, "", IRedefinability::FINAL_PROPERTY,
                        IReferenceScope::NONE, "", IFALSE);
  package.setFactory(&factory);
  factory.setPackage(&package);
}

IProperty& TestModel::property(int id) const {
  if (id == kLevel) return *seededNode->getDeclaredProperties()[0];
  return *node->getDeclaredProperties()[static_cast<std::size_t>(id)];
}

IProperty& TestModel::amount() const { return *value->getDeclaredProperties()[0]; }

TestObject* TestModel::newNode(const char* name) const {
  auto* made = new TestObject(node);
  IUString text(name);
  made->iSet(property(kName), &text, 0, IFALSE);
  return made;
}

TestObject* TestModel::newSeededNode(const char* name) const {
  auto* made = new TestObject(seededNode);
  IUString text(name);
  made->iSet(property(kName), &text, 0, IFALSE);
  return made;
}

TestValue* TestModel::newValue() const { return new TestValue(value); }

}  // namespace testmodel
