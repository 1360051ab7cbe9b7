// The twelve primitive data types of the core package (type ids 1000 to 1011) and the
// text forms of their values, which both serializers use:
//   IByte      "%d"                      IDouble  "%.15lg"; magnitudes in [1e-15, 1e-4)
//   IBlob      standard Base64                     in the fixed form of wkFtoaReformat
//   IBoolean   "true" for exactly 1,      IFloat   "%f"
//              else "false"               IInteger "%d"     ILong "%lld"   IShort "%d"
//   ICharacter the code unit ("" for 0)   IString  the text itself
//   IDate      "MM/DD/YYYY:HH24:MI:SS.ms" in UTC     IIdentity the qualified identity text
#pragma once

#include <cstddef>
#include <string>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IcoreIPackage;
class IDatatype;

class QVX_API ICoreDatatypes {
 public:
  static IDatatype* I_BYTE;
  static IDatatype* I_BLOB;
  static IDatatype* I_BOOLEAN;
  static IDatatype* I_CHARACTER;
  static IDatatype* I_DATE;
  static IDatatype* I_DOUBLE;
  static IDatatype* I_FLOAT;
  static IDatatype* I_INTEGER;
  static IDatatype* I_LONG;
  static IDatatype* I_SHORT;
  static IDatatype* I_STRING;
  static IDatatype* I_IDENTITY;

  static IVector<IDatatype*> const& getAllPrimitiveDatatypes();

  // The text of the value behind `value` (`length` bytes for a blob); the caller owns
  // the result. Null for a null value or a data type that is not a core primitive.
  static IUString* primitiveToString(IDatatype const& datatype, void const* value, unsigned int length);
  // The same text appended to a caller's buffer, as UTF-8 or UTF-16, so that a writer
  // that keeps one buffer allocates nothing per value (except blobs and dates, whose
  // formatters make temporaries). Returns false, appending nothing, where
  // primitiveToString gives null. An identity is its qualified string.
  static bool appendPrimitiveText(std::string& utf8Out, IDatatype const& datatype, void const* value,
                                  unsigned int length);
  static bool appendPrimitiveText(IUString& out, IDatatype const& datatype, void const* value, unsigned int length);
  // A newly allocated value parsed from `text` (for a blob, the byte count is written
  // to `length`); release it with deletePrimitive. Malformed numbers parse as far as
  // they are numbers, like strtol/strtod; "true" is recognised in any ASCII case.
  // A blob is a `new char[n]` buffer that its owner frees with delete[]. Base64 may
  // contain blanks and line breaks; text with no Base64 character gives an empty
  // non-null buffer, malformed Base64 gives null, both with length 0. Blob
  // conversion uses Xerces' Base64, so Xerces must be initialised. Null for an
  // identity (assertion failure) or a data type that is not a core primitive.
  static void* primitiveFromString(IDatatype const& datatype, IUString const& text, unsigned int* length);
  // Parses `length` code units into the caller's value, as primitiveFromString would
  // make it, without allocating (except for blobs): `valueOut` points to the data type's
  // value (char, IBOOLEAN, char16_t, WkDate, double, float, int32, int64, int16, or an
  // IUString, which is assigned and so reuses its capacity); for a blob to a std::string
  // that receives the bytes. False for malformed Base64 (the bytes are then empty), an
  // identity (assertion failure) or a data type that is not a core primitive.
  static bool parsePrimitiveText(IDatatype const& datatype, const char16_t* text, std::size_t length, void* valueOut);
  // Frees a value made by primitiveFromString. Blob and identity values are freed by
  // their owners, not here.
  static void deletePrimitive(IDatatype const& datatype, void* value);

  static constexpr int BYTE_TYPE_ID = 1000;
  static constexpr int BLOB_TYPE_ID = 1001;
  static constexpr int BOOLEAN_TYPE_ID = 1002;
  static constexpr int CHARACTER_TYPE_ID = 1003;
  static constexpr int DATE_TYPE_ID = 1004;
  static constexpr int DOUBLE_TYPE_ID = 1005;
  static constexpr int FLOAT_TYPE_ID = 1006;
  static constexpr int INTEGER_TYPE_ID = 1007;
  static constexpr int LONG_TYPE_ID = 1008;
  static constexpr int SHORT_TYPE_ID = 1009;
  static constexpr int STRING_TYPE_ID = 1010;
  static constexpr int IIDENTITY_TYPE_ID = 1011;

 private:
  friend class IcoreIPackage;
  // Asserts that the data types were built, ordering this thread after their builder.
  static void checkInitialised();
  static void initialize(IcoreIPackage* core);

  static IVector<IDatatype*>* m_pICorePrimitiveDataTypes;
  static IBOOLEAN m_bInitialised;
};

}  // namespace com::veltrana::qvx::icore
