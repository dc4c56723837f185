// Entry of a line: what was typed is checked, stored and shown; the article's data come from its key.
#include <utility>

#include "base/text.h"
#include "orders/campos.h"
#include "orders/frm_op.h"
#include "windows/sentencia.h"

namespace zuvi {

bool frmOp::PartidaAceptable() {
  const auto rechaza = [this](NumeroMensaje mensaje, std::int16_t campo) {
    Mensaje(mensaje);
    Enfoca(campo);
    return false;
  };
  const std::string& articulo = Texto(campo::kArticulo);
  if (Datos().EstaVacio(articulo)) return rechaza(234, campo::kArticulo);
  if (!Datos().ExisteClave(articulo, "prods", "articulo", TraeConexion()))
    return rechaza(235, campo::kArticulo);
  // Written so that what is not a number at all is refused too.
  if (!(Datos().ValorNumerico(Texto(campo::kCantidad)) > 0)) return rechaza(236, campo::kCantidad);

  const std::string clave(Trim(articulo));
  const auto ficha = Consulta(EntreApostrofos("SELECT ubicacion FROM prods WHERE articulo = '", clave));
  // The host's check looks the location up by itself; reading it here fails for an article that has vanished
  // meanwhile.
  ficha->Campo("ubicacion");
  const std::int16_t almacen = ToInt16(Texto(campo::kAlmacen));
  return !Datos().UbicacionRestringida(clave, almacen, TraeConexion()) || rechaza(703, campo::kArticulo);
}

void frmOp::AgregaPartida() {
  Trata("LlenaPartida", [&] {
    if (!PartidaAceptable()) return;
    const bool lista = NuevaPartida();
    Enfoca(campo::kArticulo);
    if (!lista) {
      // A scanner's next code takes its place.
      if (TextBox& articulo = Caja(campo::kArticulo); articulo.HasFocus()) Selecciona(articulo);
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
    const Partida partida = InsertaPartida();
    lista = true;
    const bool leido = EqualsIgnoringCase(Trim(partida.articulo), articulo_leido_);
    costos_[Decimal(partida.entrada)] = {partida.cantidad, leido ? costo_leido_ : 0};
    MuestraPartida(partida);
  });
  return lista;
}

frmOp::Partida frmOp::InsertaPartida() {
  AccesoDatos& datos = Datos();
  constructor_->Limpia();
  constructor_->Tipo("INSERT");
  std::int32_t documento = 0;
  const std::int32_t entrada = datos.SiguienteFolio("oppart", TraeConexion(), documento, nullptr);
  Partida partida{.entrada = entrada,
                  .articulo = Texto(campo::kArticulo),
                  .cantidad_tecleada = Texto(campo::kCantidad),
                  .observaciones = Texto(campo::kDescripcion),
                  .cantidad = datos.ValorNumerico(Texto(campo::kCantidad)),
                  .precio = datos.ValorNumerico(Texto(campo::kPrecio))};
  const auto agrega = [&](const char* columna, const Value& valor) {
    constructor_->AgregaCampo("oppart", columna, valor);
  };
  agrega("id_entrada", entrada);
  agrega("op", op_);
  agrega("tipo_doc", registro_->Campo("Tipo_doc"));
  agrega("no_referen", registro_->Campo("Op"));
  agrega("articulo", partida.articulo);
  agrega("cantidad", partida.cantidad);
  agrega("precio", partida.precio);
  agrega("observ", partida.observaciones);
  agrega("partida", std::int16_t{0});
  Firma("oppart");
  constructor_->Genera("oppart");
  constructor_->Ejecuta();
  return partida;
}

void frmOp::PonDescripcion() {
  Trata("PonDescripcion", [&] {
    AccesoDatos& datos = Datos();
    const auto recortado = [&](Recordset& filas, FixedText nombre) {
      return std::string(Trim(datos.ValorTexto(filas.Campo(nombre))));
    };
    const auto lee_articulo = [&] {
      return Consulta(EntreApostrofos("SELECT descrip,unidad,costo_u FROM prods WHERE articulo = '",
                                      Texto(campo::kArticulo)));
    };
    auto ficha = lee_articulo();
    if (ficha->Eof()) {
      const auto clave =
          Consulta(EntreApostrofos("SELECT * FROM clavesadd WHERE clave = '", Texto(campo::kArticulo)));
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
      costo_leido_ = NumberOrZero(ficha->Campo("costo_u"));
      articulo_leido_ = Trim(Texto(campo::kArticulo));
    }
    // One piece per scan, unless a quantity was typed before.
    if (Check4->Value() == 1 && datos.EstaVacio(Texto(campo::kCantidad))) Escribe(campo::kCantidad, "1");
  });
}

}  // namespace zuvi
