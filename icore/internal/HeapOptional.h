// Storage for a property value that is rarely set, for generated classes: one pointer
// while unset, the value in a heap block of its own once set. Users see the value
// through the class's typed accessors and iGet.
#pragma once

#include <memory>
#include <optional>
#include <utility>

namespace com::veltrana::qvx::icore::internal {

// An unset std::optional<IUString> takes 40 bytes in every object that has the
// property; this takes 8, and the value's block only where it is set. Not copyable,
// like the objects that hold it; an explicit copy goes through get().
template <typename T>
class HeapOptional {
 public:
  HeapOptional() = default;
  HeapOptional(const HeapOptional&) = delete;
  HeapOptional& operator=(const HeapOptional&) = delete;

  bool has_value() const { return value_ != nullptr; }
  // The value, or null when unset.
  T const* get() const { return value_.get(); }
  std::optional<T> toOptional() const { return has_value() ? std::optional<T>(*value_) : std::nullopt; }

  void reset() { value_.reset(); }
  // A set value is overwritten in its block; an unset one gets a block.
  void assign(T value) {
    if (value_ != nullptr) {
      *value_ = std::move(value);
    } else {
      value_ = std::make_unique<T>(std::move(value));
    }
  }
  void assign(std::optional<T> value) {
    if (value.has_value()) {
      assign(std::move(*value));
    } else {
      reset();
    }
  }

 private:
  std::unique_ptr<T> value_;
};

}  // namespace com::veltrana::qvx::icore::internal
