#include "host/shop/ordenes.h"

#include "host/shop/celdas.h"

namespace zuvi::host {

std::shared_ptr<Recordset> ResumenDeOrdenes(BaseDatos& base) {
  return base.Consulta(
      "SELECT op.op, op.estado, op.cerrado, op.ocupado, op.f_emision, op.fechaEntrega, op.almacen, "
      "almacen.nombre, op.usuario, op.usufecha, op.usuhora, COUNT(oppart.id_entrada) AS partidas, "
      "COALESCE(SUM(oppart.cantidad), 0) AS cantidad, COALESCE(SUM(oppart.terminado), 0) AS terminado, "
      "COALESCE(SUM(oppart.cantidad * oppart.precio), 0) AS importe FROM op LEFT JOIN almacen ON "
      "almacen.almacen = op.almacen LEFT JOIN oppart ON oppart.op = op.op GROUP BY op.op, op.estado, "
      "op.cerrado, op.ocupado, op.f_emision, op.fechaEntrega, op.almacen, almacen.nombre, op.usuario, "
      "op.usufecha, op.usuhora ORDER BY op.op");
}

std::string EstadoEnPalabras(Recordset& orden) {
  std::string estado = TextOrNothing(orden.Campo("estado")) == "CO" ? "Confirmada" : "Pendiente";
  if (NumeroDe(orden.Campo("cerrado")) != 0) estado += ", cerrada";
  return estado;
}

PartidasDeOrden::PartidasDeOrden(BaseDatos& base, std::int32_t op) {
  for (const auto filas = base.Consulta("SELECT articulo, cantidad, terminado FROM oppart WHERE op = " +
                                        Decimal(op) + " ORDER BY id_entrada");
       !filas->Eof(); filas->MoveNext()) {
    ++cuantas;
    const double cantidad = NumeroDe(filas->Campo("cantidad"));
    const Value terminado = filas->Campo("terminado");
    if (!terminado.IsNull() && NumeroDe(terminado) == cantidad) continue;
    por_entregar += "  " + TextOrNothing(filas->Campo("articulo")) + ": " + NumberText(NumeroDe(terminado)) +
                    " de " + NumberText(cantidad) + "\n";
  }
}

bool HayOrden(BaseDatos& base, std::int32_t op) {
  return !base.Consulta("SELECT op FROM op WHERE op = " + Decimal(op))->Eof();
}

DeOrden::DeOrden(std::int32_t op)
    : orden("La orden " + Decimal(op)),
      no_existe(orden + " no existe"),
      sin_partidas(orden + " no tiene partidas que entregar"),
      ya_entregada(orden + " ya está entregada. ¿Entregarla otra vez?"),
      no_cancelada(orden + " no se canceló"),
      no_ocupada(orden + " no está ocupada") {}

}  // namespace zuvi::host
