// Saving: the header when its first line is added and when the order is finished, an edited cell at once.
#include <cmath>

#include "base/text.h"
#include "orders/campos.h"
#include "orders/columnas_rejilla.h"
#include "orders/frm_op.h"

namespace zuvi {
namespace {

constexpr std::int16_t kSi = 1, kNo = 0;

}  // namespace

void frmOp::NumeraOrden() {
  std::int32_t documento = 0;
  op_ = Datos().SiguienteFolio("Op", TraeConexion(), documento, nullptr);
  constructor_->Tipo("INSERT");
  constructor_->AgregaCampo("op", "op", op_);
}

void frmOp::Firma(const char* tabla) {
  constructor_->AgregaCampo(tabla, "usuario", Entorno()->UsuarioActual());
  constructor_->AgregaCampo(tabla, "usufecha", Hoy());
  constructor_->AgregaCampo(tabla, "usuhora", Hora());
}

bool frmOp::CreaOp() {
  return Trata("CreaOp", [&] {
    constructor_->Limpia();
    if (modo_ == kAlta)
      NumeraOrden();
    else
      constructor_->Tipo("UPDATE");

    if (modo_ == kModificacion || modo_ == kAlta) {
      AccesoDatos& datos = Datos();
      ConstructorSql& c = *constructor_;
      c.AgregaCampo("op", "ocupado", kSi);
      c.AgregaCampo("op", "f_emision", DTPicker1->Value());
      c.AgregaCampo("op", "importe", datos.ValorNumerico(Texto(campo::kImporte)));
      c.AgregaCampo("op", "costo", std::int16_t{0});
      // A text here and a number on finishing: the column takes both.
      c.AgregaCampo("op", "almacen", datos.ValorTexto(Texto(campo::kAlmacen)));
      c.AgregaCampo("op", "estado", "PE");
      c.AgregaCampo("op", "observ", RichTextBox2->Text());
      Firma("op");
      c.AgregaCampo("op", "fechaEntrega", DTPicker2->Value());
      c.AgregaCampo("op", "ordencompra", datos.ValorNumerico(Texto(campo::kOrdenCompra)));
      c.Condicion("op = " + Decimal(op_));
      c.Genera("op");
      c.Ejecuta();
      // The order is there and held by this window: whatever fails from here on, the next line belongs to it
      // and closing releases it.
      modo_ = kModificacion;
    }

    registro_ = Consulta("SELECT * FROM op WHERE op = " + Decimal(op_));
    // The row learns of a ticked "automático" only on finishing: the user's tick is not to be lost here.
    const std::int16_t automatico = Check1->Value();
    CargaEncabezado();
    if (automatico == 1) Check1->SetValue(automatico);
    modo_ = kModificacion;
    SetCaption("Op: " + Decimal(op_));
  });
}

bool frmOp::SalvaOp() {
  return Trata("SalvaOp", [&] {
    AccesoDatos& datos = Datos();
    ConstructorSql& c = *constructor_;
    c.Limpia();
    if (modo_ == kAlta) {
      NumeraOrden();
    } else {
      c.Tipo("UPDATE");
      c.Condicion("Op = " + Decimal(op_));
    }
    c.AgregaCampo("op", "ocupado", kNo);
    c.AgregaCampo("op", "f_emision", DTPicker1->Value());
    c.AgregaCampo("op", "fechaEntrega", DTPicker2->Value());
    c.AgregaCampo("op", "importe", datos.ValorNumerico(Texto(campo::kImporte)));
    c.AgregaCampo("op", "costo", CostoTotal());
    c.AgregaCampo("op", "almacen", datos.ValorNumerico(Texto(campo::kAlmacen)));
    if (Check3->Value() == 0) {
      c.AgregaCampo("op", "estado", "CO");
      if (Check1->Value() == 1) c.AgregaCampo("op", "automatico", kSi);
    } else {
      c.AgregaCampo("op", "estado", "PE");
    }
    c.AgregaCampo("op", "observ", RichTextBox2->Text());
    Firma("op");
    c.AgregaCampo("op", "ordencompra", datos.ValorNumerico(Texto(campo::kOrdenCompra)));
    c.Genera("op");
    c.Ejecuta();
  });
}

bool frmOp::SalvaCambios() {
  return Trata("SalvaCambios", [&] {
    const std::string entrada = fg2->TextMatrix(fg2->Row(), columna::kEntrada);
    // A row that is no line has nothing to be saved.
    if (Trim(entrada).empty()) return;
    ConstructorSql& c = *constructor_;
    c.Limpia();
    c.Tipo("UPDATE");
    c.Condicion("id_entrada = " + entrada);
    std::optional<double> cantidad;
    switch (fg2->Col()) {
      case columna::kCantidad:
      case columna::kPrecio:
        cantidad = Datos().ValorNumerico(fg2->Text());
        c.AgregaCampo("oppart", "cantidad", *cantidad);
        break;
      case columna::kEntrada:
        c.AgregaCampo("oppart", "impuesto", Datos().ValorNumerico(fg2->Text()));
        break;
      case columna::kPresentacion:
        c.AgregaCampo("oppart", "observ", fg2->Text());
        break;
      default:
        break;  // an UPDATE without columns, which the builder accepts
    }
    c.Genera("oppart");
    c.Ejecuta();
    if (!cantidad) return;
    fg2->SetText(ComoSeLeyo(fg2->Text(), *cantidad));
    if (const auto costo = costos_.find(entrada); costo != costos_.end()) costo->second.cantidad = *cantidad;
  });
}

double frmOp::CostoTotal() const {
  // Added up anew each time: a line that goes takes exactly its own with it.
  double total = costo_guardado_;
  for (const auto& [entrada, costo] : costos_) total += costo.cantidad * costo.unitario;
  // No column holds more; the order can be saved all the same.
  return std::isfinite(total) ? total : costo_guardado_;
}

bool frmOp::SalvaPartidas() {
  bool hay = false;
  Trata("SalvaPartidas", [&] {
    constexpr std::int32_t kKeyset = 1, kOptimistic = 3, kUnspecified = -1, kCmdText = 1;
    partidas_ = ElModulo().Fabrica().Nuevo<Recordset>();
    partidas_->PonCursorType(kKeyset);
    partidas_->PonLockType(kOptimistic);
    partidas_->Open("SELECT * FROM oppart WHERE (((Op)=" + Decimal(op_) + "))", TraeConexion(), kUnspecified,
                    kUnspecified, kCmdText);
    hay = !partidas_->Eof();
  });
  return hay;
}

}  // namespace zuvi
