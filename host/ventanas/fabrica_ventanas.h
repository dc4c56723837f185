#pragma once

#include <memory>

#include "host/services/fabrica_anfitrion.h"
#include "host/services/ventanas_host.h"
#include "host/ventanas/frm_master.h"

namespace zuvi::host {

/// The catalogue lookup of a station with windows.
class BuscaCatalogoVentana final : public BuscaCatalogoHost {
 public:
  explicit BuscaCatalogoVentana(const Escena& escena)
      : BuscaCatalogoHost(escena.anfitrion), escena_(escena) {}
  /// Throws HostError for an unknown catalogue or without a target box.
  void Muestra(const std::string& titulo) override;

 private:
  Escena escena_;
};

/// The numeric pad of a station with windows.
class CapturaNumericaVentana final : public CapturaNumericaHost {
 public:
  explicit CapturaNumericaVentana(const Escena& escena) : escena_(escena) {}
  void Muestra() override;

 private:
  Escena escena_;
};

/// Opens the host's main window, of which there is one at a time.
class Principal final : public Object {
 public:
  static constexpr const char* kProgId = "ZuviQuery.Principal";

  explicit Principal(const Escena& escena) : escena_(escena) {}
  /// Opens it, or brings it to the front; not when the user declines to have the database made ready. Throws
  /// what keeps it from opening, such as a database that cannot be reached.
  void Abre();
  bool Abierta() const { return escena_.anfitrion->VentanaPrincipal() != nullptr; }
  /// The window; null while it is not open.
  ObjectPtr Ventana() const { return escena_.anfitrion->VentanaPrincipal(); }

  const MemberTable* Members() const override;

 private:
  Escena escena_;
};

/// Makes the objects of a host with windows: the ones above, then those of the host without, then what
/// `otras` makes (the component).
class FabricaVentanas final : public FabricaServicios {
 public:
  FabricaVentanas(std::shared_ptr<Anfitrion> anfitrion, Desktop& escritorio, FabricaServicios& otras,
                  std::function<std::shared_ptr<void>()> retiene = {});
  FabricaVentanas(const FabricaVentanas&) = delete;
  FabricaVentanas& operator=(const FabricaVentanas&) = delete;
  ObjectPtr Crea(std::string_view prog_id) override;

 private:
  Escena escena_;
  FabricaAnfitrion sin_ventanas_;
  FabricaServicios& otras_;
};

}  // namespace zuvi::host
