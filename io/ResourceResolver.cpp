#include "io/ResourceResolver.h"

namespace com::veltrana::qvx::io {

ResourceResolver::Resolver ResourceResolver::m_getQVXResourcePath = nullptr;

ResourceResolver::~ResourceResolver() = default;

}  // namespace com::veltrana::qvx::io
