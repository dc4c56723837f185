#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/ventanas/ventana_host.h"
#include "services/late.h"
#include "toolkit/indicators.h"

namespace zuvi::host {

/// The host's main window: the list of orders, and every operation of the component by button and key. The
/// component is created by name when it is first needed.
class frmMaster final : public VentanaHost {  // NOLINT: the window's published name
 public:
  explicit frmMaster(const Escena& escena);

  /// Number of the selected order; 0 when none is.
  std::int32_t Orden() const;
  /// The list is read anew in a moment, once whoever asks for it has ended.
  void Actualiza();

  const MemberTable* Members() const override;
  void Form_Load() override;
  void Form_QueryUnload(CancelEvent& event, UnloadMode mode) override;
  void Form_Unload(CancelEvent& event) override;
  void Form_KeyDown(KeyEvent& event) override;

 private:
  /// One operation: its button and its key. `orden` ones need a selected order.
  struct Accion {
    const char* caption;
    std::int16_t tecla;
    bool orden;
    bool hueco;  // room above the button: a new group begins
    void (frmMaster::*hace)();
  };
  static std::span<const Accion> Acciones();

  // frm_master_layout.cpp
  void CreaControles();

  // frm_master.cpp
  void Lee();
  void Muestra();
  void HabilitaAcciones();
  void Haz(const Accion& accion);
  void Dice(const std::string& texto);

  // frm_master_acciones.cpp
  Late& Componente();
  /// Opens an editor; tells when none came up, which the component does not.
  void AbreEditor(const std::function<void(Late&)>& llamada);
  void Nueva();
  void Modifica();
  void Consulta();
  void Imprime();
  void Entrega();
  void Cancela();
  void Libera();
  void Kits();
  void Fracciones();
  void Turnos();
  void Refresca();
  void Sale();

  /// A row of the list, as read, and in which words the filter looks.
  struct Renglon {
    std::int32_t op = 0;
    bool pendiente = false, ocupada = false;
    std::vector<std::string> columnas;
    std::string texto;
  };
  std::vector<Renglon> renglones_;
  std::optional<Late> componente_;
  std::int32_t nueva_tras_ = 0;  // a new order was begun: one above this number is to be selected

  std::shared_ptr<TextBox> txtBuscar;
  std::shared_ptr<CheckBox> chkPendientes;
  std::shared_ptr<ListView> lv;
  std::shared_ptr<ControlArray<Button>> cmdAccion;
  std::shared_ptr<Label> lblEstado, lblCuenta;
  std::shared_ptr<Timer> Timer1;
};

}  // namespace zuvi::host
