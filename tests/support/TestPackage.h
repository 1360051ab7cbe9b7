// A small package written the way generated package code is, for the tests:
// "com.example.test.shapes", stencils of seeded shapes, drawings that refer to shapes,
// and plain notes. Built into the shared library qvx_test_package, whose loading
// registers the package, and compiled into test programs that use it directly; a
// program must not do both, or two packages would claim the same qualified name.
//
//   type id  class     super  flags                       properties (id: name)
//   0        Stencil   -      seeded, identifiable        0 name, 1 shapes (contains Shape 0..*),
//                                                         2 note (contains Note 0..1),
//                                                         3 parts (contains Stencil 0..*)
//   1        Shape     -      seeded, identifiable        0 name, 1 sides, 2 filled, 3 outline
//                                                         (LineStyle), 4 stencil (container)
//   2        Circle    Shape  seeded, identifiable        5 radius
//   3        Note      -      internal (no identity)      0 text
//   4        Drawing   -      identifiable                0 title, 1 uses (Shape 0..*),
//                                                         2 background (Shape 0..1)
//   5        LineStyle enumeration: SOLID 0, DASHED 1
#pragma once

#include <cstdint>
#include <memory>

#include "icore/IFactory.h"
#include "icore/IPackage.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/IVector.h"
#include "platform/WkMutex.h"

namespace com::example::test::shapes {

namespace icore = com::veltrana::qvx::icore;

// The number of objects of the package's classes that exist now, so that tests can
// check who deletes what. Exported from the shared library as
// qvxTestPackageLiveObjectCount.
int liveObjectCount();

class ShapesIPackage : public icore::IPackage {
 public:
  // The package, built and registered on the first call; null while it is being built
  // on this thread.
  static ShapesIPackage* iGetInstance();
  static IUString const& getIName();     // "shapes"
  static IUString const& getIPrefix();   // "com.example.test"
  static IUString const& getIVersion();  // "1.0.0"

  icore::IClass* getStencilIClass() const { return classes_[0]; }
  icore::IClass* getShapeIClass() const { return classes_[1]; }
  icore::IClass* getCircleIClass() const { return classes_[2]; }
  icore::IClass* getNoteIClass() const { return classes_[3]; }
  icore::IClass* getDrawingIClass() const { return classes_[4]; }
  icore::IEnumeration* getLineStyleIEnumeration() const { return lineStyle_; }

  icore::IProperty* getStencil_NameIProperty() const { return declaredProperty(0, 0); }
  icore::IProperty* getStencil_ShapesIProperty() const { return declaredProperty(0, 1); }
  icore::IProperty* getStencil_NoteIProperty() const { return declaredProperty(0, 2); }
  icore::IProperty* getStencil_PartsIProperty() const { return declaredProperty(0, 3); }
  icore::IProperty* getShape_NameIProperty() const { return declaredProperty(1, 0); }
  icore::IProperty* getShape_SidesIProperty() const { return declaredProperty(1, 1); }
  icore::IProperty* getShape_FilledIProperty() const { return declaredProperty(1, 2); }
  icore::IProperty* getShape_OutlineIProperty() const { return declaredProperty(1, 3); }
  icore::IProperty* getShape_StencilIProperty() const { return declaredProperty(1, 4); }
  icore::IProperty* getCircle_RadiusIProperty() const { return declaredProperty(2, 0); }
  icore::IProperty* getNote_TextIProperty() const { return declaredProperty(3, 0); }
  icore::IProperty* getDrawing_TitleIProperty() const { return declaredProperty(4, 0); }
  icore::IProperty* getDrawing_UsesIProperty() const { return declaredProperty(4, 1); }
  icore::IProperty* getDrawing_BackgroundIProperty() const { return declaredProperty(4, 2); }

  void createPackageContents();
  void initializePackageContents();

 private:
  ShapesIPackage();
  ~ShapesIPackage() override;
  static ShapesIPackage* init();

  void addSuperTypesToClasses();
  void initClasses();
  void initEnums();
  icore::IProperty* declaredProperty(int classIndex, int position) const;

  icore::IClass* classes_[5] = {};
  icore::IEnumeration* lineStyle_ = nullptr;
  bool contentsInitialised_ = false;
  WkMutex lock_;
};

class ShapesIFactory : public icore::IFactory {
 public:
  static ShapesIFactory* iGetInstance();

