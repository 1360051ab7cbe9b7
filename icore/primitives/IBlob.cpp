#include "icore/primitives/IBlob.h"

#include <cstring>

namespace com::veltrana::qvx::icore::primitives {

IBlob::IBlob() = default;

IBlob::~IBlob() = default;

unsigned int IBlob::getValue(char const*& data) const {
  checkNotProxy();
  data = value_.get();
  return length_;
}

void IBlob::setValue(char const* const data, unsigned int length) {
  checkNotProxy();
  if (data == nullptr) {
    value_.reset();
    return;
  }
  // Copied before the old buffer goes, so a blob may be set from its own bytes.
  std::unique_ptr<char[]> copy(new char[length]);
  if (length > 0) std::memcpy(copy.get(), data, length);
  value_ = std::move(copy);
  length_ = length;
}

void const* IBlob::reflectiveValue(unsigned int* length) const {
  char const* data = nullptr;
  const unsigned int count = getValue(data);
  if (length != nullptr) *length = count;
  return data;
}

void IBlob::assignReflective(void* value, unsigned int length) { setValue(static_cast<char const*>(value), length); }

}  // namespace com::veltrana::qvx::icore::primitives
