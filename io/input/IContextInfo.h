// An entry of the object reader's stack: an object being read (Context) or a
// collection being filled (ContextList). The reader continues with the top entry until
// it is complete, then pops it.
#pragma once

#include <variant>

#include "io/input/Context.h"
#include "io/input/ContextList.h"

namespace com::veltrana::qvx::io::input {

class IContextInfo {
 public:
  explicit IContextInfo(Context context) : entry_(context) {}
  explicit IContextInfo(ContextList list) : entry_(list) {}

  bool isComplete() const {
    return std::visit([](auto const& entry) { return entry.isComplete(); }, entry_);
  }
  // Null when the entry is of the other kind.
  Context* asContext() { return std::get_if<Context>(&entry_); }
  ContextList* asContextList() { return std::get_if<ContextList>(&entry_); }

 private:
  std::variant<Context, ContextList> entry_;
};

}  // namespace com::veltrana::qvx::io::input
