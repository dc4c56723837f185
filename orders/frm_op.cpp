// Load, modes and closing of the order editor.
#include "orders/frm_op.h"

#include <utility>

#include "orders/campos.h"
#include "orders/columnas_rejilla.h"

namespace zuvi {
namespace {

constexpr std::int32_t kEsperaCierre = 10;

/// A field value put behind a text; Null adds nothing.
std::string Tras(const char* texto, const Value& valor) {
  return valor.IsNull() ? texto : texto + ToText(valor);
}

/// An amount that the order has stored; 0 where a host's orders have no such column.
double Monto(Recordset& orden, FixedText columna) {
  Value monto;
  try {
    monto = orden.Campo(columna);
  } catch (const HostError&) {
    orden.Campo("Op");  // a row that cannot be read at all is an error
    return 0;
  }
  return NumberOrZero(monto);
}

}  // namespace

frmOp::frmOp(Modulo& modulo) : VentanaModulo(modulo, "frmOp") {
  CreaControles();
  ConectaEventos();
}

const MemberTable* frmOp::Members() const {
  static const MemberTable table =
      WithFormMembers(MemberTable::Of<frmOp>()
                          .Property<&frmOp::Modo, &frmOp::PonModo>("Modo")
                          .Property<&frmOp::Op, &frmOp::PonOp>("Op")
                          .Property<&frmOp::TraeAmbiente, &frmOp::PonAmbiente>("Ambiente")
                          .Property<&frmOp::Parent, &frmOp::PonParent>("Parent")
                          .Property<&frmOp::Registro, &frmOp::PonRegistroPorNombre>("RegistroOp")
                          .Property<&frmOp::Rechazado, &frmOp::PonRechazado>("Rechazado")
                          .Property<&frmOp::CostoTotal>("Costo")
                          // For a host that keeps currencies and salespeople in the hidden fields.
                          .Method<&frmOp::PonTC>("PonTC")
                          .Method<&frmOp::TraeVends>("TraeVends"));
  return &table;
}

void frmOp::Form_Load() {
  FormaRejilla();
  constructor_ = Datos().NuevoConstructorSql();
  constructor_->PonConexion(TraeConexion());
  if (const ObjectPtr rutas = Entorno()->ContenedorRutas())
    constructor_->PonRutas(ToObject(rutas->Call("PathCollection")));

  if (modo_ == kAlta) {
    ValoresDeAlta();
    TerminaCarga();
    return;
  }
  CargaEncabezado();
  costo_guardado_ = Monto(*registro_, "costo");
  if (modo_ == kModificacion) MarcaOcupada();
  try {
    CargaPartidas();
    TerminaCarga();
  } catch (...) {
    // The window will not be there to release the order when it closes.
    if (modo_ == kModificacion) EnSilencio([&] { SueltaOcupada(); });
    throw;
  }
}

void frmOp::TerminaCarga() {
  fg2->SetRow(1);
  fg2->SetCol(columna::kArticulo);
  AplicaModo();
}

void frmOp::CargaEncabezado() {
  if (!registro_) throw HostError(ErrorNumber::ObjectNotSet);
  // What an order lacks must not keep it from being opened and mended.
  Caja(campo::kAlmacen).SetText(Tras("", registro_->Campo("Almacen")));
  // Every save writes these fields: an order must lose neither its purchase's number nor its amount.
  if (const Value compra = registro_->Campo("ordencompra"); !compra.IsNull() && ToNumber(compra) != 0)
    Caja(campo::kOrdenCompra).SetText(ToText(compra));
  if (const double importe = Monto(*registro_, "importe"); importe != 0)
    Caja(campo::kImporte).SetText(NumberText(importe));
  const Value emision = registro_->Campo("F_Emision");
  DTPicker1->SetValue(emision.IsNull() ? Hoy() : ToDate(emision));
  const Value entrega = registro_->Campo("fechaentrega");
  DTPicker2->SetValue(entrega.IsNull() ? Hoy() : ToDate(entrega));
  RichTextBox2->SetText(Datos().ValorTexto(registro_->Campo("Observ")));
  const Value automatico = registro_->Campo("automatico");
  Check1->SetValue(!automatico.IsNull() && ToNumber(automatico) == 1 ? 1 : 0);
}

void frmOp::MarcaOcupada() {
  constructor_->Limpia();
  constructor_->Tipo("UPDATE");
  constructor_->AgregaCampo("Op", "ocupado", std::int16_t{1});
  constructor_->Condicion("Op = " + Decimal(op_));
  constructor_->Genera("Op");
  constructor_->Ejecuta();
}

void frmOp::SueltaOcupada() { Entorno()->EjecutaSQL("UPDATE Op SET ocupado = 0 WHERE Op = " + Decimal(op_)); }

void frmOp::CargaPartidas() {
  partidas_ = Consulta("SELECT * FROM oppart WHERE Op = (" + ToText(registro_->Campo("Op")) + ")");
  // An order with more lines than the grid has rows makes it grow.
  for (std::int32_t fila = 1; !partidas_->Eof(); partidas_->MoveNext(), ++fila) {
    fg2->SetTextMatrix(fila, columna::kArticulo, Tras("", partidas_->Campo("Articulo")));
    fg2->SetTextMatrix(fila, columna::kCantidad, Tras("", partidas_->Campo("Cantidad")));
    fg2->SetTextMatrix(fila, columna::kPrecio, Tras("", partidas_->Campo("Precio")));
    fg2->SetTextMatrix(fila, columna::kDescripcion, Tras(" ", partidas_->Campo("Observ")));
    fg2->SetTextMatrix(fila, columna::kEntrada, Datos().ValorTexto(partidas_->Campo("id_entrada")));
  }
}

void frmOp::ValoresDeAlta() {
  for (DatePicker* fecha : {DTPicker1.get(), DTPicker2.get()}) {
    const std::int32_t a = Entorno()->DatoFechaA();
    const std::int32_t b = Entorno()->DatoFechaB();
    fecha->SetValue(Datos().ComponeFecha(a, b));
  }
  Caja(campo::kAlmacen).SetText(ToText(Entorno()->ParametrosEstacion()->Campo("Almacen")));
}

void frmOp::AplicaModo() {
  const bool consulta = modo_ == kConsulta;
  // An order is shown for viewing whatever fails from here on; in the other modes the first failure ends the
  // load.
  const auto paso = [consulta](auto&& cuerpo) {
    if (consulta)
      EnSilencio(cuerpo);
    else
      cuerpo();
  };

  if (consulta) {
    // The resizing helper takes no input; without it the window would no longer follow its size.
    for (const auto& control : Controls())
      if (control != AutoResizer1 && !std::dynamic_pointer_cast<Label>(control))
        EnSilencio([&] { control->SetEnabled(false); });
  }
  paso([&] { Command1->SetEnabled(consulta); });
  paso([&] { Command5->SetEnabled(!consulta); });
  paso([&] { fg2->SetRedraw(true); });
  paso([&] { Command2->SetEnabled(true); });
  paso([&] {
    const ObjectPtr conexion = ReferenceOf(TraeConexion());
    MultiCombo1->ForEach([&](std::int16_t, MultiCombo& combo) { combo.SetConnection(conexion); });
  });
  paso([&] {
    const Value lector = Entorno()->ParametrosEstacion()->Campo("Lector");
    Check4->SetValue(!lector.IsNull() && ToBool(lector) ? 1 : 0);
  });
  paso([&] { IniciaProceso("Op001"); });
  paso([&] {
    if (rechazado_ || Closed()) return;
    Prepara();
    rechazado_ = false;
  });
}

void frmOp::Form_QueryUnload(CancelEvent& event, UnloadMode mode) {
  Trata("Form_QueryUnload", [&] {
    // An open edit is written whichever way the window is closed. One that could not be keeps it open, where
    // it can be typed again; the end of the session does not wait.
    const bool editando = editor_->Abierto();
    const bool escrita = GuardaCelda();
    if (editando && fg2->CanFocus()) fg2->SetFocus();
    if (!escrita && mode != UnloadMode::System) {
      event.cancel = true;
      return;
    }
    if (mode != UnloadMode::TitleBar) return;
    // The title bar only asks: the window is closed once the click is done with.
    event.cancel = true;
    Timer1->SetInterval(kEsperaCierre);
    Timer1->SetEnabled(true);
  });
}

void frmOp::Form_Unload(CancelEvent& event) {
  bool suelta = modo_ == kModificacion;
  Trata("Form_Unload", [&] {
    IniciaProceso("Op006");
    if (rechazado_) {
      rechazado_ = false;
      event.cancel = true;
      return;
    }
    // What is tried once is not tried again.
    if (std::exchange(suelta, false)) SueltaOcupada();
    if (parent_) parent_->Call("SetFocus");
    Libera();
  });
  // A process that failed does not keep the window open, nor the order busy without one.
  if (suelta && !event.cancel) EnSilencio([&] { SueltaOcupada(); });
}

}  // namespace zuvi
