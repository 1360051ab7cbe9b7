// The test package "com.example.test.shapes", built from tables the way generated
// package code is. It is compiled into the shared library qvx_test_package, whose
// loading registers the package, and into test programs that use it directly; a program
// must not do both, or two packages would claim the same qualified name.
//
//   type  class      super  kind, scope              properties (id name: type)
//   0     Stencil    -      seeded, identifiable     0 name, 1 shapes: Shape 0..* contained (opposite
//                                                    Shape.stencil), 2 note: Note contained, 3 parts:
//                                                    Stencil 0..* contained
//   1     Shape      -      seeded, identifiable     0 name, 1 sides, 2 filled, 3 outline: LineStyle,
//                                                    4 stencil: the container
//   2     Circle     Shape  seeded, identifiable     5 radius
//   3     Note       -      value class, internal    0 text
//   4     Drawing    -      identifiable             0 name, 1 uses: Shape 0..*, 2 background: Shape;
//                                                    one property of every primitive type (3 count ..
//                                                    13 octet), 14 tags, 15 styles, 16 scores (0..*),
//                                                    17 layers: Drawing 0..* contained (opposite
//                                                    18 owner), 19 partner, 20 links: Drawing 0..*,
//                                                    21 caption: Note contained
//   5     LineStyle  enumeration SOLID, DASHED, DOTTED (default SOLID)
//
// Every class is served by one object class that keeps a value slot per property id
// (TestPackageObjects.cpp). Objects free what they contain without recursion, so deep
// containment chains are safe.
#pragma once

#include "icore/IFactory.h"
#include "icore/IPackage.h"

namespace com::example::test::shapes {

namespace icore = com::veltrana::qvx::icore;

// The number of objects of the package that exist now, so that tests can check who
// deletes what. The shared library exports it as qvxTestPackageLiveObjectCount.
int liveObjectCount();

// A new object of `objectClass`; a proxy for `proxyIdentity` (which it takes over) when
// that is not null. The caller owns the result.
icore::IObject* newObject(icore::IClass* objectClass, icore::IIdentity const* proxyIdentity);

class ShapesIPackage : public icore::IPackage {
 public:
  // The package, built and registered on the first call; null while it is being built.
  static ShapesIPackage* iGetInstance();

 private:
  ShapesIPackage() = default;
  ~ShapesIPackage() override;
  static ShapesIPackage* init();
};

class ShapesIFactory : public icore::IFactory {
 public:
  static ShapesIFactory* iGetInstance();

  // 73011 for a class of another package (the package has no abstract classes).
  icore::IObject* create(icore::IClass const& objectClass) override;
  // 75007 without identity, 75009 for a class that is not identifiable.
  icore::IObject* createProxy(icore::IClass const& objectClass, icore::IIdentity const*& identity) override;
  // LineStyle literals by name, as generated factories convert them; null for an
  // unknown name.
  void* datatypeFromString(icore::IDatatype const& datatype, IUString const& text) override;
  IUString* datatypeToString(icore::IDatatype const& datatype, void const* value) override;
};

}  // namespace com::example::test::shapes
