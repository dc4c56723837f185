// fractions/: the fraction capture window, a thin front for the host's process "FRACCIONES".
#pragma once

#include <memory>
#include <string>

#include "toolkit/indicators.h"
#include "toolkit/text_box.h"
#include "windows/ventana_modulo.h"

namespace zuvi {

/// Captures codes: whatever is typed before Enter is handed to the host, which reads `Codigo`, sets `Estado`,
/// clears the field and shows what it wants in `wb`. The window itself writes nothing.
class frmFracciones final : public VentanaModulo {  // NOLINT: the window's published name
 public:
  explicit frmFracciones(Modulo& modulo);

  /// The code typed so far, without blanks around it; as it was before the key being pressed.
  const std::string& Codigo() const { return codigo_; }
  void PonCodigo(std::string codigo) { codigo_ = std::move(codigo); }
  /// What the window is doing, for the host to read and set.
  const std::string& Estado() const { return estado_; }
  void PonEstado(std::string estado) { estado_ = std::move(estado); }

  const MemberTable* Members() const override;

  void Form_Load() override;
  void Form_Paint() override;

 private:
  void txtFields_KeyDown(const KeyEvent& event);

  std::string codigo_, estado_;
  std::shared_ptr<ControlArray<TextBox>> txtFields;
  std::shared_ptr<WebBrowser> wb;
  std::shared_ptr<AutoResizer> AutoResizer1;
};

}  // namespace zuvi
