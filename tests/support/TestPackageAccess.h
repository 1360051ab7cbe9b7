// Reflective access to objects of the test package "com.example.test.shapes" in programs
// that load its library (TestPackageLoader.h) instead of linking it: objects are made
// by class name and their properties read and written by name through the facade.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/WkDate.h"
#include "tests/support/TestPackageLoader.h"

namespace shapes_test {

// The property `name` of the object's class.
inline icore::IProperty const& propertyOf(icore::IObject* object, const char* name) {
  icore::IProperty const* property = infoOf(object)->getIClass()->getProperty(IUString(name));
  if (property == nullptr) throw std::logic_error(std::string("no property ") + name);
  return *property;
}

// Sets a primitive value; objects and literals go through refer().
template <typename T>
void put(icore::IObject* object, const char* name, T value) {
  static_assert(!std::is_pointer_v<T>, "pointers pass themselves: use refer()");
  infoOf(object)->set(propertyOf(object, name), &value, IFALSE);
}

inline void refer(icore::IObject* object, const char* name, void* target) {
  infoOf(object)->set(propertyOf(object, name), target, IFALSE);
}

template <typename T>
T const& valueOf(icore::IObject* object, const char* name) {
  return *static_cast<T const*>(infoOf(object)->get(propertyOf(object, name), IFALSE));
}

// The value of a single-valued reference or containment.
inline icore::IObject* objectOf(icore::IObject* object, const char* name) {
  return static_cast<icore::IObject*>(const_cast<void*>(infoOf(object)->get(propertyOf(object, name), IFALSE)));
}

// The object's own collection of a multi-valued property.
template <typename T>
IVector<T*>& itemsOf(icore::IObject* object, const char* name) {
  return *const_cast<IVector<T*>*>(static_cast<IVector<T*> const*>(infoOf(object)->get(propertyOf(object, name), IFALSE)));
}

// A new object of the class `className`, with the "name" `name` when one is given. The
// caller owns it.
inline icore::IObject* make(const char* className, const char* name = nullptr) {
  icore::IObject* made = shapesClass(className)->create();
  if (name != nullptr) put(made, "name", IUString(name));
  return made;
}

// Appends `child` to the containment `name` of `owner` and sets its container, as a
// reader does. Returns `child`, which `owner` now owns.
inline icore::IObject* adopt(icore::IObject* owner, const char* name, icore::IObject* child) {
  itemsOf<icore::IObject>(owner, name).append(child);
  infoOf(child)->getAssociatedObject()->iSetContainer(infoOf(owner)->getAssociatedObject(), &propertyOf(owner, name));
  return child;
}

inline icore::IEnumerationLiteral* lineStyle(std::size_t ordinal) {
  return static_cast<icore::IEnumeration*>(loadShapesPackage()->getType(IUString("LineStyle")))->getLiterals()[ordinal];
}

inline WkDate lastOf2023(int nanoseconds) {
  WkDate date;
  date.setDate(2023, 12, 31);
  date.setTime(23, 59, 58, nanoseconds);
  return date;
}

// Gives a drawing a value other than the initial one in every primitive and enumeration
// property: count 5, ratio 0.1, data 01020304, style DOTTED, when 12/31/2023:23:59:58
// .123456789, flag true, initial Q, weight 2.5, big 2^40, small -7, octet z, tags "a"
// "b", styles DASHED, scores 1.25.
inline void fillValues(icore::IObject* drawing) {
  put(drawing, "count", 5);
  put(drawing, "ratio", 0.1);
  char bytes[] = {1, 2, 3, 4};
  infoOf(drawing)->set(propertyOf(drawing, "data"), bytes, sizeof bytes, IFALSE);
  refer(drawing, "style", lineStyle(2));
  put(drawing, "when", lastOf2023(123456789));
  put(drawing, "flag", ITRUE);
  put(drawing, "initial", u'Q');
  put(drawing, "weight", 2.5f);
  put(drawing, "big", std::int64_t{1} << 40);
  put(drawing, "small", std::int16_t{-7});
  put(drawing, "octet", 'z');
  itemsOf<IUString>(drawing, "tags").append(new IUString("a"));
  itemsOf<IUString>(drawing, "tags").append(new IUString("b"));
  itemsOf<icore::IEnumerationLiteral>(drawing, "styles").append(lineStyle(1));
  itemsOf<double>(drawing, "scores").append(new double(1.25));
}

}  // namespace shapes_test
