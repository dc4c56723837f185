// shifts/: the catalogue of work shifts with the dated schedule (frmTurnos) and the editor of one shift with
// its employees (frmTurno), and with them everything that writes `turnos` and `turnoempleado`.
#pragma once

#include <memory>
#include <string>

#include "toolkit/buttons.h"
#include "toolkit/combo_box.h"
#include "toolkit/dates.h"
#include "toolkit/indicators.h"
#include "toolkit/list_view.h"
#include "windows/ventana_modulo.h"

namespace zuvi {

/// The shift catalogue: list of shifts, and for the selected one the schedule of the calendar's date.
class frmTurnos final : public VentanaModulo {  // NOLINT: the window's published name
 public:
  explicit frmTurnos(Modulo& modulo);

  const MemberTable* Members() const override;

  void Form_Load() override;
  void Form_Unload(CancelEvent& event) override;

 private:
  ListView& Turnos() const { return (*lv)(0); }
  ListView& Horarios() const { return (*lv)(1); }

  void CreaControles();
  void LLenaTurnos();
  void LLenaHorarios();
  void cmdTurnos_Click();
  void cmdModificar_Click();
  void cmdEliminar_Click();
  void Command1_Click();
  void MonthView1_DateClick();
  /// Opens the editor and waits, and lists anew as soon as that is closed; `turno` is the key of the shift to
  /// modify.
  void EditaTurno(const char* modo, const std::string& turno);
  /// Key of the selected shift, as it is stored. Only with a selection.
  std::string TurnoSeleccionado() const;

  std::shared_ptr<ControlArray<ListView>> lv;
  std::shared_ptr<Button> cmdTurnos, cmdModificar, cmdEliminar, Command1;
  std::shared_ptr<Label> Label1;
  std::shared_ptr<ComboBox> Combo1;
  std::shared_ptr<MonthView> MonthView1;
  std::shared_ptr<ProgressBar> ProgressBar1;
  std::shared_ptr<AutoResizer> AutoResizer1;
};

}  // namespace zuvi
