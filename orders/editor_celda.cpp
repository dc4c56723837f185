#include "orders/editor_celda.h"

#include "base/text.h"
#include "orders/columnas_rejilla.h"
#include "windows/ventana_modulo.h"

namespace zuvi {
namespace {

/// The article and the columns after this one are not edited in place.
constexpr std::int32_t kUltimaEditable = columna::kPrecio;
/// Further than any cell's text: brought to its end.
constexpr std::int32_t kAlFinal = 1000;

bool Imprime(std::int16_t caracter) { return caracter < 0 || caracter > key::kSpace; }

std::string ComoTexto(std::int16_t caracter) {
  const auto unidad = static_cast<char16_t>(static_cast<std::uint16_t>(caracter));
  return Utf8(std::u16string_view(&unidad, 1));
}

}  // namespace

bool EditorCelda::EmpiezaCon(std::int16_t caracter) {
  if (modulo_.Datos().EstaVacio(rejilla_.TextMatrix(rejilla_.Row(), columna::kArticulo))) return false;
  // The character takes the place of the whole text: what is left there of another edit must not decide
  // whether it is a good one.
  if (!Abierto()) caja_.SetText("");
  const std::int16_t filtrado = modulo_.Datos().FiltroTecla(caja_.shared_from_this(), caracter);
  if (filtrado == 0 && rejilla_.Col() != columna::kPresentacion) return false;
  caja_.SetText(ComoTexto(filtrado != 0 ? filtrado : caracter));
  caja_.SetSelStart(1);
  return true;
}

void EditorCelda::Abre(std::optional<std::int16_t> tecleado, bool solo_consulta) {
  if (tecleado && Imprime(*tecleado)) {
    if (!EmpiezaCon(*tecleado)) return;
  } else {
    caja_.SetText(rejilla_.Text());
    caja_.SetSelStart(kAlFinal);
  }
  const std::int32_t fila = rejilla_.Row(), col = rejilla_.Col();
  if (solo_consulta || col == columna::kArticulo || col > kUltimaEditable) return;
  // A row without a line has nothing to be edited, whatever key asked for it.
  if (Trim(rejilla_.TextMatrix(fila, columna::kArticulo) + rejilla_.TextMatrix(fila, columna::kEntrada))
          .empty())
    return;
  Coloca();
  caja_.SetVisible(true);
  EnfocaSiHabilitado(caja_);
}

void EditorCelda::Coloca() {
  const Rect celda = rejilla_.CellBounds();
  caja_.Move({celda.left + rejilla_.Left(), celda.top + rejilla_.Top(), celda.width, celda.height});
}

void EditorCelda::Filtra(KeyPressEvent& event) const {
  if (event.character == key::kEnter)
    event.Drop();  // the key has left the cell
  else if (rejilla_.Col() != columna::kDescripcion && rejilla_.Col() != columna::kPresentacion)
    event.character = modulo_.Datos().FiltroTecla(caja_.shared_from_this(), event.character);
}

void EditorCelda::Sal(std::int16_t tecla) {
  if (tecla == key::kEscape) caja_.SetVisible(false);
  if (tecla != key::kEscape && tecla != key::kEnter && tecla != key::kUp && tecla != key::kDown) return;
  rejilla_.SetFocus();
  const std::int32_t fila = rejilla_.Row();
  if (tecla == key::kUp && fila > rejilla_.FixedRows()) rejilla_.SetRow(fila - 1);
  if (tecla == key::kDown && fila < rejilla_.Rows() - 1) rejilla_.SetRow(fila + 1);
}

std::string EditorCelda::Vuelca() {
  std::string antes = rejilla_.Text();
  rejilla_.SetText(caja_.Text());
  caja_.SetText("");
  caja_.SetVisible(false);
  return antes;
}

}  // namespace zuvi
