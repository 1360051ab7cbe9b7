// The text of values in the XML interchange document: the escaping of strings, and
// the string forms of the primitive data types written straight into a UTF-8 buffer,
// without the IUString that ICoreDatatypes::primitiveToString allocates per value.
#pragma once

#include <string>
#include <string_view>

#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IDatatype;
}

namespace com::veltrana::qvx::io {

// The escaping works on the UTF-8 bytes of a string: letters A-Z a-z, digits and
// "-", ".", ":", "_" stay; the blank becomes "+"; every other byte becomes "%" and two
// upper-case hexadecimal digits; the empty string becomes "*". Escaped text thus holds
// no blank and no XML markup character, so escaped values can be joined by blanks.
class QVX_API XMLSerializerValues {
 public:
  XMLSerializerValues() = delete;

  // Appends the escaped UTF-8 form of `text`. Unpaired surrogates are converted as
  // WkUString converts them.
  static void appendEscaped(std::u16string_view text, std::string& out);
  static void appendEscaped(std::string_view utf8, std::string& out);

  // Appends the string form of the value behind `value`, exactly as
  // ICoreDatatypes::primitiveToString gives it, as UTF-8 (`length` is the byte count of
  // a blob). Strings and characters come out unescaped. Returns false, appending
  // nothing, when primitiveToString gives no text (a data type that is not primitive).
  static bool appendPrimitiveText(icore::IDatatype const& datatype, void const* value, unsigned int length,
                                  std::string& out);
};

}  // namespace com::veltrana::qvx::io
