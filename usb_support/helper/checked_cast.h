// The checked downcast of objects that a program has registered. Not installed.
#pragma once

#include <typeinfo>

namespace usb_support {

/// dynamic_cast<T&>(object): throws std::bad_cast when `object` is not a T. Nearly always it is a T
/// itself, which needs no search in the hierarchy of classes.
template <typename T, typename Base>
T& CheckedCast(Base& object) {
  return typeid(object) == typeid(T) ? static_cast<T&>(object) : dynamic_cast<T&>(object);
}

}  // namespace usb_support
