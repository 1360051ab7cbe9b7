// Finding resource files (schemas, seed files) on disk: in the current directory, then
// through a resolver function the host registers, or else in the directories that the
// environment names (QVX_CPP_RESOURCE_PATH, else VELTRANA_RESOURCES, each a list
// separated by ";", then VELTRANA_HOME with "/plugins/dynamic" appended).
#pragma once

#include <vector>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::io {

class QVX_API ResourceResolver {
 public:
  typedef IUString (*Resolver)(IUString const& name);

  // The resolver is a plain process-wide variable: register it before reading starts.
  static void registerQVXResourceResolver(Resolver resolver) { m_getQVXResourcePath = resolver; }
  static Resolver getQVXResourceResolver() { return m_getQVXResourcePath; }

  // The directory, ending in "/", that holds the resource `name`, or an empty string
  // with messages 76004 (and 76006 naming the searched setting) in `error`.
  static IUString getResourcePath(IUString const& name, IUString& error);

  ResourceResolver() = default;
  ResourceResolver(const ResourceResolver&) = default;
  ResourceResolver& operator=(const ResourceResolver&) = default;
  virtual ~ResourceResolver();

 private:
  // The directories to search, each ending in "/"; `searchedSetting` receives
  // "VARIABLE=value" of the list variable that was used, for error messages.
  static std::vector<IUString> getResourceDirList(IUString& searchedSetting);

  static Resolver m_getQVXResourcePath;
};

}  // namespace com::veltrana::qvx::io
