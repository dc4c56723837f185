#include "host/shop/ocupadas.h"

#include "base/clock.h"
#include "host/shop/folios.h"

namespace zuvi::host {

std::shared_ptr<Recordset> OrdenesOcupadas(BaseDatos& base) {
  return base.Consulta(
      "SELECT op, estado, usuario, usufecha, usuhora FROM op WHERE ocupado <> 0 ORDER BY op");
}

bool LiberaOrden(BaseDatos& base, std::int32_t op, const std::string& usuario) {
  const std::string numero = Decimal(op);
  const auto orden = base.Consulta("SELECT usuario FROM op WHERE ocupado <> 0 AND op = " + numero);
  if (orden->Eof()) return false;
  const Value ocupante = orden->Campo(0);
  const std::int32_t id = TomaFolios(base, "bitacora");
  Transaccion transaccion(base);
  if (base.Ejecuta("UPDATE op SET ocupado = 0 WHERE ocupado <> 0 AND op = " + numero) == 0) return false;
  AnotaEnBitacora(base, id, usuario,
                  "Liberada la orden " + numero + ", guardada por última vez por " +
                      (ocupante.IsNull() ? "nadie" : ToText(ocupante)));
  transaccion.Confirma();
  return true;
}

void AnotaEnBitacora(BaseDatos& base, std::int32_t id, const std::string& usuario,
                     const std::string& suceso) {
  const Engine motor = base.GetEngine();
  base.Ejecuta("INSERT INTO bitacora (id, fecha, usuario, suceso) VALUES (" + Decimal(id) + ", " +
               LiteralFecha(motor, Date::FromCivil(Ahora())) + ", " + Literal(motor, usuario) + ", " +
               Literal(motor, suceso) + ")");
}

}  // namespace zuvi::host
