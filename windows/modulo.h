#pragma once

#include <functional>
#include <memory>

#include "services/acceso_datos.h"
#include "services/control_procesos.h"
#include "services/fabrica.h"
#include "toolkit/desktop.h"

namespace zuvi {

/// The production module at work in one apartment: what its class and its windows share. That is how host
/// objects are made, the screen, and the two module-wide host objects, which are created on first use and
/// kept until `Suelta`. (The DLL that it is loaded from is ComServer's.)
class Modulo {
 public:
  /// `stack_nearly_spent` tells whether the calling thread should not recurse any further.
  Modulo(FabricaServicios& fabrica, Desktop& desktop, std::function<bool()> stack_nearly_spent)
      : fabrica_(fabrica), desktop_(desktop), stack_nearly_spent_(std::move(stack_nearly_spent)) {}

  FabricaServicios& Fabrica() { return fabrica_; }
  Desktop& Escritorio() { return desktop_; }
  /// The module-wide host objects. Both throw HostError when the host has none to give.
  AccesoDatos& Datos() {
    if (!datos_) datos_ = fabrica_.Nuevo<AccesoDatos>();
    return *datos_;
  }
  ControlProcesos& Procesos() {
    if (!procesos_) procesos_ = fabrica_.Nuevo<ControlProcesos>();
    return *procesos_;
  }
  /// What a window holds as long as it lives, so that it can go on working when nobody else needs the
  /// component any more; null where windows need nothing.
  std::shared_ptr<void> Retiene() const { return retiene_ ? retiene_() : nullptr; }
  void PonRetencion(std::function<std::shared_ptr<void>()> retiene) { retiene_ = std::move(retiene); }
  /// Throws StackSpent when the stack is nearly used up.
  void ExigePila() const {
    if (stack_nearly_spent_()) throw StackSpent();
  }
  /// Lets the module-wide host objects go; the next use creates them anew.
  void Suelta() {
    datos_.reset();
    procesos_.reset();
  }

 private:
  FabricaServicios& fabrica_;
  Desktop& desktop_;
  std::function<bool()> stack_nearly_spent_;
  std::function<std::shared_ptr<void>()> retiene_;
  std::shared_ptr<AccesoDatos> datos_;
  std::shared_ptr<ControlProcesos> procesos_;
};

}  // namespace zuvi
