#include "io/SerializationUtils.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "io/ResourceResolver.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::io {

using icore::qvxFormatMsg;
using icore::qvxGetMsg;

const char16_t* const SerializationUtils::OZL_NAMESPACE_URI = u"http://www.veltrana.com/qvx/OZL";

IBOOLEAN SerializationUtils::m_bValidate = ITRUE;

SerializationUtils::~SerializationUtils() = default;

IUString SerializationUtils::getURI(icore::IPackage const* package) {
  QVX_ASSERT(package != nullptr);
  return IUString::format(IUString("http://%s/%s"), package->getQualifiedName(),
                          getPackageMajorVersion(package->getVersion()));
}

IUString SerializationUtils::getPackageMajorVersion(IUString const& version) {
  const std::size_t firstDot = version.find(u'.');
  QVX_ASSERT(firstDot != IUString::npos);
  std::size_t dots = 0;
  for (std::size_t i = 0; i < version.length(); ++i) dots += version[i] == u'.' ? 1 : 0;
  if (dots != 3) return version.substr(0, firstDot);
  // Four-part versions lead with a product generation that is not the package's major.
  const std::size_t secondDot = version.find(u'.', firstDot + 1);
  return version.substr(firstDot + 1, secondDot - firstDot - 1);
}

IUString SerializationUtils::getPackageNameFromURI(IUString const& uri) {
  static const IUString scheme(u"http://");
  if (!uri.startsWith(scheme)) return IUString();
  const std::size_t lastSlash = uri.rfind(u'/');
  if (lastSlash == IUString::npos || lastSlash < scheme.length()) return IUString();
  return uri.substr(scheme.length(), lastSlash - scheme.length());
}

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

char* SerializationUtils::readSchemaFile(IUString& name, IUString& error) {
  const IUString directory = ResourceResolver::getResourcePath(name, error);
  if (directory.isEmpty()) return nullptr;
  const IUString path = directory + name;
  std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.toUtf8().c_str(), "r"));
  if (!file) {
    error = qvxFormatMsg(79012, name, std::strerror(errno));
    return nullptr;
  }
  if (std::fseek(file.get(), 0, SEEK_END) != 0) {
    error = qvxGetMsg(79013);
    return nullptr;
  }
  const long size = std::ftell(file.get());
  if (size < 0) {
    error = qvxGetMsg(79014);
    return nullptr;
  }
  std::rewind(file.get());
  std::unique_ptr<char[]> content(new char[static_cast<std::size_t>(size) + 1]());
  const std::size_t read = std::fread(content.get(), 1, static_cast<std::size_t>(size), file.get());
  if (read != static_cast<std::size_t>(size) && !std::feof(file.get())) {
    error = qvxGetMsg(79015);
    return nullptr;
  }
  name = path;
  return content.release();
}

void SerializationUtils::freePrimitiveDatatypeBuffer(icore::IDatatype const& type, void* buffer) {
  if (type.getTypeId() == icore::ICoreDatatypes::BLOB_TYPE_ID) {
    delete[] static_cast<char*>(buffer);
    return;
  }
  icore::ICoreDatatypes::deletePrimitive(type, buffer);
}

}  // namespace com::veltrana::qvx::io
