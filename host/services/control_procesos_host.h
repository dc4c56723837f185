#pragma once

#include "base/members.h"
#include "host/anfitrion/anfitrion.h"

namespace zuvi::host {

/// Process control: runs whatever is attached to a key. The starting answer is the key's veto in table
/// `procesos`; a hook may change it. A window of the order editor is told of a veto, too, by its member
/// `Rechazado`; without one this host's own process of that key runs.
class ControlProcesosHost final : public ControlProcesos {
 public:
  explicit ControlProcesosHost(std::shared_ptr<Anfitrion> anfitrion) : anfitrion_(std::move(anfitrion)) {}

  void IniciaProceso(PeticionProceso& peticion) override;
  /// The answer was given by `IniciaProceso`; it stays.
  void ConsultaProceso(bool& bandera) override;
  void CierraProceso(std::int32_t numero) override;
  /// "ORDENP" writes the page of an order into the user's folder for them and shows it.
  void ImprimeReporte(const std::string& clave, std::int32_t op, const std::shared_ptr<Ambiente>& ambiente,
                      const ObjectPtr& ventana) override;

  /// Attaches an object to a key: its method `Ejecuta(objeto, ambiente)`, or without one its default member,
  /// is called when the process starts, and the result true is a veto. Nothing detaches.
  void PonGancho(const std::string& clave, const ObjectPtr& objeto);

  const MemberTable* Members() const override;

 private:
  void IniciaConOnce(Value& clave, Value& objeto, Value& ambiente, Value& dato, Value& objeto2,
                     Value& bandera, Value& numero, Value& texto, Value& nulo, Value& texto2, Value& objeto3);

  std::shared_ptr<Anfitrion> anfitrion_;
};

}  // namespace zuvi::host
