#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/ventanas/ventana_host.h"
#include "services/late.h"

namespace zuvi::host {

/// Assembles kits and takes them apart: article, warehouse, quantity. It stays open, so that one thing can be
/// done after the other.
class frmKit final : public VentanaHost {  // NOLINT: the window's published name
 public:
  /// `componente` outlives the window.
  frmKit(const Escena& escena, Late& componente);

  void Form_Load() override;
  void Form_KeyDown(std::int16_t& key, std::int16_t shift) override;

 private:
  /// What was entered, checked; nothing when something is wrong, which the user has been told.
  struct Entrada {
    std::string articulo;
    std::int32_t almacen = 0;
    double cantidad = 0;
  };
  std::optional<Entrada> Lee();
  void Rechaza(TextBox& caja, const std::string& texto);
  void Ensambla();
  void Desensambla();
  /// Runs one of the two, given as a call on the component, and tells what came of it.
  void Corre(const Entrada& entrada, const char* hecho, const std::function<void()>& llamada);
  void Ayuda();
  void DescribeArticulo();
  void DescribeAlmacen();

  Late& componente_;

  std::shared_ptr<TextBox> txtArticulo, txtAlmacen, txtCantidad;
  std::shared_ptr<Label> lblArticulo, lblAlmacen, lblResultado;
  std::shared_ptr<Button> cmdEnsamblar, cmdDesensamblar, cmdCerrar;
};

}  // namespace zuvi::host
