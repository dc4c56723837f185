#pragma once

#include <memory>
#include <string>

#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/indicators.h"
#include "toolkit/list_view.h"
#include "windows/ventana_modulo.h"

namespace zuvi {

/// The editor of one shift: its hours and rest day, and which employees belong to it. Nothing is written
/// until
/// "&Aceptar".
class frmTurno final : public VentanaModulo {  // NOLINT: the window's published name
 public:
  explicit frmTurno(Modulo& modulo);

  /// "ALTA" or "MODIFICACION".
  const std::string& Modo() const { return modo_; }
  void PonModo(std::string modo) { modo_ = std::move(modo); }
  /// Key of the shift being modified, as it is stored.
  const std::string& Turno() const { return turno_; }
  void PonTurno(std::string turno) { turno_ = std::move(turno); }

  const MemberTable* Members() const override;

  void Form_Load() override;
  void Form_Unload(CancelEvent& event) override;

 private:
  // Indices of `cmbFields` and of `cmdButton`.
  enum : std::int16_t { kTurno, kEntrada, kComida, kSalida, kDescanso, kRegreso };
  enum : std::int16_t { kAceptar, kCancelar, kAgregaTodos, kAgrega, kQuita, kQuitaTodos };
  const std::string& Texto(std::int16_t campo) const { return (*cmbFields)(campo).Text(); }
  /// Employees outside of the shift, and those who belong to it.
  ListView& Disponibles() const { return (*lv)(0); }
  ListView& Miembros() const { return (*lv)(1); }

  void CreaControles();
  void CreaEmpleados();
  void Etiqueta(std::int16_t indice, const char* titulo, std::int32_t x, std::int32_t y, std::int32_t ancho);
  void cmdButton_Click(std::int16_t index);
  bool SalvaCambios();
  bool FaltaCampo();
  void PonFoco(Control& objControl);

  // frm_turno_empleados.cpp
  void LLenaEmpleados();
  void LLenaEmpleadosTurno();
  void LlenaEmpleadosEn(ListView& lista, const std::string& cuenta, const std::string& filas);
  void RemueveEnTurno();
  void Remueve(const std::string& cKey);
  void Remueve2(const std::string& cKey);
  void AgregaUsuario();
  void AgregaTodosLosUsuarios();
  void QuitarUsuario();
  void QuitaTodosLosUsuarios();
  /// Copies the selected item of one list into the other; its key, or "" when nothing was to be done.
  std::string MueveSeleccionado(ListView& de, ListView& a);
  static void MueveTodos(ListView& de, ListView& a);

  std::string modo_, turno_;
  std::shared_ptr<ControlArray<ComboBox>> cmbFields;
  std::shared_ptr<ControlArray<Button>> cmdButton;
  std::shared_ptr<ControlArray<Label>> lblTurno;
  std::shared_ptr<ControlArray<ListView>> lv;
  std::shared_ptr<ProgressBar> ProgressBar1;
  std::shared_ptr<AutoResizer> AutoResizer1;
};

}  // namespace zuvi
