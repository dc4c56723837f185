#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "host/anfitrion/interaccion.h"
#include "host/win32/opciones_windows.h"
#include "host/win32/vigia_trabajo.h"
#include "toolkit/win32/win32_desktop.h"

namespace zuvi::host {

class VentanaTrabajo;

/// Talks to the user through windows: message boxes, a progress window with a "Cancelar" button, and, for
/// work that shows no progress of its own and goes on for seconds, a small window that can end it. Work that
/// brings up one message box after the other is asked about.
class VentanasInteraccion final : public Interaccion {
 public:
  VentanasInteraccion(Impresion impresion, Win32Desktop& escritorio);
  ~VentanasInteraccion() override;

  void Mensaje(const std::string& texto, EstiloMensaje estilo) override;
  bool Pregunta(const std::string& texto) override;
  std::unique_ptr<Progreso> AbreProgreso(std::int32_t total, const std::string& titulo,
                                         const std::string& animacion) override;
  void MuestraDocumento(const std::string& archivo,
                        const std::function<void(const std::string&)>& dice) override;
  bool Cancelado() override;
  bool AtiendeVentanas() override;
  void NuevaOperacion() override { cancelado_ = false; }

 private:
  friend class ProgresoEnVentana;

  int Caja(const std::string& texto, unsigned estilo);
  /// A job that goes on behind one box after the other: whether it is to end.
  bool PreguntaSiTermina();
  bool AtiendeEspera(std::chrono::milliseconds lleva);
  void AlTerminarTrabajo();

  Impresion impresion_;
  Win32Desktop& escritorio_;
  VigiaTrabajo vigia_{[this] { AlTerminarTrabajo(); }};
  std::shared_ptr<VentanaTrabajo> espera_;  // shown by ourselves when work takes long
  std::weak_ptr<VentanaTrabajo> progreso_;  // the one a progress object has open
  bool cancelado_ = false;
  bool dicho_que_no_imprime_ = false;
};

}  // namespace zuvi::host
