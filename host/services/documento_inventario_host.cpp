#include "host/services/documento_inventario_host.h"

#include "base/text.h"
#include "host/odbc/connection_lost.h"
#include "host/odbc/retry.h"
#include "host/shop/costo_promedio.h"
#include "host/shop/valuacion.h"
#include "services/by_name.h"

namespace zuvi::host {

const MemberTable* DocumentoInventarioHost::Members() const {
  using D = DocumentoInventarioHost;
  static const MemberTable table = MemberTable::Of<D>()
                                       .Method<&D::PonAmbiente>("PonAmbiente", {"ambiente"})
                                       .Method<&D::PonDatoDocumento>("PonDatoDocumento", {"dato"})
                                       .Method<&D::PonDatoFecha>("PonDatoFecha", {"dato"})
                                       .Method<&D::PonFecha>("PonFecha", {"fecha"})
                                       .Method<&D::PonTipo>("PonTipo", {"tipo"})
                                       .Method<&D::PonConcepto>("PonConcepto", {"concepto"})
                                       .Method<&D::PonOrden>("PonOrden", {"orden"})
                                       .Method<&D::PonFolio>("PonFolio", {"folio"})
                                       .Method<&D::PonUsuario>("PonUsuario", {"usuario"})
                                       .Method<&D::PonAlmacen>("PonAlmacen", {"almacen"})
                                       .Method<&D::PonArticulo>("PonArticulo", {"articulo"})
                                       .Method<&D::PonCantidad>("PonCantidad", {"cantidad"})
                                       .Method<&D::PonCosto>("PonCosto", {"costo"})
                                       .Method<&D::AplicaMovimiento>("AplicaMovimiento", {"numero"}, 1);
  return &table;
}

namespace {

/// Runs the transaction of a movement. If it is not known whether it was saved, the error says how to see.
template <class Cuerpo>
void DiciendoCual(const std::string& id, Cuerpo&& cuerpo) {
  try {
    WithRetry(cuerpo);
  } catch (const ConnectionLost& error) {
    if (!error.InDoubt()) throw;
    throw ConnectionLost(
        "Movimiento " + id + ": " + error.what() + " Se ve con SELECT * FROM movimientos WHERE id = " + id,
        error.NativeCode(), true);
  }
}

}  // namespace

double DocumentoInventarioHost::AplicaMovimiento(std::int32_t& numero) {
  anfitrion_->Llamada("AplicaMovimiento", tipo_, concepto_, orden_, almacen_, articulo_, cantidad_, costo_);
  if (tipo_ != kEntrada && tipo_ != kSalida)
    throw HostError("El tipo de un movimiento debe ser E o S, no \"" + tipo_ + "\"");
  BaseDatos& base = *anfitrion_->Base();
  const double cantidad = RedondeaCantidad(cantidad_);
  const std::int64_t importe = ACentavos(EsMovimientoDeKit(tipo_, concepto_) ? costo_ : cantidad * costo_);
  const std::int32_t asignado = anfitrion_->NumeroDeMovimiento();

  DiciendoCual(Decimal(asignado), [&] {
    Transaccion transaccion(base);
    Asienta(base, asignado, cantidad, importe);
    transaccion.Confirma();
  });
  anfitrion_->AnotaMovimiento();
  numero = asignado;
  return DeCentavos(importe);
}

void DocumentoInventarioHost::Asienta(BaseDatos& base, std::int32_t numero, double cantidad,
                                      std::int64_t importe) const {
  const Engine motor = base.GetEngine();
  const bool entra = tipo_ == kEntrada;
  const std::string id = Decimal(numero);
  const std::string almacen = Decimal(RoundToInt32(almacen_));
  const std::string articulo = Literal(motor, articulo_);
  const std::string cambio = NumberText(entra ? cantidad : -cantidad);
  const std::string valor = std::to_string(entra ? importe : -importe);

  const auto costo = CostoBajoCandado(base, articulo);
  // The row remembers its last movement. That also makes every UPDATE a change: a server may count rows
  // that stay as they were as not touched.
  const auto tocadas = base.Ejecuta(
      Join({"UPDATE existencias SET cantidad = ROUND(cantidad + ", cambio, ", 6), valor = valor + ", valor,
            ", movimiento = ", id, " WHERE articulo = ", articulo, " AND almacen = ", almacen}));
  if (tocadas == 0)
    base.Ejecuta(Join({"INSERT INTO existencias (articulo, almacen, cantidad, valor, movimiento) VALUES (",
                       articulo, ", ", almacen, ", ", cambio, ", ", valor, ", ", id, ")"}));
  if (costo && !ExplicaElCosto(*costo, cantidad, importe)) PonCostoPromedio(base, articulo);
  const std::string valores = Join(
      {id, Literal(motor, fecha_), Literal(motor, tipo_), Literal(motor, concepto_), Decimal(orden_),
       Literal(motor, folio_), Decimal(referencia_), Literal(motor, documento_), Literal(motor, usuario_),
       almacen, articulo, NumberText(cantidad), NumberText(costo_), std::to_string(importe)},
      ", ");
  base.Ejecuta(
      Join({"INSERT INTO movimientos (id, fecha, tipo, concepto, orden, folio, referencia, "
            "documento, usuario, almacen, articulo, cantidad, costo, importe) VALUES (",
            valores, ")"}));
}

}  // namespace zuvi::host
