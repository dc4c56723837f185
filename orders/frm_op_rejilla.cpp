#include "base/text.h"
#include "orders/campos.h"
#include "orders/frm_op.h"

namespace zuvi {
namespace {

constexpr std::int32_t kArticulo = 0, kUltimaEditable = 2, kDescripcion = 4, kEntrada = 5, kPresentacion = 6;
constexpr std::int16_t kMarcoHundido = 3;
/// Further than any cell's text: brought to its end.
constexpr std::int32_t kAlFinal = 1000;

std::string ComoTexto(std::int16_t caracter) {
  const auto unidad = static_cast<char16_t>(static_cast<std::uint16_t>(caracter));
  return Utf8(std::u16string_view(&unidad, 1));
}

}  // namespace

void frmOp::ConectaRejilla() {
  fg2->OnKeyDown = [this](KeyEvent& event) { fg2_KeyDown(event); };
  fg2->OnKeyPress = [this](KeyPressEvent& event) { Fg2_KeyPress(event); };
  fg2->OnGotFocus = [this] { Fg2_GotFocus(); };
  fg2->OnLeaveCell = [this] { Fg2_LeaveCell(); };
  fg2->OnDblClick = [this] { fg2_DblClick(); };
  fg2->OnRowColChange = [this] { fg2_RowColChange(); };
  fg2->OnScroll = [this] { ColocaEditor(); };
  txtEdit->OnKeyPress = [this](KeyPressEvent& event) { txtEdit_KeyPress(event); };
  txtEdit->OnKeyDown = [this](KeyEvent& event) { txtEdit_KeyDown(event); };
  txtEdit->OnLostFocus = [this] { txtEdit_LostFocus(); };
}

void frmOp::MSFlexGridEdit(FlexGrid& grid, TextBox& editor, std::int16_t character) {
  Trata("MSFlexGridEdit", [&] {
    if (character < 0 || character > key::kSpace) {
      if (Datos().EstaVacio(grid.TextMatrix(grid.Row(), kArticulo))) return;
      // The character takes the place of the whole text: what is left there of another edit must not decide
      // whether it is a good one.
      if (!editor.Visible()) editor.SetText("");
      const std::int16_t filtrado = Datos().FiltroTecla(editor.shared_from_this(), character);
      if (filtrado == 0 && grid.Col() != kPresentacion) return;
      editor.SetText(ComoTexto(filtrado != 0 ? filtrado : character));
      editor.SetSelStart(1);
    } else {
      editor.SetText(grid.Text());
      editor.SetSelStart(kAlFinal);
    }
    if (grid.Col() == 0 || modo_ == kConsulta || grid.Col() > kUltimaEditable) return;
    // A row without a line has nothing to be edited, whatever key asked for it.
    if (Recorta(grid.TextMatrix(grid.Row(), kArticulo) + grid.TextMatrix(grid.Row(), kEntrada)).empty())
      return;
    const Rect celda = grid.CellBounds();
    editor.Move({celda.left + grid.Left(), celda.top + grid.Top(), celda.width, celda.height});
    editor.SetVisible(true);
    EnfocaSiHabilitado(editor);
  });
}

void frmOp::ColocaEditor() {
  Trata("ColocaEditor", [&] {
    if (!txtEdit->Visible()) return;
    const Rect celda = fg2->CellBounds();
    txtEdit->Move({celda.left + fg2->Left(), celda.top + fg2->Top(), celda.width, celda.height});
  });
}

void frmOp::Form_Resize() { ColocaEditor(); }

void frmOp::EditKeyCode(FlexGrid& grid, TextBox& editor, std::int16_t key) {
  Trata("EditKeyCode", [&] {
    switch (key) {
      case key::kEnter:
        grid.SetFocus();
        break;
      case key::kEscape:
        editor.SetVisible(false);
        grid.SetFocus();
        break;
      case key::kUp:
        grid.SetFocus();
        if (grid.Row() > grid.FixedRows()) grid.SetRow(grid.Row() - 1);
        break;
      case key::kDown:
        grid.SetFocus();
        if (grid.Row() < grid.Rows() - 1) grid.SetRow(grid.Row() + 1);
        break;
      default:
        break;
    }
  });
}

bool frmOp::EscribeCelda() {
  if (!txtEdit->Visible()) return true;
  const std::int32_t fila = fg2->Row(), columna = fg2->Col();
  const std::string entrada = fg2->TextMatrix(fila, kEntrada), guardado = fg2->Text();
  fg2->SetText(txtEdit->Text());
  txtEdit->SetText("");
  txtEdit->SetVisible(false);
  if (SalvaCambios()) return true;
  // The cell shows what the table holds. While the report stood its line may have gone elsewhere.
  if (fila < fg2->Rows() && (columna == kEntrada || fg2->TextMatrix(fila, kEntrada) == entrada))
    fg2->SetTextMatrix(fila, columna, guardado);
  return false;
}

void frmOp::Fg2_KeyPress(KeyPressEvent& event) {
  Trata("Fg2_KeyPress", [&] { MSFlexGridEdit(*fg2, *txtEdit, event.character); });
}

void frmOp::Fg2_GotFocus() {
  Trata("Fg2_GotFocus", [&] { EscribeCelda(); });
}

void frmOp::Fg2_LeaveCell() {
  Trata("Fg2_LeaveCell", [&] {
    if (fg2->Row() > 0) fg2->SetFocusRect(kMarcoHundido);
    EscribeCelda();
  });
}

void frmOp::fg2_DblClick() {
  Trata("fg2_DblClick", [&] {
    if (Datos().EstaVacio(fg2->TextMatrix(fg2->Row(), kArticulo))) return;
    MSFlexGridEdit(*fg2, *txtEdit, key::kSpace);
  });
}

void frmOp::fg2_RowColChange() {
  Trata("fg2_RowColChange", [&] {
    if (fg2->Row() >= 1) fg2->SetFocusRect(kMarcoHundido);
  });
}

void frmOp::txtEdit_KeyPress(KeyPressEvent& event) {
  Trata("txtEdit_KeyPress", [&] {
    if (event.character == key::kEnter)
      event.Drop();
    else if (fg2->Col() != kDescripcion && fg2->Col() != kPresentacion)
      event.character = Datos().FiltroTecla(txtEdit->shared_from_this(), event.character);
  });
}

void frmOp::txtEdit_KeyDown(KeyEvent& event) {
  Trata("txtEdit_KeyDown", [&] { EditKeyCode(*fg2, *txtEdit, event.key); });
}

void frmOp::txtEdit_LostFocus() {
  // Whoever goes on to another field or a button means to keep what was typed. Without a new control the
  // user has only turned to another window. What could not be written calls them back to the cell, and the
  // button they pressed waits: it may be the one that closes the window.
  Trata("txtEdit_LostFocus", [&] {
    if (ActiveControl() && !EscribeCelda() && fg2->CanFocus()) fg2->SetFocus();
  });
}

void frmOp::Form_KeyDown(KeyEvent& event) {
  Trata("Form_KeyDown", [&] {
    switch (event.key) {
      case key::kF3:
        if (Check4->Value() == 1) {
          Check4->SetValue(0);
        } else {
          Check4->SetValue(1);
          EnfocaSiHabilitado((*txtFields)(campo::kArticulo));
        }
        break;
      case key::kF6:
        Command1_Click();
        break;
      case key::kF9:
        LlenaPartida();
        break;
      default:
        break;
    }
  });
}

}  // namespace zuvi
