#include "icore/ICoreDatatypes.h"

#include <cstdint>
#include <memory>

#include "icore/IDatatype.h"
#include "icore/IcoreIPackage.h"
#include "platform/QvxAssert.h"
#include "platform/WkDate.h"

namespace com::veltrana::qvx::icore {

IDatatype* ICoreDatatypes::I_BYTE = nullptr;
IDatatype* ICoreDatatypes::I_BLOB = nullptr;
IDatatype* ICoreDatatypes::I_BOOLEAN = nullptr;
IDatatype* ICoreDatatypes::I_CHARACTER = nullptr;
IDatatype* ICoreDatatypes::I_DATE = nullptr;
IDatatype* ICoreDatatypes::I_DOUBLE = nullptr;
IDatatype* ICoreDatatypes::I_FLOAT = nullptr;
IDatatype* ICoreDatatypes::I_INTEGER = nullptr;
IDatatype* ICoreDatatypes::I_LONG = nullptr;
IDatatype* ICoreDatatypes::I_SHORT = nullptr;
IDatatype* ICoreDatatypes::I_STRING = nullptr;
IDatatype* ICoreDatatypes::I_IDENTITY = nullptr;
IVector<IDatatype*>* ICoreDatatypes::m_pICorePrimitiveDataTypes = nullptr;
IBOOLEAN ICoreDatatypes::m_bInitialised = IFALSE;

void ICoreDatatypes::initialize(IcoreIPackage* core) {
  if (m_bInitialised) return;
  struct Row {
    IDatatype** slot;
    const char* name;
    int typeId;
  };
  const Row rows[] = {
      {&I_BYTE, "IByte", BYTE_TYPE_ID},           {&I_BLOB, "IBlob", BLOB_TYPE_ID},
      {&I_BOOLEAN, "IBoolean", BOOLEAN_TYPE_ID},  {&I_CHARACTER, "ICharacter", CHARACTER_TYPE_ID},
      {&I_DATE, "IDate", DATE_TYPE_ID},           {&I_DOUBLE, "IDouble", DOUBLE_TYPE_ID},
      {&I_FLOAT, "IFloat", FLOAT_TYPE_ID},        {&I_INTEGER, "IInteger", INTEGER_TYPE_ID},
      {&I_LONG, "ILong", LONG_TYPE_ID},           {&I_SHORT, "IShort", SHORT_TYPE_ID},
      {&I_STRING, "IString", STRING_TYPE_ID},     {&I_IDENTITY, "IIdentity", IIDENTITY_TYPE_ID},
  };
  m_pICorePrimitiveDataTypes = new IVector<IDatatype*>(12, 200, 1000);
  for (const Row& row : rows) {
    auto datatype = std::make_unique<IDatatype>();
    datatype->setName(row.name);
    datatype->setTypeId(row.typeId);
    datatype->setPackage(core);
    datatype->setPrimitive(ITRUE);
    *row.slot = datatype.get();
    m_pICorePrimitiveDataTypes->append(datatype.get());
    core->getTypes().append(datatype.release());  // the package owns its types
  }
  m_bInitialised = ITRUE;
}

IVector<IDatatype*> const& ICoreDatatypes::getAllPrimitiveDatatypes() {
  // Through the package singleton, not the plain flag: its acquire load orders this
  // thread after the thread that built the data types.
  IcoreIPackage::iGetInstance();
  QVX_ASSERT(m_bInitialised);
  return *m_pICorePrimitiveDataTypes;
}

void ICoreDatatypes::deletePrimitive(IDatatype const& datatype, void* value) {
  QVX_ASSERT(m_bInitialised);
  QVX_ASSERT(datatype.isPrimitive());
  switch (datatype.getTypeId()) {
    case STRING_TYPE_ID: delete static_cast<IUString*>(value); return;
    case DATE_TYPE_ID: delete static_cast<WkDate*>(value); return;
    case BYTE_TYPE_ID: delete static_cast<char*>(value); return;
    case BOOLEAN_TYPE_ID: delete static_cast<IBOOLEAN*>(value); return;
    case CHARACTER_TYPE_ID: delete static_cast<char16_t*>(value); return;
    case DOUBLE_TYPE_ID: delete static_cast<double*>(value); return;
    case FLOAT_TYPE_ID: delete static_cast<float*>(value); return;
    case INTEGER_TYPE_ID: delete static_cast<std::int32_t*>(value); return;
    case LONG_TYPE_ID: delete static_cast<std::int64_t*>(value); return;
    case SHORT_TYPE_ID: delete static_cast<std::int16_t*>(value); return;
    default: QVX_ASSERT_FAIL("blob and identity values are freed by their owners"); return;
  }
}

}  // namespace com::veltrana::qvx::icore
