#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "host/ventanas/ventana_host.h"

namespace zuvi::host {

/// The numeric pad: a display and keys for mouse or finger; the keyboard works as well. Shown modally;
/// afterwards it tells the number.
class frmCaptura final : public VentanaHost {  // NOLINT: the window's published name
 public:
  /// `etiqueta` says what numbers are wanted (host/shop/filtros.h), `actual` is the text to begin with,
  /// selected.
  frmCaptura(const Escena& escena, const std::string& etiqueta, const std::string& actual);

  /// The number entered; none when the user walked away.
  std::optional<double> Numero() const { return numero_; }

  void Form_Load() override;

 private:
  void Teclea(char16_t tecla);
  void CambiaSigno();
  void Acepta();
  void Tecla(const char* caption, std::int32_t columna, std::int32_t renglon, const char* ayuda,
             std::function<void()> hace);

  std::optional<double> numero_;

  std::shared_ptr<TextBox> txtNumero;
  std::shared_ptr<ControlArray<Button>> cmdTecla;
  std::shared_ptr<Button> cmdAceptar, cmdCancelar;
};

}  // namespace zuvi::host
