// Host objects reached by name: whatever object the host hands over is used as a service if it is one of
// ours, and through an adapter that calls its members by name if it is not.
#pragma once

#include <memory>

#include "base/members.h"
#include "base/object.h"

namespace zuvi {

/// The object as a service of type T (a class of this folder), null for a null object.
template <class T>
std::shared_ptr<T> ComoOpcional(const ObjectPtr& object);

/// The object as a service of type T. Throws HostError (ObjectNotSet) for a null object.
template <class T>
std::shared_ptr<T> Como(const ObjectPtr& object) {
  if (!object) throw HostError(ErrorNumber::ObjectNotSet);
  return ComoOpcional<T>(object);
}

/// Services as arguments and properties of published members; Empty and Nothing are the null reference.
template <class T>
requires std::is_base_of_v<Object, T> &&(!std::is_same_v<T, Object>)struct Conversion<std::shared_ptr<T>> {
  static std::shared_ptr<T> From(const Value& v) { return ComoOpcional<T>(Conversion<ObjectPtr>::From(v)); }
};

}  // namespace zuvi
