#include "io/ResourceResolver.h"

#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "icore/QVXMsgCatalog.h"
#include "platform/WkSystem.h"

namespace com::veltrana::qvx::io {

using icore::qvxFormatMsg;

ResourceResolver::Resolver ResourceResolver::m_getQVXResourcePath = nullptr;

ResourceResolver::~ResourceResolver() = default;

namespace {

const IUString kSlash(u"/");

// A resource is a readable regular file: a directory opens but cannot be read.
bool isReadableFile(IUString const& path) {
  const std::string systemPath = path.toUtf8();
  struct stat status {};
  return ::stat(systemPath.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(systemPath.c_str(), R_OK) == 0;
}

IUString withTrailingSlash(IUString directory) {
  if (!directory.endsWith(kSlash)) directory += u'/';
  return directory;
}

void appendDirectories(IUString const& list, std::vector<IUString>& directories) {
  std::size_t start = 0;
  while (start <= list.length()) {
    std::size_t end = list.find(u';', start);
    if (end == IUString::npos) end = list.length();
    if (end > start) directories.push_back(withTrailingSlash(list.substr(start, end - start)));
    start = end + 1;
  }
}

}  // namespace

std::vector<IUString> ResourceResolver::getResourceDirList(IUString& searchedSetting) {
  std::vector<IUString> directories;
  for (const char16_t* variable : {u"QVX_CPP_RESOURCE_PATH", u"VELTRANA_RESOURCES"}) {
    const IUString value = wkGetEnv(variable);
    if (value.isEmpty()) continue;
    searchedSetting = IUString(variable) + IUString(u"=") + value;
    appendDirectories(value, directories);
    break;
  }
  const IUString home = wkGetEnv(u"VELTRANA_HOME");
  if (!home.isEmpty()) directories.push_back(withTrailingSlash(home + IUString("/plugins/dynamic")));
  return directories;
}

IUString ResourceResolver::getResourcePath(IUString const& name, IUString& error) {
  // Names can come from documents; one with a NUL unit would name another path once
  // handed to the system, so it names no resource.
  if (name.find(u'\0') != IUString::npos) {
    error = qvxFormatMsg(76004, name);
    return IUString();
  }
  if (isReadableFile(name)) return IUString("./");
  IUString directory;
  IUString searchedSetting;
  if (m_getQVXResourcePath != nullptr) {
    directory = m_getQVXResourcePath(name);
    if (!directory.isEmpty()) directory = withTrailingSlash(directory);
  } else {
    for (IUString const& candidate : getResourceDirList(searchedSetting)) {
      if (!isReadableFile(candidate + name)) continue;
      directory = candidate;
      break;
    }
  }
  if (directory.isEmpty()) {
    error = qvxFormatMsg(76004, name);
    if (!searchedSetting.isEmpty()) {
      const std::size_t equals = searchedSetting.find(u'=');
      error += u' ';
      error += qvxFormatMsg(76006, searchedSetting.substr(0, equals), searchedSetting.substr(equals + 1));
    }
  }
  return directory;
}

}  // namespace com::veltrana::qvx::io
