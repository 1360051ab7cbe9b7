// The package "com.veltrana.qvx.icore.primitives": the eleven boxed primitive classes
// (IBlob ... IString), each with one property "value" of the matching core data type.
// Boxed primitives let a bare value stand wherever a model object is expected. The
// package is built once, on the first iGetInstance(), from the table in its source.
#pragma once

#include "icore/IPackage.h"

namespace com::veltrana::qvx::icore::primitives {

class QVX_API PrimitivesIPackage : public IPackage {
 public:
  // Class ids within the package, in creation order.
  static constexpr int kIBlobClassId = 0;
  static constexpr int kIBooleanClassId = 1;
  static constexpr int kIByteClassId = 2;
  static constexpr int kICharacterClassId = 3;
  static constexpr int kIDateClassId = 4;
  static constexpr int kIDoubleClassId = 5;
  static constexpr int kIFloatClassId = 6;
  static constexpr int kIIntegerClassId = 7;
  static constexpr int kILongClassId = 8;
  static constexpr int kIShortClassId = 9;
  static constexpr int kIStringClassId = 10;
  static constexpr int kClassCount = 11;

  // The package, built on the first call (the core package is built first). Returns
  // null while the package is being built on this thread; other threads wait until
  // it is complete.
  static PrimitivesIPackage* iGetInstance();
  static IUString const& getIName();
  static IUString const& getIPrefix();

  IClass* getIBlobIClass() const { return classes_[kIBlobClassId]; }
  IClass* getIBooleanIClass() const { return classes_[kIBooleanClassId]; }
  IClass* getIByteIClass() const { return classes_[kIByteClassId]; }
  IClass* getICharacterIClass() const { return classes_[kICharacterClassId]; }
  IClass* getIDateIClass() const { return classes_[kIDateClassId]; }
  IClass* getIDoubleIClass() const { return classes_[kIDoubleClassId]; }
  IClass* getIFloatIClass() const { return classes_[kIFloatClassId]; }
  IClass* getIIntegerIClass() const { return classes_[kIIntegerClassId]; }
  IClass* getILongIClass() const { return classes_[kILongClassId]; }
  IClass* getIShortIClass() const { return classes_[kIShortClassId]; }
  IClass* getIStringIClass() const { return classes_[kIStringClassId]; }
  // The class with this class id (0 to 10), or null for any other id.
  IClass* getPrimitiveIClass(int classId) const;

 private:
  PrimitivesIPackage();
  ~PrimitivesIPackage() override;
  static PrimitivesIPackage* init();

  void createPackageContents();
  void initializePackageContents();

  IClass* classes_[kClassCount] = {};
};

}  // namespace com::veltrana::qvx::icore::primitives
