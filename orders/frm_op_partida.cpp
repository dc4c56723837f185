#include <utility>

#include "base/text.h"
#include "orders/campos.h"
#include "orders/frm_op.h"
#include "windows/sentencia.h"

namespace zuvi {
namespace {

/// Columns of the grid that a new line fills.
constexpr std::int32_t kArticulo = 0, kCantidad = 1, kImporte = 3, kObservaciones = 4, kEntrada = 5;

}  // namespace

void frmOp::Escribe(std::int16_t index, const std::string& texto) {
  // What the window itself writes is no entry of the user's: a field filled by it does not move on, which
  // would add the line before the rest of it is there, or add it twice.
  const bool antes = std::exchange(escribiendo_, true);
  try {
    (*txtFields)(index).SetText(texto);
  } catch (...) {
    escribiendo_ = antes;
    throw;
  }
  escribiendo_ = antes;
}

void frmOp::LlenaPartida() {
  Trata("LlenaPartida", [&] {
    TextBox& articulo = (*txtFields)(campo::kArticulo);
    TextBox& cantidad = (*txtFields)(campo::kCantidad);
    if (Datos().EstaVacio(articulo.Text())) {
      Mensaje(234);
      EnfocaSiHabilitado(articulo);
      return;
    }
    if (!Datos().ExisteClave(articulo.Text(), "prods", "articulo", TraeConexion())) {
      Mensaje(235);
      EnfocaSiHabilitado(articulo);
      return;
    }
    // Written so that what is not a number at all is refused too.
    if (!(Datos().ValorNumerico(cantidad.Text()) > 0)) {
      Mensaje(236);
      EnfocaSiHabilitado(cantidad);
      return;
    }

    const std::string clave(Recorta(articulo.Text()));
    const auto ficha = Consulta(EntreApostrofos("SELECT ubicacion FROM prods WHERE articulo = '", clave));
    // The host's check looks the location up by itself; reading it here fails for an article that has
    // vanished meanwhile.
    ficha->Campo("ubicacion");
    const std::int16_t almacen = AEntero16((*txtFields)(campo::kAlmacen).Text());
    if (Datos().UbicacionRestringida(clave, almacen, TraeConexion())) {
      Mensaje(703);
      EnfocaSiHabilitado(articulo);
      return;
    }
    const bool guardada = NuevaPartida();
    EnfocaSiHabilitado(articulo);
    if (!guardada) {
      // A scanner's next code takes its place.
      if (articulo.HasFocus()) Selecciona(articulo);
      return;
    }
    for (const std::int16_t campo : {campo::kDescripcion, campo::kArticulo, campo::kCantidad, campo::kPrecio})
      Escribe(campo, "");
  });
}

bool frmOp::NuevaPartida() {
  // Whether the typed line is done with: stored, or turned down by the host.
  bool lista = false;
  Trata("NuevaPartida", [&] {
    const PeticionProceso respuesta = IniciaProceso("Op005");
    if (respuesta.bandera) rechazado_ = true;
    if (std::exchange(rechazado_, false)) {
      lista = true;
      return;
    }

    // No number is taken for what cannot be saved.
    ExigeNumero(campo::kPrecio);
    if (modo_ == kAlta) ExigeNumero(campo::kOrdenCompra);
    // It has reported why; without a header the line would belong to no order.
    if (modo_ == kAlta && !CreaOp()) return;

    registro_ = Consulta("SELECT * FROM op WHERE (((op) = " + Decimal(op_) + "))");
    AccesoDatos& datos = Datos();
    constructor_->Limpia();
    constructor_->Tipo("INSERT");
    std::int32_t documento = 0;
    const std::int32_t entrada = datos.SiguienteFolio("oppart", TraeConexion(), documento, nullptr);
    const std::string& articulo = (*txtFields)(campo::kArticulo).Text();
    const std::string& observaciones = (*txtFields)(campo::kDescripcion).Text();
    const double cantidad = datos.ValorNumerico((*txtFields)(campo::kCantidad).Text());
    const double precio = datos.ValorNumerico((*txtFields)(campo::kPrecio).Text());
    const auto agrega = [&](const char* columna, const Value& valor) {
      constructor_->AgregaCampo("oppart", columna, valor);
    };
    agrega("id_entrada", entrada);
    agrega("op", op_);
    agrega("tipo_doc", registro_->Campo("Tipo_doc"));
    agrega("no_referen", registro_->Campo("Op"));
    agrega("articulo", articulo);
    agrega("cantidad", cantidad);
    agrega("precio", precio);
    agrega("observ", observaciones);
    agrega("partida", std::int16_t{0});
    agrega("usuario", Entorno()->UsuarioActual());
    agrega("usufecha", Hoy());
    agrega("usuhora", Hora());
    constructor_->Genera("oppart");
    constructor_->Ejecuta();
    lista = true;
    const bool leido = IgualSinCaso(Recorta(articulo), articulo_leido_);
    costos_[Decimal(entrada)] = {cantidad, leido ? costo_leido_ : 0};

    const std::int32_t renglones = fg2->Rows() - fg2->FixedRows();
    std::int32_t renglon = 1;
    while (renglon <= renglones && !datos.EstaVacio(fg2->TextMatrix(renglon, kArticulo))) ++renglon;
    if (renglon > renglones) return;
    fg2->SetTextMatrix(renglon, kArticulo, articulo);
    fg2->SetTextMatrix(renglon, kCantidad, ComoSeLeyo((*txtFields)(campo::kCantidad).Text(), cantidad));
    fg2->SetTextMatrix(renglon, kImporte, TextoConMiles(cantidad * precio));
    fg2->SetTextMatrix(renglon, kObservaciones, observaciones);
    fg2->SetTextMatrix(renglon, kEntrada, Decimal(entrada));
    fg2->SetRow(renglon);
  });
  return lista;
}

void frmOp::PonDescripcion() {
  Trata("PonDescripcion", [&] {
    AccesoDatos& datos = Datos();
    const auto recortado = [&](Recordset& filas, FixedText nombre) {
      return std::string(Recorta(datos.ValorTexto(filas.Campo(nombre))));
    };
    const auto lee_articulo = [&] {
      return Consulta(EntreApostrofos("SELECT descrip,unidad,costo_u FROM prods WHERE articulo = '",
                                      (*txtFields)(campo::kArticulo).Text()));
    };
    auto ficha = lee_articulo();
    if (ficha->Eof()) {
      const auto clave = Consulta(
          EntreApostrofos("SELECT * FROM clavesadd WHERE clave = '", (*txtFields)(campo::kArticulo).Text()));
      if (!clave->Eof()) {
        Escribe(campo::kArticulo, datos.ValorTexto(clave->Campo("Articulo")));
        Escribe(campo::kClaveSecundaria, datos.ValorTexto(clave->Campo("Clave")));
        Escribe(campo::kDato1, recortado(*clave, "Dato1"));
        Escribe(campo::kDato2, recortado(*clave, "Dato2"));
        ficha = lee_articulo();
        Escribe(campo::kPresentacion, recortado(*clave, "Dato1"));
        Escribe(campo::kUnidadDeClave, ficha->Eof() ? "" : recortado(*ficha, "unidad"));
      }
    }
    articulo_leido_.clear();
    if (!ficha->Eof()) {
      Escribe(campo::kDescripcion, recortado(*ficha, "descrip"));
      Escribe(campo::kUnidad, recortado(*ficha, "unidad"));
      costo_leido_ = NumeroOCero(ficha->Campo("costo_u"));
      articulo_leido_ = Recorta((*txtFields)(campo::kArticulo).Text());
    }
    // One piece per scan, unless a quantity was typed before.
    if (Check4->Value() == 1 && datos.EstaVacio((*txtFields)(campo::kCantidad).Text()))
      Escribe(campo::kCantidad, "1");
  });
}

void frmOp::PonTC() {
  Trata("PonTC", [&] {
    TextBox& tipo_cambio = (*txtFields)(campo::kTipoCambio);
    const auto moneda = Consulta(
        EntreApostrofos("SELECT * FROM monedas WHERE moneda = '", (*txtFields)(campo::kMoneda).Text()));
    if (moneda->Eof()) {
      Escribe(campo::kTipoCambio, "");
      return;
    }
    Escribe(campo::kTipoCambio, Datos().ValorTexto(moneda->Campo("Tc")));
    if (Datos().ValorNumerico(moneda->Campo("Base")) != 0) tipo_cambio.SetEnabled(false);
  });
}

std::string frmOp::TraeVends() {
  std::string nombre;
  Trata("TraeVends", [&] {
    if (Datos().EstaVacio((*txtFields)(campo::kConcepto).Text())) return;
    const auto vendedor = Consulta(
        EntreApostrofos("SELECT * FROM vends WHERE vend = '", (*txtFields)(campo::kDescripcion).Text()));
    if (!vendedor->Eof()) nombre = Datos().ValorTexto(vendedor->Campo("Nombre"));
  });
  return nombre;
}

bool frmOp::ValidaTab1() {
  // An order whose warehouse could not be checked is not finished.
  bool valido = false;
  Trata("ValidaTab1", [&] {
    TextBox& almacen = (*txtFields)(campo::kAlmacen);
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

void frmOp::fg2_KeyDown(KeyEvent& event) {
  Trata("fg2_KeyDown", [&] {
    if (modo_ == kConsulta || event.key != key::kDelete) return;
    const std::int32_t renglon = fg2->Row();
    if (renglon < fg2->FixedRows() || Datos().EstaVacio(fg2->TextMatrix(renglon, kArticulo))) return;
    const std::string entrada = fg2->TextMatrix(renglon, kEntrada);
    if (Recorta(entrada).empty()) return;
    Entorno()->EjecutaSQL("DELETE FROM oppart WHERE id_entrada = " + entrada);
    costos_.erase(entrada);
    fg2->RemoveItem(renglon);
  });
}

}  // namespace zuvi
