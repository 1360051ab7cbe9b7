#include "platform/WkLocale.h"

#include "platform/QvxAssert.h"
#include "platform/WkUString.h"

WkLocale::WkLocale(const IUString& name) : name_(name), isValid_(name == IUString(kUtf8LocaleName)) {}

void WkLocale::checkValid() const {
  QVX_ASSERT(isValid_ && "WkLocale: unsupported locale name");
}

std::size_t WkLocale::getUtf8Size(const char16_t* text, std::size_t length) const {
  checkValid();
  return WkUString::utf8Length(text, length);
}

std::size_t WkLocale::toUtf8(const char16_t* text, std::size_t length, char* out, std::size_t outCapacity) const {
  checkValid();
  return WkUString::writeUtf16AsUtf8(text, length, out, outCapacity);
}

IUString WkLocale::fromUtf8(const char* text, std::size_t length) const {
  checkValid();
  return IUString(text, length);
}
