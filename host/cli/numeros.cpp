#include "host/cli/numeros.h"

#include <cmath>
#include <sstream>

#include "base/value.h"
#include "host/cli/opciones.h"
#include "host/shop/valuacion.h"

namespace zuvi::cli {
namespace {

/// Refuses what the shop cannot count out: the operations would post it.
void ExigePositiva(double cantidad, const std::string& texto, const char* que) {
  bool contable = false;
  try {
    contable = host::RedondeaCantidad(cantidad) > 0;
  } catch (const HostError&) {
    // Too large to be kept exactly.
  }
  if (!contable) throw MalUso(std::string(que) + " debe ser mayor que cero y contable, no \"" + texto + "\"");
}

}  // namespace

std::int32_t Entero(const std::string& texto, const char* que) {
  try {
    const double numero = ParseNumber(texto);
    if (numero == static_cast<double>(RoundToInt32(numero))) return RoundToInt32(numero);
  } catch (const HostError&) {
    // Told below.
  }
  throw MalUso(std::string(que) + " debe ser un número entero, no \"" + texto + "\"");
}

double Real(const std::string& texto, const char* que) {
  try {
    if (const double numero = ParseNumber(texto); std::isfinite(numero)) return numero;
  } catch (const HostError&) {
    // Told below.
  }
  throw MalUso(std::string(que) + " debe ser un número con punto decimal, no \"" + texto + "\"");
}

void ExigeNumeros(const std::string& forma, const std::vector<std::string>& argumentos) {
  std::istringstream nombres(forma);
  std::string nombre;
  for (const std::string& argumento : argumentos) {
    nombres >> nombre;
    if (nombre == "OP" || nombre == "[OP]") Entero(argumento, "La orden");
    if (nombre == "ALMACEN") Entero(argumento, "El almacén");
    if (nombre == "CANTIDAD") ExigePositiva(Real(argumento, "La cantidad"), argumento, "La cantidad");
    if (nombre == "KITS")
      ExigePositiva(Entero(argumento, "La cantidad de kits"), argumento, "La cantidad de kits");
  }
}

}  // namespace zuvi::cli
