// orders/: the production order editor, and with it everything that writes the tables `op` and `oppart`. One
// class, a file per concern: frm_op_layout.cpp (controls and places), frm_op.cpp (load, modes, closing),
// frm_op_eventos.cpp (which event asks for what), frm_op_campos.cpp (header fields), frm_op_partida.cpp
// (entry of a line), frm_op_rejilla.cpp (lines in the grid), frm_op_guarda.cpp (saving), frm_op_finaliza.cpp
// (finishing). A cell is edited in a box of its own, editor_celda.h. Fields and columns have their names in
// campos.h and columnas_rejilla.h.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "orders/editor_celda.h"
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

  void Form_Load() override;
  void Form_QueryUnload(CancelEvent& event, UnloadMode mode) override;
  void Form_Unload(CancelEvent& event) override;
  void Form_KeyDown(KeyEvent& event) override;
  void Form_Resize() override;

 private:
  // frm_op_layout.cpp: makes and places every control, part by part from the top.
  class Plano;
  void CreaControles();
  void CreaEncabezado(Plano& plano);
  void CreaCaptura(Plano& plano);
  void CreaPartidas(Plano& plano);
  void CreaPie(Plano& plano);

  // frm_op.cpp: load and modes.
  void CargaEncabezado();
  void MarcaOcupada();
  void SueltaOcupada();
  void TerminaCarga();
  void CargaPartidas();
  void ValoresDeAlta();
  void AplicaModo();

  // What the user can want here, each once, whichever key, button or scanner asks for it. Where more than one
  // event does, it traps its own errors, which are reported as the procedure named behind it.
  void AgregaPartida();  // LlenaPartida
  void BorraPartida();
  void EditaCelda(std::optional<std::int16_t> tecleado);  // MSFlexGridEdit
  /// Ends an edit: the cell takes the editor's text and is saved. False when it could not be: it shows again
  /// what it held.
  bool GuardaCelda();
  void FinalizaOrden();  // Command5_Click
  void GeneraCodigos();  // Command1_Click
  void CambiaLector();
  /// On to the next field; the line is added after the last. False in a field without a next one.
  bool AvanzaCampo(std::int16_t index);  // txtFields_KeyDown
  /// From field to field of a secondary key.
  void AvanzaClave(std::int16_t index);
  void BuscaValor(std::int16_t index);  // txtFields_DblClick
  void BuscaKit();

  // Events (frm_op_eventos.cpp).
  void ConectaEventos();
  void Command1_Click();
  void Command2_Click();
  void Command5_Click();
  void Command6_Click();
  void Timer1_Timer();
  void Label10_Click(std::int16_t index);
  void txtFields_GotFocus(std::int16_t index);
  void txtFields_KeyPress(std::int16_t index, KeyPressEvent& event);
  void txtFields_Change(std::int16_t index);
  void txtFields_LostFocus(std::int16_t index);
  void txtFields_KeyDown(std::int16_t index, KeyEvent& event);
  void txtFields_KeyUp(std::int16_t index, KeyEvent& event);
  void txtFields_DblClick(std::int16_t index);
  void RichTextBox1_KeyDown(KeyEvent& event);
  void fg2_KeyDown(KeyEvent& event);
  void Fg2_KeyPress(KeyPressEvent& event);
  void Fg2_GotFocus();
  void Fg2_LeaveCell();
  void fg2_DblClick();
  void fg2_RowColChange();
  void txtEdit_KeyPress(KeyPressEvent& event);
  void txtEdit_KeyDown(KeyEvent& event);
  void txtEdit_LostFocus();

  // frm_op_campos.cpp: the text fields.
  TextBox& Caja(std::int16_t index) const { return (*txtFields)(index); }
  const std::string& Texto(std::int16_t index) const { return Caja(index).Text(); }
  void Enfoca(std::int16_t index) { EnfocaSiHabilitado(Caja(index)); }
  static void Selecciona(TextBox& caja);
  /// Sets a field's text without its moving on as if the user had filled it.
  void Escribe(std::int16_t index, const std::string& texto);
  void Formatea(std::int16_t index);
  /// Throws HostError for a field that no host could take for a number; a blank one passes.
  void ExigeNumero(std::int16_t index) const;
  /// A lookup of the host that writes the choice into a field.
  template <class Servicio>
  std::shared_ptr<Servicio> NuevaBusqueda(std::int16_t index);
  void TraeSegundaClave();
  void PonTC();
  std::string TraeVends();

  // frm_op_partida.cpp: entry of a line.
  struct Partida {
    std::int32_t entrada;  // its key
    std::string articulo, cantidad_tecleada, observaciones;
    double cantidad, precio;
  };
  /// Whether what was typed can be a line; why not has been told.
  bool PartidaAceptable();
  /// False when the typed line has failed before it was stored: it stays where it was typed.
  bool NuevaPartida();
  Partida InsertaPartida();
  void PonDescripcion();

  // frm_op_rejilla.cpp: the lines in the grid.
  void FormaRejilla();
  /// Puts the open editor over its cell.
  void ColocaEditor();
  bool RenglonVacio(std::int32_t renglon) const;
  void MuestraPartida(const Partida& partida);
  /// A quantity as the grid shows it: what was typed with commas is shown as it was understood.
  static std::string ComoSeLeyo(const std::string& texto, double numero);

  // frm_op_guarda.cpp: saving.
  /// Gives a new order its number and starts its INSERT.
  void NumeraOrden();
  /// The columns that tell who saved a row, and when.
  void Firma(const char* tabla);
  /// Tell whether it was saved, the header or the cell; why not has been reported.
  bool CreaOp();
  bool SalvaOp();
  bool SalvaCambios();
  bool SalvaPartidas();

  // frm_op_finaliza.cpp: finishing the order.
  bool ValidaTab1();
  /// Filled lines of the grid before the first blank one; nothing when they could not be counted.
  std::optional<std::int32_t> CuantasPartidas();
  bool ImprimeOp();

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
  std::unique_ptr<EditorCelda> editor_;
  std::shared_ptr<Timer> Timer1;
  std::shared_ptr<AutoResizer> AutoResizer1;
};

}  // namespace zuvi
