// A host in memory: every service of the component's contract, played from a `Mundo` and called by name.
#pragma once

#include <string>

#include "services/fabrica.h"
#include "tests/support/mundo.h"

namespace zuvi::pruebas {

/// The environment that the component is bound to.
ObjectPtr AmbienteMemoria(Mundo& mundo, const std::string& nombre = "Ambiente");

/// A movement document: it values a movement as quantity times cost and leaves its number changed.
ObjectPtr DocumentoMemoria(Mundo& mundo);

class FabricaMemoria final : public FabricaServicios {
 public:
  explicit FabricaMemoria(Mundo& mundo) : mundo_(mundo) {}
  ObjectPtr Crea(std::string_view prog_id) override;

 private:
  Mundo& mundo_;
};

}  // namespace zuvi::pruebas
