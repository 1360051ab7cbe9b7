// Finding resource files (schemas, seed files) on disk. A host may register a resolver
// function that maps a resource name to the directory holding it.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::io {

class QVX_API ResourceResolver {
 public:
  typedef IUString (*Resolver)(IUString const& name);

  static void registerQVXResourceResolver(Resolver resolver) { m_getQVXResourcePath = resolver; }
  static Resolver getQVXResourceResolver() { return m_getQVXResourcePath; }

  ResourceResolver() = default;
  ResourceResolver(const ResourceResolver&) = default;
  ResourceResolver& operator=(const ResourceResolver&) = default;
  virtual ~ResourceResolver();

 private:
  static Resolver m_getQVXResourcePath;
};

}  // namespace com::veltrana::qvx::io
