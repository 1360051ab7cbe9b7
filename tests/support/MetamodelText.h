// One-line descriptions of classes and properties, read through the core properties
// of their metaclasses (enumeration values arrive as literals of the core enumerations), so that a package's tests can state its metamodel as a table
// of short texts. Flags: C containment, K container, O ordered, U unique, S sensitive,
// X written as an XML element (with its element name when it has one).
#pragma once

#include <string>
#include <type_traits>

#include "icore/IClass.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"

namespace qvx_test {

namespace detail {
namespace icore = com::veltrana::qvx::icore;

// A value, or (for metamodel objects, which pass as IObject pointers) an element.
template <typename T>
T const* reflected(icore::IModelElement const& element, icore::IProperty* (icore::IcoreIPackage::*property)() const) {
  void const* value = element.iGetIObjectInfo().get(*(icore::IcoreIPackage::iGetInstance()->*property)(), IFALSE);
  if constexpr (std::is_base_of_v<icore::IObject, T>) return static_cast<T const*>(static_cast<icore::IObject const*>(value));
  else return static_cast<T const*>(value);
}
template <typename T>
std::string nameOf(T const* element) {
  return element != nullptr ? element->getName().toUtf8() : "-";
}
inline std::string pathOf(icore::IProperty const* p) { return p ? nameOf(p->getDeclaringClass()) + "." + nameOf(p) : ""; }
}  // namespace detail

// "Name : Super KIND SCOPE" and then "abstract", "final", "seeded" where they hold.
inline std::string describe(com::veltrana::qvx::icore::IClass const& objectClass) {
  using namespace detail;
  using P = icore::IcoreIPackage;
  std::string text = nameOf(&objectClass) + " : ";
  text += nameOf(reflected<icore::IClass>(objectClass, &P::getIClass_SuperClassIProperty)) + " ";
  text += nameOf(reflected<icore::IEnumerationLiteral>(objectClass, &P::getIClass_ClassKindIProperty));
  text += " " + nameOf(reflected<icore::IEnumerationLiteral>(objectClass, &P::getIClass_ReferenceScopeIProperty));
  if (*reflected<IBOOLEAN>(objectClass, &P::getIClass_AbstractIProperty)) text += " abstract";
  if (*reflected<IBOOLEAN>(objectClass, &P::getIClass_FinalIProperty)) text += " final";
  if (*reflected<IBOOLEAN>(objectClass, &P::getIClass_SeededIProperty)) text += " seeded";
  return text;
}

// "Owner.name#id Type[min..max] FLAGS SCOPE", then " =default", " <-> Opposite.end" and
// " redefines Owner.name" where they apply, and the redefinability unless it is final.
inline std::string describe(com::veltrana::qvx::icore::IProperty const& property) {
  using namespace detail;
  using P = icore::IcoreIPackage;
  std::string flags;
  if (*reflected<IBOOLEAN>(property, &P::getIProperty_ContainmentIProperty)) flags += "C";
  if (*reflected<IBOOLEAN>(property, &P::getIProperty_ContainerIProperty)) flags += "K";
  if (*reflected<IBOOLEAN>(property, &P::getIProperty_OrderedIProperty)) flags += "O";
  if (*reflected<IBOOLEAN>(property, &P::getIProperty_UniqueIProperty)) flags += "U";
  if (property.isSensitive()) flags += "S";
  if (property.getXMLPropertyAsElement()) flags += "X" + property.getXMLPropertyElementName().toUtf8();
  std::string text = pathOf(&property) + "#" + std::to_string(property.getPropertyId()) + " " +
                     nameOf(reflected<icore::IType>(property, &P::getITypedElement_TypeIProperty)) + "[" +
                     std::to_string(*reflected<int>(property, &P::getIProperty_MinOccursIProperty)) + ".." +
                     std::to_string(*reflected<int>(property, &P::getIProperty_MaxOccursIProperty)) + "] " +
                     (flags.empty() ? "-" : flags) + " " +
                     nameOf(reflected<icore::IEnumerationLiteral>(property, &P::getIProperty_ReferenceScopeIProperty));
  std::string const defaultLiteral = reflected<IUString>(property, &P::getIProperty_DefaultValueLiteralIProperty)->toUtf8();
  if (!defaultLiteral.empty()) text += " =" + defaultLiteral;
  if (auto* opposite = reflected<icore::IProperty>(property, &P::getIProperty_OppositePropertyIProperty)) {
    text += " <-> " + pathOf(opposite);
  }
  if (auto* redefined = reflected<icore::IProperty>(property, &P::getIProperty_RedefinedPropertyIProperty)) {
    text += " redefines " + pathOf(redefined);
  }
  const std::string redefinability =
      nameOf(reflected<icore::IEnumerationLiteral>(property, &P::getIProperty_RedefinabilityIProperty));
  if (redefinability != "FINAL_PROPERTY") text += " " + redefinability;
  return text;
}

// "Owner.name " for each property of the list, in its order.
inline std::string namesOf(IVector<com::veltrana::qvx::icore::IProperty*> const& properties) {
  std::string names;
  for (auto const* property : properties) names += detail::pathOf(property) + " ";
  return names;
}

}  // namespace qvx_test
