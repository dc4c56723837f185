#include "host/shop/folios.h"

#include "host/odbc/retry.h"

namespace zuvi::host {

std::int32_t TomaFoliosEn(Transaccion& transaccion, const std::string& clave, std::int32_t cuantos) {
  BaseDatos& base = transaccion.Base();
  const std::string literal = Literal(base.GetEngine(), clave);
  // The UPDATE comes first: it locks the row, and whoever comes second waits here.
  if (base.Ejecuta("UPDATE folios SET ultimo = ultimo + " + Decimal(cuantos) + " WHERE clave = " + literal) ==
      0)
    base.Ejecuta("INSERT INTO folios (clave, ultimo) VALUES (" + literal + ", " + Decimal(cuantos) + ")");
  return ToInt32(base.Consulta("SELECT ultimo FROM folios WHERE clave = " + literal)->Campo(0));
}

std::int32_t TomaFolios(BaseDatos& base, const std::string& clave, std::int32_t cuantos) {
  return WithRetry([&] {
    Transaccion transaccion(base);
    const std::int32_t ultimo = TomaFoliosEn(transaccion, clave, cuantos);
    transaccion.Confirma();
    return ultimo;
  });
}

}  // namespace zuvi::host
