#include "host/odbc/limites.h"

#include <cstdlib>
#include <string>

#include "base/error.h"

namespace zuvi::host {
namespace {

int DelEntorno(const char* nombre, int si_falta) {
  constexpr int kMaximo = 3600;
  const char* texto = std::getenv(nombre);
  if (!texto || !*texto) return si_falta;
  char* fin = nullptr;
  const long segundos = std::strtol(texto, &fin, 10);
  if (*fin || segundos < 1 || segundos > kMaximo)
    throw HostError(std::string(nombre) + " debe ser un número entero de segundos, de 1 a 3600, no \"" +
                    texto + "\"");
  return static_cast<int>(segundos);
}

}  // namespace

Limites LimitesDelEntorno() {
  const Limites normales;
  return {.conexion = DelEntorno("ZUVI_LIMITE_CONEXION", normales.conexion),
          .lectura = DelEntorno("ZUVI_LIMITE_LECTURA", normales.lectura),
          .escritura = DelEntorno("ZUVI_LIMITE_ESCRITURA", normales.escritura),
          .candado = DelEntorno("ZUVI_LIMITE_CANDADO", normales.candado)};
}

}  // namespace zuvi::host
