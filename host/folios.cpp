#include "host/folios.h"

#include "host/reintento.h"

namespace zuvi::host {

std::int32_t TomaFolios(BaseDatos& base, const std::string& clave, std::int32_t cuantos) {
  const std::string literal = Literal(base.TraeMotor(), clave);
  return ConReintento([&] {
    Transaccion transaccion(base);
    // The UPDATE comes first: it locks the row, and whoever comes second waits here.
    if (base.Ejecuta("UPDATE folios SET ultimo = ultimo + " + Decimal(cuantos) +
                     " WHERE clave = " + literal) == 0)
      base.Ejecuta("INSERT INTO folios (clave, ultimo) VALUES (" + literal + ", " + Decimal(cuantos) + ")");
    const std::int32_t ultimo =
        AEntero32(base.Consulta("SELECT ultimo FROM folios WHERE clave = " + literal)->Campo(0));
    transaccion.Confirma();
    return ultimo;
  });
}

}  // namespace zuvi::host
