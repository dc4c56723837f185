#pragma once

#include <map>
#include <string>

#include "automation/com_module.h"
#include "services/fabrica.h"

namespace zuvi {

/// Makes host objects with a plain create call by programmatic name.
class FabricaCom final : public FabricaServicios {
 public:
  explicit FabricaCom(ComModule& module) : module_(module) {}
  ObjectPtr Crea(std::string_view prog_id) override;

 private:
  ComModule& module_;
  std::map<std::string, CLSID, std::less<>> clsids_;  // names found once; the registry is slow
};

}  // namespace zuvi
