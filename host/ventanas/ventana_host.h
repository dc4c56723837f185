// host/ventanas/: the reference host's own windows, written against the toolkit's model: the main window
// frmMaster, the catalogue lookup, the numeric pad and the kit window. They run without a screen in tests and
// natively in ZuviHost.dll; the component reaches them only as host services.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/error.h"
#include "host/anfitrion/anfitrion.h"
#include "services/fabrica.h"
#include "toolkit/buttons.h"
#include "toolkit/form.h"
#include "toolkit/list_view.h"
#include "toolkit/text_box.h"

namespace zuvi::host {

/// What all windows of one host share.
struct Escena {
  std::shared_ptr<Anfitrion> anfitrion;
  Desktop& escritorio;
  /// Makes the host's objects and the component's, by name.
  FabricaServicios& fabrica;
  /// What a window holds as long as it lives; may be empty.
  std::function<std::shared_ptr<void>()> retiene;
};

/// A place given in device-independent pixels.
inline constexpr Rect EnDips(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
  return {Dip(left), Dip(top), Dip(width), Dip(height)};
}

/// A window of the host. Its procedures trap their errors and show them as the host's own messages.
class VentanaHost : public Form {
 public:
  VentanaHost(const Escena& escena, const char* nombre);
  const MemberTable* Members() const override;

 protected:
  const Escena& LaEscena() const { return escena_; }
  Anfitrion& ElAnfitrion() const { return *escena_.anfitrion; }
  BaseDatos& Base() const { return *escena_.anfitrion->Base(); }
  /// Runs the body of a procedure; an error is shown and ends it. True when it ran to its end.
  template <class Body>
  bool Trata(Body&& body) noexcept {
    const auto yo = Keep();
    try {
      body();
      return true;
    } catch (...) {
      MuestraError(CurrentDescription());
      return false;
    }
  }

  // Building: a control at its place as designed, and how it follows the window's size.
  Label& Rotulo(std::string caption, const Rect& lugar, unsigned anclas = anchor::kTopLeft);
  /// `hace` runs on a click, as a procedure of its own.
  std::shared_ptr<Button> Boton(const char* nombre, std::string caption, const Rect& lugar, unsigned anclas,
                                std::function<void()> hace);
  std::shared_ptr<TextBox> CajaTexto(const char* nombre, const Rect& lugar,
                                     unsigned anclas = anchor::kTopLeft);

 private:
  void MuestraError(const std::string& descripcion) noexcept;

  Escena escena_;
  std::shared_ptr<ControlArray<Label>> Rotulos;
};

/// Ties a search box to its list: Up, Down and the page keys move the selection while the focus stays in the
/// box, and what is typed in the list goes to the box.
void EnlazaBusqueda(TextBox& caja, ListView& lista);
/// Lets only characters into a box that its tag admits (host/shop/filtros.h).
void FiltraPorEtiqueta(TextBox& caja);

}  // namespace zuvi::host
