// host/services/: the objects of the contract as this host offers them, one class each, with the members that
// scripts see.
#pragma once

#include <memory>
#include <string_view>

#include "host/anfitrion/anfitrion.h"
#include "services/fabrica.h"

namespace zuvi::host {

/// Makes the host's objects by programmatic name ("ZuviEnviroment.Ambiente", "ZuviQuery.AccesoDatos", …,
/// "ADODB.Recordset"). Every object publishes its members by name (base/members.h).
class FabricaAnfitrion final : public FabricaServicios {
 public:
  explicit FabricaAnfitrion(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}
  ObjectPtr Crea(std::string_view prog_id) override;

 private:
  std::shared_ptr<Anfitrion> anfitrion_;
};

}  // namespace zuvi::host
