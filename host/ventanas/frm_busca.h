#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/shop/catalogos.h"
#include "host/ventanas/ventana_host.h"

namespace zuvi::host {

/// The catalogue lookup: a search box over a list of keys and descriptions. Shown modally; afterwards it
/// tells what was chosen.
class frmBusca final : public VentanaHost {  // NOLINT: the window's published name
 public:
  /// Most rows shown at a time; a narrower search brings up the others.
  static constexpr std::int32_t kMaximo = 500;

  /// `filtro` is a condition on the rows; `actual` the key that is selected to begin with, when it is there.
  frmBusca(const Escena& escena, const Catalogo& catalogo, std::string filtro, std::string actual);

  /// The chosen key; none when the user walked away.
  const std::optional<std::string>& Elegida() const { return elegida_; }

  void Form_Load() override;

 private:
  void Busca(const std::string& preferida);
  void Acepta();

  const Catalogo& catalogo_;
  std::string filtro_, actual_;
  std::optional<std::string> elegida_;

  std::shared_ptr<TextBox> txtBuscar;
  std::shared_ptr<ListView> lv;
  std::shared_ptr<Label> lblNota;
  std::shared_ptr<Button> cmdAceptar, cmdCancelar;
};

}  // namespace zuvi::host
