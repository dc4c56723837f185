// Every event of the order editor, and what the user wants by it. A procedure that only passes on leaves the
// trapping of errors to what it asks for.
#include <functional>

#include "orders/campos.h"
#include "orders/frm_op.h"

namespace zuvi {
namespace {

constexpr std::int16_t kMarcoHundido = 3;

bool EsFiltroDeTecla(const std::string& etiqueta) {
  return etiqueta == "N" || etiqueta == "D" || etiqueta == "SD" || etiqueta == "SN";
}

}  // namespace

void frmOp::ConectaEventos() {
  Command1->OnClick = std::bind_front(&frmOp::Command1_Click, this);
  Command2->OnClick = std::bind_front(&frmOp::Command2_Click, this);
  Command5->OnClick = std::bind_front(&frmOp::Command5_Click, this);
  Command6->OnClick = std::bind_front(&frmOp::Command6_Click, this);
  Timer1->OnTimer = std::bind_front(&frmOp::Timer1_Timer, this);
  Label10->ForEach([this](std::int16_t i, Label& rotulo) {
    rotulo.OnClick = std::bind_front(&frmOp::Label10_Click, this, i);
  });
  txtFields->ForEach([this](std::int16_t i, TextBox& caja) {
    caja.OnGotFocus = std::bind_front(&frmOp::txtFields_GotFocus, this, i);
    caja.OnLostFocus = std::bind_front(&frmOp::txtFields_LostFocus, this, i);
    caja.OnDblClick = std::bind_front(&frmOp::txtFields_DblClick, this, i);
    caja.OnChange = std::bind_front(&frmOp::txtFields_Change, this, i);
    caja.OnKeyPress = std::bind_front(&frmOp::txtFields_KeyPress, this, i);
    caja.OnKeyDown = std::bind_front(&frmOp::txtFields_KeyDown, this, i);
    caja.OnKeyUp = std::bind_front(&frmOp::txtFields_KeyUp, this, i);
  });
  RichTextBox2->OnKeyDown = std::bind_front(&frmOp::RichTextBox1_KeyDown, this);
  fg2->OnKeyDown = std::bind_front(&frmOp::fg2_KeyDown, this);
  fg2->OnKeyPress = std::bind_front(&frmOp::Fg2_KeyPress, this);
  fg2->OnGotFocus = std::bind_front(&frmOp::Fg2_GotFocus, this);
  fg2->OnLeaveCell = std::bind_front(&frmOp::Fg2_LeaveCell, this);
  fg2->OnDblClick = std::bind_front(&frmOp::fg2_DblClick, this);
  fg2->OnRowColChange = std::bind_front(&frmOp::fg2_RowColChange, this);
  fg2->OnScroll = std::bind_front(&frmOp::ColocaEditor, this);
  txtEdit->OnKeyPress = std::bind_front(&frmOp::txtEdit_KeyPress, this);
  txtEdit->OnKeyDown = std::bind_front(&frmOp::txtEdit_KeyDown, this);
  txtEdit->OnLostFocus = std::bind_front(&frmOp::txtEdit_LostFocus, this);
}

// The window.

void frmOp::Form_KeyDown(KeyEvent& event) {
  Trata("Form_KeyDown", [&] {
    if (event.key == key::kF3) CambiaLector();
    if (event.key == key::kF6) GeneraCodigos();
    if (event.key == key::kF9) AgregaPartida();
  });
}

void frmOp::Form_Resize() { ColocaEditor(); }

void frmOp::Timer1_Timer() {
  Trata("Timer1_Timer", [&] {
    Timer1->SetEnabled(false);
    Unload(UnloadMode::Code);
  });
}

void frmOp::Command1_Click() { GeneraCodigos(); }

void frmOp::Command2_Click() {
  Trata("Command2_Click", [&] { Unload(); });
}

void frmOp::Command5_Click() { FinalizaOrden(); }

void frmOp::Command6_Click() { AgregaPartida(); }

void frmOp::Label10_Click(std::int16_t index) {
  Trata("Label10_Click", [&] {
    CheckBox* const casilla = index == campo::kRotuloPendiente ? Check3.get()
                              : index == campo::kRotuloImprime ? Check2.get()
                                                               : nullptr;
    if (casilla && casilla->Enabled()) casilla->SetValue(casilla->Value() == 1 ? 0 : 1);
  });
}

// The text fields.

void frmOp::txtFields_GotFocus(std::int16_t index) {
  Trata("txtFields_GotFocus", [&] { Selecciona(Caja(index)); });
}

void frmOp::txtFields_KeyPress(std::int16_t index, KeyPressEvent& event) {
  Trata("txtFields_KeyPress", [&] {
    TextBox& caja = Caja(index);
    if (caja.Tag() == "U")
      event.character = Datos().FiltroMayusculas(caja.shared_from_this(), event.character);
    else if (EsFiltroDeTecla(caja.Tag()))
      event.character = Datos().FiltroTecla(caja.shared_from_this(), event.character);
  });
}

void frmOp::txtFields_Change(std::int16_t index) {
  if (escribiendo_) return;
  Trata("txtFields_Change", [&] {
    TextBox& caja = Caja(index);
    if (!Visible()) Formatea(index);
    const bool llena = caja.Length() == caja.MaxLength() && !caja.Text().empty();
    if (llena && Visible()) AvanzaCampo(index);
  });
}

void frmOp::txtFields_LostFocus(std::int16_t index) {
  Trata("txtFields_LostFocus", [&] {
    if (index == campo::kArticulo) PonDescripcion();
    Formatea(index);
  });
}

void frmOp::txtFields_KeyDown(std::int16_t index, KeyEvent& event) {
  Trata("txtFields_KeyDown", [&] {
    const std::int16_t tecla = event.key;
    switch (tecla) {
      case key::kF2:
        Caja(campo::kArticulo).SetFocus();
        return BuscaValor(index);
      case key::kF5:
        return FinalizaOrden();
      case key::kF8:
        return AvanzaClave(index);
      case key::kDown:
        if (index != campo::kArticulo) return;
        event.Use();
        return BuscaKit();
      case key::kTab:
        if (event.shift & shift::kShift) return;
        [[fallthrough]];
      case key::kEnter:
        // Where the focus stays because the next field is disabled, the key must not move it by tab order;
        // and a single line has no other use for Enter.
        event.Use();
        if (!AvanzaCampo(index) && tecla == key::kTab) event.key = tecla;
        return;
      default:
        return;
    }
  });
}

void frmOp::txtFields_KeyUp(std::int16_t index, KeyEvent& event) {
  Trata("txtFields_KeyUp", [&] {
    if (event.key != key::kDown) return;
    TextBox& caja = Caja(index);
    if (const ObjectPtr marco = caja.Container()) marco->Call("ShowData");
    caja.SetSelStart(0);
  });
}

void frmOp::txtFields_DblClick(std::int16_t index) { BuscaValor(index); }

void frmOp::RichTextBox1_KeyDown(KeyEvent& event) {
  Trata("RichTextBox1_KeyDown", [&] {
    if (event.key == key::kF8) Enfoca(campo::kArticulo);
  });
}

// The grid, and the editor over it.

void frmOp::fg2_KeyDown(KeyEvent& event) {
  Trata("fg2_KeyDown", [&] {
    if (event.key == key::kDelete) BorraPartida();
  });
}

void frmOp::Fg2_KeyPress(KeyPressEvent& event) { EditaCelda(event.character); }

void frmOp::fg2_DblClick() {
  Trata("fg2_DblClick", [&] {
    if (!RenglonVacio(fg2->Row())) EditaCelda(std::nullopt);
  });
}

void frmOp::Fg2_GotFocus() {
  Trata("Fg2_GotFocus", [&] { GuardaCelda(); });
}

void frmOp::Fg2_LeaveCell() {
  Trata("Fg2_LeaveCell", [&] {
    if (fg2->Row() > 0) fg2->SetFocusRect(kMarcoHundido);
    GuardaCelda();
  });
}

void frmOp::fg2_RowColChange() {
  Trata("fg2_RowColChange", [&] {
    if (fg2->Row() >= 1) fg2->SetFocusRect(kMarcoHundido);
  });
}

void frmOp::txtEdit_KeyPress(KeyPressEvent& event) {
  Trata("txtEdit_KeyPress", [&] { editor_->Filtra(event); });
}

void frmOp::txtEdit_KeyDown(KeyEvent& event) {
  Trata("EditKeyCode", [&] { editor_->Sal(event.key); });
}

void frmOp::txtEdit_LostFocus() {
  // Whoever goes on to another field or a button means to keep what was typed. Without a new control the
  // user has only turned to another window. What could not be written calls them back to the cell, and the
  // button they pressed waits: it may be the one that closes the window.
  Trata("txtEdit_LostFocus", [&] {
    if (ActiveControl() && !GuardaCelda() && fg2->CanFocus()) fg2->SetFocus();
  });
}

}  // namespace zuvi
