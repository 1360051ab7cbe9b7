#include "icore/primitives/IDate.h"

namespace com::veltrana::qvx::icore::primitives {

IDate::IDate() { value_.reset(new WkDate()); }

IDate::~IDate() = default;

WkDate const* IDate::getValue() const {
  checkNotProxy();
  return value_.get();
}

void IDate::setValue(WkDate const* date) {
  checkNotProxy();
  if (date != value_.get()) value_.reset(date);
}

void const* IDate::reflectiveValue(unsigned int*) const { return getValue(); }

void IDate::assignReflective(void* value, unsigned int) {
  auto const* date = static_cast<WkDate const*>(value);
  std::unique_ptr<WkDate const> copy(date != nullptr ? new WkDate(*date) : nullptr);
  setValue(copy.get());
  copy.release();  // now the object's
}

}  // namespace com::veltrana::qvx::icore::primitives
