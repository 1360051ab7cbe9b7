// The tables from which a generated package builds its contents, and the singleton
// holder that every generated package uses. A package describes its classes,
// properties and enumerations as constant rows; IPackage::createContents and
// IPackage::initializeContents turn them into metamodel objects in the fixed order
// (types and properties first, then super classes, classes, properties, enumerations).
// For generated package code; applications do not use these directly.
#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>

#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {
class IClassKind;
class IRedefinability;
class IReferenceScope;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::icore::internal {

// A type is named by its type id: ids of the package's own classes and enumerations
// (from 0, in creation order), or the core primitive data types 1000 to 1011.
constexpr int kNoType = -1;

struct ClassRow {
  int typeId;
  const char* name;
  int superTypeId;  // kNoType for a root class
  bool isAbstract;
  bool isFinal;
  bool isSeeded;
  IClassKind const* kind;
  IReferenceScope const* scope;
};

enum PropertyFlag : unsigned {
  kContainment = 1u << 0,
  kContainer = 1u << 1,
  kOrdered = 1u << 2,
  kUnique = 1u << 3,
  kSensitive = 1u << 4,
  kXmlAsElement = 1u << 5,
};

struct PropertyRow {
  int ownerTypeId;
  int id;
  const char* name;
  int typeId;
  int minOccurs;
  int maxOccurs;  // -1 for unbounded
  unsigned flags;  // PropertyFlag bits
  int oppositeOwnerTypeId;  // kNoType when there is no opposite
  int oppositeId;
  const char* defaultValueLiteral;  // null for none
  IReferenceScope const* scope;
  const char* redefinedPropertyName;    // null when nothing is redefined
  IRedefinability const* redefinability;  // null for FINAL_PROPERTY
  const char* xmlPropertyElementName;   // null for none
};

struct EnumRow {
  int typeId;
  const char* name;
  const char* const* literals;  // ordinal = position
  int literalCount;
  int defaultLiteral;  // position of the default literal, or -1
};

// Rows of each kind are listed in type-id order; a class's properties are grouped
// under it in id order.
struct PackageTables {
  ClassRow const* classes;
  std::size_t classCount;
  PropertyRow const* properties;
  std::size_t propertyCount;
  EnumRow const* enums;
  std::size_t enumCount;
};

// The process-wide instance of a generated package. The package is built on first
// use, once, under a recursive lock; the thread that builds it gets null while it
// builds (constructors of metamodel objects ask for packages), other threads wait.
// Once built, the instance is read without locking.
template <typename Package>
class PackageInstance {
 public:
  // The holder of `Package` for the process, never destroyed. Call it only from the
  // package's own source file: with hidden visibility each shared library that
  // instantiates it would get a holder of its own.
  static PackageInstance& process() {
    static auto* holder = new PackageInstance();
    return *holder;
  }

  template <typename Build>
  Package* get(Build&& build) {
    if (Package* built = instance_.load(std::memory_order_acquire)) return built;
    std::lock_guard<WkMutex> guard(lock_);
    if (Package* built = instance_.load(std::memory_order_acquire)) return built;
    if (building_) return nullptr;
    building_ = true;
    Package* made = nullptr;
    try {
      made = build();
    } catch (...) {
      // A failed build leaves no instance; the next call builds again instead of
      // answering null for the rest of the process.
      building_ = false;
      throw;
    }
    instance_.store(made, std::memory_order_release);
    building_ = false;
    return made;
  }

 private:
  std::atomic<Package*> instance_{nullptr};
  bool building_ = false;
  WkMutex lock_;
};

}  // namespace com::veltrana::qvx::icore::internal
