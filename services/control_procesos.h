#pragma once

#include <memory>
#include <string>

#include "services/ambiente.h"

namespace zuvi {

/// The eleven in/out arguments of `ControlProcesos::IniciaProceso`, in their order and with their starting
/// values.
struct PeticionProceso {
  std::string clave;
  /// On whose behalf it runs; the host may replace it.
  ObjectPtr objeto;
  ObjectPtr ambiente;
  Value dato = "";
  ObjectPtr objeto2;
  /// Veto: goes in true; the host clears it to let the caller's own action go ahead.
  bool bandera = true;
  std::int32_t numero = 0;
  std::string texto;
  Value nulo = Null{};
  std::string texto2;
  ObjectPtr objeto3;
};

/// The host's process control: whatever it has attached to a process key.
class ControlProcesos : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.ControlProcesos";

  /// Runs whatever the host has attached to the key. Comes back with `objeto`, which the host may have
  /// replaced, and `bandera`; the other arguments are not read again. Throws HostError when the process
  /// fails.
  virtual void IniciaProceso(PeticionProceso& peticion) = 0;
  /// Updates the veto flag that `IniciaProceso` gave back: still true, the operation must not go ahead.
  virtual void ConsultaProceso(bool& bandera) = 0;
  /// Ends a process that was vetoed. The module always passes 0.
  virtual void CierraProceso(std::int32_t numero) = 0;
  /// Prints a report ("ORDENP") of the order with that number, for a window. Throws HostError for an unknown
  /// key or order.
  virtual void ImprimeReporte(const std::string& clave, std::int32_t op,
                              const std::shared_ptr<Ambiente>& ambiente, const ObjectPtr& ventana) = 0;
};

}  // namespace zuvi
