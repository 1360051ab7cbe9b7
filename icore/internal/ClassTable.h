// The per-class table of everything generic code asks about a class's properties:
// kind, multiplicity, default literal, XML names, all decided once per class instead of
// once per object and property. Reflective access checks membership through it, and
// both serializers are meant to walk it instead of getAllProperties:
//
//   ClassTable const& table = object.iGetIClass()->getClassTable();
//   for (ClassTable::Entry const& entry : table.entries()) {
//     if (entry.abstractProperty) continue;                // never serialized
//     switch (entry.kind) { ... }                          // marker / attribute choice
//     void const* value = info.get(*entry.property, ...);
//   }
//
// A table is made by IClass::getClassTable on first use, under the class's lock, and
// then read by any number of threads without locking. Like the other derived answers of
// a class it is never rebuilt: it reflects the class as it was when first asked.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "icore/IProperty.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IClass;
class IType;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::icore::internal {

// What a property's values are; with Entry::multiValued this selects the binary
// stream's kind marker and the XML document's encoding.
enum class PropertyKind : std::uint8_t {
  kPrimitive,    // one of the core datatypes (Entry::primitiveTypeId says which)
  kEnumeration,  // literals of an IEnumeration
  kReference,    // objects referred to, not owned (a property without type counts here)
  kContainment,  // objects owned by the object holding the property
};

class QVX_API ClassTable {
 public:
  struct Entry {
    IProperty const* property = nullptr;
    IType const* type = nullptr;
    std::int32_t propertyId = -1;
    PropertyKind kind = PropertyKind::kReference;
    // IProperty::isCollection.
    bool multiValued = false;
    // Redefinability ABSTRACT_PROPERTY: neither stream writes it.
    bool abstractProperty = false;
    // The reference from a contained object back to its container.
    bool container = false;
    // The datatype's type id (1000 to 1011) for kPrimitive, else -1.
    std::int32_t primitiveTypeId = -1;
    // IProperty::getDefaultValueLiteral exactly as the model wrote it.
    IUString defaultLiteral;
    // The property name: the XML attribute name, or the inner element name when the
    // property is written as an element. Also in UTF-8 for byte-oriented writers.
    IUString name;
    std::string nameUtf8;
    // IProperty::getXMLPropertyAsElement, and the wrapper element's name
    // (getXMLPropertyElementName), empty when the property is an attribute.
    bool xmlAsElement = false;
    IUString xmlElementName;
    std::string xmlElementNameUtf8;
  };

  // The kind of `property`, as its entry would give it.
  static PropertyKind kindOf(IProperty const& property);

  // Builds the table of `owner` from getAllProperties(true). Use IClass::getClassTable.
  explicit ClassTable(IClass const& owner);
  ClassTable(const ClassTable&) = delete;
  ClassTable& operator=(const ClassTable&) = delete;
  ~ClassTable();

  // The entries in the order of getAllProperties(true): root class first, own
  // declarations last, redefined properties kept.
  std::vector<Entry> const& entries() const { return entries_; }
  // IClass::isAbstract of the owner.
  bool isAbstract() const { return abstract_; }

  // The entry of `property` when it is one of the class's properties, else null. Found by
  // property id in constant time.
  Entry const* find(IProperty const& property) const {
    IdSlot const* slot = slotOf(property);
    if (slot != nullptr && slot->property == &property) return slot->entry;
    return idsAmbiguous_ ? findBySearch(property) : nullptr;
  }
  // find(property) != nullptr, one load shorter: the check of every reflective access.
  bool contains(IProperty const& property) const {
    IdSlot const* slot = slotOf(property);
    if (slot != nullptr && slot->property == &property) return true;
    return idsAmbiguous_ && findBySearch(property) != nullptr;
  }
  // The first entry with this property name (the tie-break of IClass::getProperty), or null.
  Entry const* findByName(IUString const& name) const;
  // The entry of the as-element property whose wrapper element has this name, or null.
  Entry const* findByXmlElementName(IUString const& elementName) const;

 private:
  Entry const* findBySearch(IProperty const& property) const;

  // The index by property id; nulls where no property of the class has the id. The
  // property is kept beside its entry so that a look-up compares without reading the
  // entry itself (every reflective access makes one).
  struct IdSlot {
    IProperty const* property = nullptr;
    Entry const* entry = nullptr;
  };
  // The slot for `property`'s id, or null beyond the last id. Ids below kLowIds, those
  // of nearly every class, sit in the table itself: a look-up then reads no block
  // other than the table.
  IdSlot const* slotOf(IProperty const& property) const {
    const auto id = static_cast<std::size_t>(static_cast<std::uint32_t>(property.getPropertyId()));
    if (id < kLowIds) return &lowIds_[id];
    return id - kLowIds < highIds_.size() ? &highIds_[id - kLowIds] : nullptr;
  }
  IdSlot& slotToFill(std::size_t id);

  static constexpr std::size_t kLowIds = 32;
  std::vector<Entry> entries_;
  IdSlot lowIds_[kLowIds] = {};
  std::vector<IdSlot> highIds_;  // ids from kLowIds on, at id - kLowIds
  std::unordered_map<IUString, Entry const*> byName_;
  std::unordered_map<IUString, Entry const*> byXmlElementName_;
  bool abstract_ = false;
  // Some property has no id, or shares its id with another: the id index then cannot
  // answer alone (a modelling error, answered correctly all the same).
  bool idsAmbiguous_ = false;
};

}  // namespace com::veltrana::qvx::icore::internal
