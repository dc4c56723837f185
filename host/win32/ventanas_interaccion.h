// host/win32/: the reference host on Windows: its windows, the objects of ZuviHost.dll and the program
// Zuvi.exe.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "host/interaccion.h"
#include "host/win32/opciones_windows.h"

namespace zuvi::host {

class VentanaTrabajo;

/// Talks to the user through windows: message boxes, a progress window with a "Cancelar" button, and, for
/// work that shows no progress of its own and goes on for seconds, a small window that can end it.
class VentanasInteraccion final : public Interaccion {
 public:
  explicit VentanasInteraccion(Impresion impresion);
  ~VentanasInteraccion() override;

  void Mensaje(const std::string& texto, EstiloMensaje estilo) override;
  bool Pregunta(const std::string& texto) override;
  std::unique_ptr<Progreso> AbreProgreso(std::int32_t total, const std::string& titulo,
                                         const std::string& animacion) override;
  void MuestraDocumento(const std::string& archivo) override;
  bool Cancelado() override;
  bool AtiendeVentanas() override;
  void NuevaOperacion() override { cancelado_ = false; }

 private:
  friend class ProgresoEnVentana;
  using Reloj = std::chrono::steady_clock;

  Impresion impresion_;
  std::unique_ptr<VentanaTrabajo> espera_;  // shown by ourselves when work takes long
  std::weak_ptr<VentanaTrabajo> progreso_;  // the one a progress object has open
  Reloj::time_point inicio_{};
  Reloj::time_point ultima_{};
  Reloj::time_point mostrada_{};
  bool cancelado_ = false;
};

}  // namespace zuvi::host
