#include "platform/WkLocale.h"

#include <utility>

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

void WkLocale::appendUtf8(std::string& out, const char16_t* text, std::size_t length) const {
  checkValid();
  WkUString::appendUtf16AsUtf8(out, text, length);
}

void WkLocale::appendUtf16(std::u16string& out, const char* text, std::size_t length) const {
  checkValid();
  WkUString::appendUtf8AsUtf16(out, text, length);
}

IUString WkLocale::fromUtf8(const char* text, std::size_t length) const {
  std::u16string units;
  appendUtf16(units, text, length);
  return IUString(std::move(units));
}
