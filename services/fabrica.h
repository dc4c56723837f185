#pragma once

#include <memory>
#include <string_view>

#include "base/object.h"
#include "services/by_name.h"

namespace zuvi {

/// The one place where host objects are created.
class FabricaServicios {
 public:
  virtual ~FabricaServicios() = default;
  /// A new object of a class, by its programmatic name. Throws HostError (CannotCreateObject); never null.
  virtual ObjectPtr Crea(std::string_view prog_id) = 0;

  /// A new service of type T.
  template <class T>
  std::shared_ptr<T> Nuevo() {
    return Como<T>(Crea(T::kProgId));
  }
};

}  // namespace zuvi
