// orders/: the production order editor, and with it everything that writes the tables `op` and `oppart`. One
// class, a file per concern: frm_op_layout.cpp (controls and places), frm_op.cpp (load, modes, closing),
// frm_op_guarda.cpp (saving), frm_op_partida.cpp (line entry), frm_op_botones.cpp (buttons, printing),
// frm_op_campos.cpp (header fields), frm_op_rejilla.cpp (editing in the grid).
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "toolkit/buttons.h"
#include "toolkit/dates.h"
#include "toolkit/flex_grid.h"
#include "toolkit/indicators.h"
#include "toolkit/multi_combo.h"
#include "toolkit/text_box.h"
#include "windows/ventana_modulo.h"

namespace zuvi {

/// The production order editor. Its opener sets the public members, then shows it; it belongs to itself until
/// it is closed. The order's row is marked busy while it is open for modification.
class frmOp final : public VentanaModulo {  // NOLINT: the window's published name
 public:
  explicit frmOp(Modulo& modulo);

  /// "ALTA", "MODIFICACION" or "CONSULTA".
  const std::string& Modo() const { return modo_; }
  void PonModo(std::string modo) { modo_ = std::move(modo); }
  /// Number of the order; 0 until a new one was saved.
  std::int32_t Op() const { return op_; }
  void PonOp(std::int32_t op) { op_ = op; }
  /// The caller that gets the focus back when the window closes; may be null.
  const ObjectPtr& Parent() const { return parent_; }
  void PonParent(ObjectPtr parent) { parent_ = std::move(parent); }
  /// The order's row of table `op`.
  ObjectPtr Registro() const { return registro_ ? registro_->Reference() : nullptr; }
  void PonRegistro(std::shared_ptr<Recordset> registro) { registro_ = std::move(registro); }
  void PonRegistroPorNombre(const ObjectPtr& registro) { registro_ = ComoOpcional<Recordset>(registro); }
  /// Refusal: while it is set the next guarded action (closing, a new line) does not happen, and clears it.
  bool Rechazado() const { return rechazado_; }
  void PonRechazado(bool rechazado) { rechazado_ = rechazado; }
  /// Running cost total: what was stored, and what lines added here have changed since.
  double CostoTotal() const;

  const MemberTable* Members() const override;

  // Life (frm_op.cpp).
  void Form_Load() override;
  void Form_QueryUnload(CancelEvent& event, UnloadMode mode) override;
  void Form_Unload(CancelEvent& event) override;

  // Keys of the whole window (frm_op_rejilla.cpp).
  void Form_KeyDown(KeyEvent& event) override;
  void Form_Resize() override;

 private:
  // frm_op_layout.cpp: makes and places every control.
  void CreaControles();

  // frm_op.cpp
  void ConectaEventos();
  void FormaRejilla();
  void CargaEncabezado();
  void MarcaOcupada();
  void SueltaOcupada();
  void TerminaCarga();
  void CargaPartidas();
  void ValoresDeAlta();
  void AplicaModo();
  void Timer1_Timer();
  void Label10_Click(std::int16_t index);

  // frm_op_guarda.cpp
  /// Gives a new order its number and starts its INSERT.
  void NumeraOrden();
  /// Tell whether it was saved, the header or the cell; why not has been reported.
  bool CreaOp();
  bool SalvaOp();
  bool SalvaCambios();
  /// A quantity as the grid shows it: what was typed with commas is shown as it was understood.
  static std::string ComoSeLeyo(const std::string& texto, double numero);
  /// Filled lines of the grid before the first blank one; nothing when they could not be counted.
  std::optional<std::int32_t> CuantasPartidas();
  bool SalvaPartidas();

  // frm_op_partida.cpp
  /// Sets a field's text without its moving on as if the user had filled it.
  void Escribe(std::int16_t index, const std::string& texto);
  void LlenaPartida();
  /// False when the typed line has failed before it was stored: it stays where it was typed.
  bool NuevaPartida();
  void PonDescripcion();
  void PonTC();
  std::string TraeVends();
  bool ValidaTab1();
  void fg2_KeyDown(KeyEvent& event);

  // frm_op_botones.cpp
  void Command1_Click();
  void Command2_Click();
  void Command5_Click();
  void Command6_Click();
  bool ImprimeOp();

  // frm_op_campos.cpp
  void ConectaCampos();
  static void Selecciona(TextBox& caja);
  /// Throws HostError for a field that no host could take for a number; a blank one passes.
  void ExigeNumero(std::int16_t index) const;
  void Formatea(std::int16_t index);
  /// Enter or Tab in a field. The key is zeroed where it was used.
  void Avanza(std::int16_t index, KeyEvent& event);
  void MuestraKits();
  void txtFields_GotFocus(std::int16_t index);
  void txtFields_KeyPress(std::int16_t index, KeyPressEvent& event);
  void txtFields_Change(std::int16_t index);
  void txtFields_LostFocus(std::int16_t index);
  void txtFields_KeyDown(std::int16_t index, KeyEvent& event);
  void txtFields_KeyUp(std::int16_t index, KeyEvent& event);
  void txtFields_DblClick(std::int16_t index);
  void TraeSegundaClave();
  void RichTextBox1_KeyDown(KeyEvent& event);

  // frm_op_rejilla.cpp
  void ConectaRejilla();
  void MSFlexGridEdit(FlexGrid& grid, TextBox& editor, std::int16_t character);
  void EditKeyCode(FlexGrid& grid, TextBox& editor, std::int16_t key);
  /// Puts the open cell editor over its cell.
  void ColocaEditor();
  /// Ends an edit: the cell takes the editor's text and is saved. False when it could not be: it shows again
  /// what it held.
  bool EscribeCelda();
  void Fg2_KeyPress(KeyPressEvent& event);
  void Fg2_GotFocus();
  void Fg2_LeaveCell();
  void fg2_DblClick();
  void fg2_RowColChange();
  void txtEdit_KeyPress(KeyPressEvent& event);
  void txtEdit_KeyDown(KeyEvent& event);
  void txtEdit_LostFocus();

  // What the opener hands over.
  std::string modo_;
  std::int32_t op_ = 0;
  ObjectPtr parent_;
  std::shared_ptr<Recordset> registro_;

  // What the window makes for itself.
  std::shared_ptr<ConstructorSql> constructor_;
  std::shared_ptr<Recordset> partidas_;
  double costo_guardado_ = 0;
  /// Lines added here, by their key as the grid holds it.
  struct Costo {
    double cantidad, unitario;
  };
  std::map<std::string, Costo> costos_;
  /// The article read last and its unit cost.
  std::string articulo_leido_;
  double costo_leido_ = 0;
  bool rechazado_ = false;
  bool escribiendo_ = false;

  // Controls, under the names they are published by.
  std::shared_ptr<ControlArray<TextBox>> txtFields;
  std::shared_ptr<ControlArray<MultiCombo>> MultiCombo1;
  std::shared_ptr<ControlArray<Label>> Label10, lblFields;
  std::shared_ptr<DatePicker> DTPicker1, DTPicker2;
  std::shared_ptr<RichTextBox> RichTextBox2;
  std::shared_ptr<CheckBox> Check1, Check2, Check3, Check4;
  std::shared_ptr<Button> Command1, Command2, Command5, Command6;
  std::shared_ptr<FlexGrid> fg2;
  std::shared_ptr<TextBox> txtEdit;
  std::shared_ptr<Timer> Timer1;
  std::shared_ptr<AutoResizer> AutoResizer1;
};

}  // namespace zuvi
