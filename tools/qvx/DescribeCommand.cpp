// qvx describe NAME: a package, or one class or enumeration given by qualified name,
// as a readable metamodel.
#include <cstdio>
#include <string>

#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IType.h"
#include "icore/QVXRuntime.h"
#include "tools/qvx/Arguments.h"
#include "tools/qvx/Commands.h"
#include "tools/qvx/ToolError.h"

namespace qvx_tool {

namespace icore = com::veltrana::qvx::icore;

namespace {

char const* const kDescribeUsage =
    "qvx describe NAME\n"
    "  NAME is a package (com.example.catalog) or a class or enumeration by qualified\n"
    "  name (com.example.catalog.Table). Packages not registered are loaded through the\n"
    "  package-library maps.\n";

std::string utf8(IUString const& text) { return text.toUtf8(); }

// The package of that name, loaded through the maps when not yet registered.
icore::IPackage* findPackage(std::string const& name) {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  IUString packageName = IUString::fromUtf8(name);
  if (runtime->getIPackageForName(packageName) == nullptr) {
    IUString ignored;
    icore::QVXRuntime::loadPackageLibrary(packageName, ignored);
  }
  return runtime->getIPackageForName(packageName);
}

std::string multiplicity(icore::IProperty const& property) {
  std::string upper = property.getMaxOccurs() < 0 ? "*" : std::to_string(property.getMaxOccurs());
  return "[" + std::to_string(property.getMinOccurs()) + ".." + upper + "]";
}

std::string typeName(icore::IProperty const& property) {
  icore::IType const* type = property.getType();
  return type == nullptr ? "?" : utf8(type->getQualifiedName());
}

void describeProperty(icore::IProperty const& property) {
  std::string line = "    " + std::to_string(property.getPropertyId()) + " " + utf8(property.getName()) + " : " +
                     typeName(property) + " " + multiplicity(property);
  if (property.isContainment()) line += " containment";
  if (property.isContainer()) line += " container";
  if (property.getOppositeProperty() != nullptr) {
    line += " opposite " + utf8(property.getOppositeProperty()->getName());
  }
  if (property.isSensitive()) line += " sensitive";
  if (!property.getDefaultValueLiteral().isEmpty()) line += " default \"" + utf8(property.getDefaultValueLiteral()) + "\"";
  std::puts(line.c_str());
}

void describeClass(icore::IClass const& theClass) {
  std::string line = "class " + utf8(theClass.getQualifiedName());
  if (theClass.getSuperClass() != nullptr) line += " extends " + utf8(theClass.getSuperClass()->getQualifiedName());
  line += " (" + utf8(theClass.getClassKind().getName());
  if (theClass.isAbstract()) line += ", abstract";
  if (theClass.isFinal()) line += ", final";
  if (theClass.isSeeded()) line += ", seeded";
  if (theClass.isIdentifiableClass()) line += ", identifiable";
  std::puts((line + ")").c_str());
  IVector<icore::IProperty*> const& properties = theClass.getDeclaredProperties();
  for (std::size_t i = 0; i < properties.size(); ++i) describeProperty(*properties[i]);
}

void describeEnumeration(icore::IEnumeration const& enumeration) {
  std::printf("enumeration %s\n", utf8(enumeration.getQualifiedName()).c_str());
  IVector<icore::IEnumerationLiteral*> const& literals = enumeration.getLiterals();
  for (std::size_t i = 0; i < literals.size(); ++i) {
    std::printf("    %d %s\n", literals[i]->getOrdinalValue(), utf8(literals[i]->getName()).c_str());
  }
}

void describeType(icore::IType const& type) {
  if (type.isClass()) {
    describeClass(static_cast<icore::IClass const&>(type));
  } else if (type.isEnum()) {
    describeEnumeration(static_cast<icore::IEnumeration const&>(type));
  } else {
    std::printf("datatype %s\n", utf8(type.getQualifiedName()).c_str());
  }
}

void describePackage(icore::IPackage const& package) {
  std::printf("package %s version %s prefix %s\n", utf8(package.getQualifiedName()).c_str(),
              utf8(package.getVersion()).c_str(), utf8(package.getNsPrefix()).c_str());
  IVector<icore::IType*> const& types = package.getTypes();
  for (std::size_t i = 0; i < types.size(); ++i) describeType(*types[i]);
}

}  // namespace

int runDescribe(Words const& words) {
  Arguments arguments(words, {}, {});
  if (arguments.answeredHelp(kDescribeUsage)) return kExitSuccess;
  arguments.expectPositional(1, kDescribeUsage);
  std::string const& name = arguments.positional()[0];
  if (icore::IPackage* package = findPackage(name)) {
    describePackage(*package);
    return kExitSuccess;
  }
  std::string::size_type dot = name.rfind('.');
  icore::IPackage* owner = dot == std::string::npos ? nullptr : findPackage(name.substr(0, dot));
  icore::IType const* type = owner == nullptr ? nullptr : owner->getType(IUString::fromUtf8(name.substr(dot + 1)));
  if (type == nullptr) throw ToolError(kExitUsage, "no package, class or enumeration named \"" + name + "\"");
  describeType(*type);
  return kExitSuccess;
}

}  // namespace qvx_tool