  // IllegalArgumentException (73002) for a class of another package.
  icore::IObject* create(icore::IClass const& objectClass) override;
  // 75007 without identity, 75008 for an abstract class, 75009 for a class that is
  // not identifiable.
  icore::IObject* createProxy(icore::IClass const& objectClass, icore::IIdentity const*& identity) override;
  void* datatypeFromString(icore::IDatatype const& datatype, IUString const& text) override;
  IUString* datatypeToString(icore::IDatatype const& datatype, void const* value) override;

 private:
  ShapesIFactory() = default;
  ~ShapesIFactory() override;
};

// The identity that every identifiable class of the package keeps.
class IdentifiedObject : public icore::internal::IObjectInternal {
 public:
  ~IdentifiedObject() override;

  icore::IIdentity const* iGetIdentity() const override { return identity_.get(); }
  // Takes ownership of `identity`; 74002 when the object has one already.
  void iSetIdentity(icore::IIdentity const*& identity) override;
  using icore::internal::IObjectInternal::iSetIdentity;

  // Turns a new object into a proxy for `identity`, which it takes ownership of.
  void becomeProxy(icore::IIdentity const*& identity);

 protected:
  IdentifiedObject();

 private:
  std::unique_ptr<icore::IIdentity const> identity_;
};

class Note;
class Shape;

class Stencil : public IdentifiedObject {
 public:
  Stencil();
  // Deletes the contained shapes and note.
  ~Stencil() override;

  IUString const& getName() const;
  void setName(IUString name);
  // The contained shapes; the stencil owns them.
  IVector<icore::IObject*>& getShapes();
  // Takes ownership of `shape`.
  void addShape(Shape* shape);
  Note* getNote();
  // Takes ownership of `note`; the note it replaces is detached and belongs to the caller.
  void setNote(Note* note);
  // Nested stencils; the stencil owns them.
  IVector<icore::IObject*>& getParts();

  void const* iGet(icore::IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(icore::IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(icore::IProperty const& property) override;

 private:
  IUString name_;
  IVector<icore::IObject*> shapes_;
  Note* note_ = nullptr;
  IVector<icore::IObject*> parts_;
};

class Shape : public IdentifiedObject {
 public:
  Shape();
  ~Shape() override;

  IUString const& getName() const;
  void setName(IUString name);
  std::int32_t getSides() const;
  void setSides(std::int32_t sides);
  IBOOLEAN isFilled() const;
  void setFilled(IBOOLEAN filled);
  icore::IEnumerationLiteral* getOutline() const;
  void setOutline(icore::IEnumerationLiteral* outline);
  // The stencil that contains this shape, or null.
  Stencil* getStencil() const;

  void const* iGet(icore::IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(icore::IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(icore::IProperty const& property) override;

 protected:
  // Dispatch on the ids Shape declares, without the access checks, for subclasses.
  void const* getShapeValue(icore::IProperty const& property) const;
  void setShapeValue(icore::IProperty const& property, void* value);

 private:
  IUString name_;
  std::int32_t sides_ = 0;
  IBOOLEAN filled_ = IFALSE;
  icore::IEnumerationLiteral* outline_ = nullptr;
};

class Circle : public Shape {
 public:
  Circle();
  ~Circle() override;

  std::int32_t getRadius() const;
  void setRadius(std::int32_t radius);

  void const* iGet(icore::IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(icore::IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;

 private:
  std::int32_t radius_ = 0;
};

class Note : public icore::internal::IObjectInternal {
 public:
  Note();
  ~Note() override;

  IUString const& getText() const;
  void setText(IUString text);

  void const* iGet(icore::IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(icore::IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(icore::IProperty const& property) override;

 private:
  IUString text_;
};

class Drawing : public IdentifiedObject {
 public:
  Drawing();
  ~Drawing() override;

  IUString const& getTitle() const;
  void setTitle(IUString title);
  // Shapes the drawing refers to; it does not own them.
  IVector<icore::IObject*>& getUses();
  icore::IObject* getBackground() const;
  void setBackground(icore::IObject* shape);

  void const* iGet(icore::IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(icore::IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(icore::IProperty const& property) override;

 private:
  IUString title_;
  IVector<icore::IObject*> uses_;
  icore::IObject* background_ = nullptr;
};

}  // namespace com::example::test::shapes
