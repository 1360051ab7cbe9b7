#include "icore/internal/ClassTable.h"

#include "icore/IClass.h"
#include "icore/IRedefinability.h"
#include "icore/IType.h"

namespace com::veltrana::qvx::icore::internal {

namespace {

ClassTable::Entry describe(IProperty const& property) {
  ClassTable::Entry entry;
  entry.property = &property;
  entry.type = property.getType();
  entry.propertyId = property.getPropertyId();
  entry.kind = ClassTable::kindOf(property);
  entry.multiValued = property.isCollection() != IFALSE;
  entry.abstractProperty = &property.getRedefinability() == &IRedefinability::ABSTRACT_PROPERTY;
  entry.container = property.isContainer() != IFALSE;
  if (entry.kind == PropertyKind::kPrimitive) entry.primitiveTypeId = entry.type->getTypeId();
  entry.defaultLiteral = property.getDefaultValueLiteral();
  entry.name = property.getName();
  entry.nameUtf8 = entry.name.toUtf8();
  entry.xmlAsElement = property.getXMLPropertyAsElement() != IFALSE;
  if (entry.xmlAsElement) {
    entry.xmlElementName = property.getXMLPropertyElementName();
    entry.xmlElementNameUtf8 = entry.xmlElementName.toUtf8();
  }
  return entry;
}

}  // namespace

PropertyKind ClassTable::kindOf(IProperty const& property) {
  IType const* type = property.getType();
  if (type == nullptr) return PropertyKind::kReference;
  if (type->isEnum()) return PropertyKind::kEnumeration;
  if (type->isPrimitive()) return PropertyKind::kPrimitive;
  return property.isContainment() ? PropertyKind::kContainment : PropertyKind::kReference;
}

ClassTable::ClassTable(IClass const& owner) : abstract_(owner.isAbstract() != IFALSE) {
  IVector<IProperty*> const& properties = owner.getAllProperties(ITRUE);
  entries_.reserve(properties.size());
  for (IProperty const* property : properties) entries_.push_back(describe(*property));

  // Indexes point into entries_, which no longer grows.
  for (Entry const& entry : entries_) {
    byName_.try_emplace(entry.name, &entry);
    if (entry.xmlAsElement && !entry.xmlElementName.isEmpty()) byXmlElementName_.try_emplace(entry.xmlElementName, &entry);
    if (entry.propertyId < 0) {
      idsAmbiguous_ = true;
      continue;
    }
    IdSlot& slot = slotToFill(static_cast<std::size_t>(entry.propertyId));
    if (slot.entry != nullptr) {
      idsAmbiguous_ = true;
      continue;
    }
    slot = {entry.property, &entry};
  }
}

ClassTable::IdSlot& ClassTable::slotToFill(std::size_t id) {
  if (id < kLowIds) return lowIds_[id];
  if (id - kLowIds >= highIds_.size()) highIds_.resize(id - kLowIds + 1);
  return highIds_[id - kLowIds];
}

ClassTable::~ClassTable() = default;

ClassTable::Entry const* ClassTable::findByName(IUString const& name) const {
  const auto found = byName_.find(name);
  return found != byName_.end() ? found->second : nullptr;
}

ClassTable::Entry const* ClassTable::findByXmlElementName(IUString const& elementName) const {
  const auto found = byXmlElementName_.find(elementName);
  return found != byXmlElementName_.end() ? found->second : nullptr;
}

ClassTable::Entry const* ClassTable::findBySearch(IProperty const& property) const {
  for (Entry const& entry : entries_) {
    if (entry.property == &property) return &entry;
  }
  return nullptr;
}

}  // namespace com::veltrana::qvx::icore::internal
