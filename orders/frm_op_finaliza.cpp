// Finishing the order: what is asked and checked before, what is saved, printed and told to the host.
#include "orders/campos.h"
#include "orders/frm_op.h"

namespace zuvi {
namespace {

constexpr std::int16_t kPreguntaDeOrdenes = 2;

/// A document is dated in the years a form can mean, and not after its delivery.
bool FechaValida(const Date& documento, const Date& entrega) {
  const int anio = documento.Civil().anio;
  return anio >= 1900 && anio <= 2100 && documento.DayOnly().Serial() <= entrega.DayOnly().Serial();
}

}  // namespace

void frmOp::GeneraCodigos() {
  Trata("Command1_Click", [&] { IniciaProceso("OP007"); });
}

void frmOp::FinalizaOrden() {
  Trata("Command5_Click", [&] {
    if (!ValidaTab1()) return;
    if (modo_ == kConsulta) {
      Unload();
      return;
    }
    // The key comes here too, and an order is finished once.
    if (!Command5->Enabled()) return;
    if (Check3->Value() == 0 && !Pregunta(759, kPreguntaDeOrdenes)) return;
    if (!FechaValida(DTPicker1->Value(), DTPicker2->Value())) {
      Mensaje(224);
      DTPicker1->SetFocus();
      return;
    }
    // Once the button is disabled there is no second try.
    ExigeNumero(campo::kOrdenCompra);
    Command5->SetEnabled(false);

    const auto partidas = CuantasPartidas();
    if (!partidas) return;
    if (*partidas == 0) {
      if (Check3->Value() == 0) Mensaje(343);
      if (Check3->Enabled()) Check3->SetValue(1);
    }
    // From here on a failure was reported by the step itself and leaves the window open.
    if (!SalvaOp() || !SalvaPartidas()) return;
    if (Check3->Value() == 0) IniciaProceso("OP007");
    if (Check2->Value() == 1 && !ImprimeOp()) return;
    Unload();
  });
}

bool frmOp::ValidaTab1() {
  // An order whose warehouse could not be checked is not finished.
  bool valido = false;
  Trata("ValidaTab1", [&] {
    TextBox& almacen = Caja(campo::kAlmacen);
    const auto rechaza = [&](NumeroMensaje mensaje) {
      Mensaje(mensaje);
      almacen.SetFocus();
    };
    if (Datos().EstaVacio(almacen.Text())) return rechaza(240);
    if (!Datos().ExisteClave(almacen.Text(), "almacen", "almacen", TraeConexion())) return rechaza(241);
    valido = true;
  });
  return valido;
}

std::optional<std::int32_t> frmOp::CuantasPartidas() {
  std::int32_t llenas = 0;
  const bool contadas = Trata("CuantasPartidas", [&] {
    const std::int32_t renglones = fg2->Rows() - fg2->FixedRows();
    while (llenas < renglones && !RenglonVacio(llenas + 1)) ++llenas;
  });
  return contadas ? std::optional(llenas) : std::nullopt;
}

bool frmOp::ImprimeOp() {
  return Trata("ImprimeOp",
               [&] { ElModulo().Procesos().ImprimeReporte("ORDENP", op_, Entorno(), shared_from_this()); });
}

}  // namespace zuvi
