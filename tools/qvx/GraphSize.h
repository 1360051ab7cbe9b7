// The number of objects in a graph: its top-level objects and everything they contain,
// walked with an explicit stack.
#pragma once
#include <cstddef>

#include "platform/IVector.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace qvx_tool {

class GraphSize {
 public:
  static std::size_t count(IVector<com::veltrana::qvx::icore::IObject*> const& roots);
};

}  // namespace qvx_tool
