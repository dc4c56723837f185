// The lines in the grid: shown, edited cell by cell, taken out.
#include "base/text.h"
#include "orders/columnas_rejilla.h"
#include "orders/frm_op.h"

namespace zuvi {
namespace {

constexpr std::int32_t kFilas = 101;

}  // namespace

void frmOp::FormaRejilla() {
  fg2->SetRedraw(false);
  fg2->SetRows(kFilas);
  fg2->SetCols(static_cast<std::int32_t>(kEncabezados.size()));
  fg2->SetFixedRows(1);
  fg2->SetFixedCols(0);
  fg2->SetRow(0);
  for (const EncabezadoDeColumna& encabezado : kEncabezados) {
    fg2->SetCol(encabezado.columna);
    fg2->SetColWidth(encabezado.columna, encabezado.ancho);
    fg2->SetText(encabezado.titulo);
  }
  fg2->SetCol(columna::kArticulo);
  fg2->SetRightAligned(columna::kCantidad, true);
  fg2->SetStretchCol(columna::kDescripcion);
}

void frmOp::MuestraPartida(const Partida& partida) {
  const std::int32_t renglones = fg2->Rows() - fg2->FixedRows();
  std::int32_t renglon = 1;
  while (renglon <= renglones && !RenglonVacio(renglon)) ++renglon;
  if (renglon > renglones) return;
  fg2->SetTextMatrix(renglon, columna::kArticulo, partida.articulo);
  fg2->SetTextMatrix(renglon, columna::kCantidad, ComoSeLeyo(partida.cantidad_tecleada, partida.cantidad));
  fg2->SetTextMatrix(renglon, columna::kImporte, GroupedAmount(partida.cantidad * partida.precio));
  fg2->SetTextMatrix(renglon, columna::kDescripcion, partida.observaciones);
  fg2->SetTextMatrix(renglon, columna::kEntrada, Decimal(partida.entrada));
  fg2->SetRow(renglon);
}

bool frmOp::RenglonVacio(std::int32_t renglon) const {
  return Datos().EstaVacio(fg2->TextMatrix(renglon, columna::kArticulo));
}

std::string frmOp::ComoSeLeyo(const std::string& texto, double numero) {
  return texto.find(',') == texto.npos ? texto : NumberText(numero);
}

void frmOp::EditaCelda(std::optional<std::int16_t> tecleado) {
  Trata("MSFlexGridEdit", [&] { editor_->Abre(tecleado, modo_ == kConsulta); });
}

void frmOp::ColocaEditor() {
  Trata("ColocaEditor", [&] {
    if (editor_->Abierto()) editor_->Coloca();
  });
}

bool frmOp::GuardaCelda() {
  if (!editor_->Abierto()) return true;
  const std::int32_t fila = fg2->Row(), col = fg2->Col();
  const std::string entrada = fg2->TextMatrix(fila, columna::kEntrada);
  const std::string guardado = editor_->Vuelca();
  if (SalvaCambios()) return true;
  // The cell shows what the table holds. While the report stood its line may have gone elsewhere.
  if (fila < fg2->Rows() && (col == columna::kEntrada || fg2->TextMatrix(fila, columna::kEntrada) == entrada))
    fg2->SetTextMatrix(fila, col, guardado);
  return false;
}

void frmOp::BorraPartida() {
  if (modo_ == kConsulta) return;
  const std::int32_t renglon = fg2->Row();
  if (renglon < fg2->FixedRows() || RenglonVacio(renglon)) return;
  const std::string entrada = fg2->TextMatrix(renglon, columna::kEntrada);
  if (Trim(entrada).empty()) return;
  Entorno()->EjecutaSQL("DELETE FROM oppart WHERE id_entrada = " + entrada);
  costos_.erase(entrada);
  fg2->RemoveItem(renglon);
}

}  // namespace zuvi
