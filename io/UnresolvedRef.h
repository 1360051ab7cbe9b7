// A reference met in an XML document whose target is set once the whole document has
// been read: the owning object, its property, the target's id as written, and, for an
// item of a collection, the position it holds there (its slot is reserved with a null
// so that items keep the document's order).
#pragma once

#include <cstddef>
#include <string_view>

namespace com::veltrana::qvx::icore {
class IObject;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io {

struct UnresolvedRef {
  static constexpr std::size_t kAppend = static_cast<std::size_t>(-1);

  icore::IObject* owner;
  icore::IProperty const* property;
  std::u16string_view targetId;  // views storage of the reader that made the record
  // kAppend: append to the collection (or set a single value); otherwise the index of
  // the reserved slot.
  std::size_t position;
};

}  // namespace com::veltrana::qvx::io
