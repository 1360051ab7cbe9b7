// Static services that the XML writer and reader share: package namespace URIs and
// major versions, the process-wide validation switch, the format's own namespace URI,
// and reading schema files found through the resource resolver.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IDatatype;
class IPackage;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io {

class QVX_API SerializationUtils {
 public:
  // The namespace URI of the interchange format's own vocabulary (prefix "ozl"): the
  // value of the root's xmlns:ozl and the first word of its xsi:schemaLocation.
  static const char16_t* const OZL_NAMESPACE_URI;

  SerializationUtils() = default;
  SerializationUtils(const SerializationUtils&) = default;
  SerializationUtils& operator=(const SerializationUtils&) = default;
  virtual ~SerializationUtils();

  // Whether the XML reader validates against schemas; true until set otherwise. Set it
  // before reading starts: it is a plain process-wide variable.
  static IBOOLEAN getValidation() { return m_bValidate; }
  static void setValidation(IBOOLEAN validate) { m_bValidate = validate; }

  // "http://" + qualified name + "/" + major version.
  static IUString getURI(icore::IPackage const* package);
  // The major version: the text before the first dot, or for a four-part version the
  // text between the first and second dot. A version without a dot is a programming error.
  static IUString getPackageMajorVersion(IUString const& version);
  // The qualified package name a namespace URI names ("http://a.b/3" gives "a.b"), or an
  // empty string when the URI does not begin with "http://" or has no "/" after it.
  static IUString getPackageNameFromURI(IUString const& uri);

  // The whole resource file `name` as a zero-terminated buffer that the caller frees
  // with delete[], or null with a message in `error`. On success `name` becomes the
  // full path that was read.
  static char* readSchemaFile(IUString& name, IUString& error);

  // Releases a value buffer that ICoreDatatypes::primitiveFromString made for `type`.
  static void freePrimitiveDatatypeBuffer(icore::IDatatype const& type, void* buffer);

 private:
  static IBOOLEAN m_bValidate;
};

}  // namespace com::veltrana::qvx::io
