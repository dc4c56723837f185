#include "host/shop/numero_escrito.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"
#include "base/value.h"

namespace zuvi::host {
namespace {

constexpr std::string_view kSeparadores = ".,", kDigitos = "0123456789";
constexpr std::size_t kGrupo = 3;

/// Whether separators part a whole number in threes: 1,690 but not 16,90 nor 0,690.
bool Agrupado(std::string_view entero, char separador) {
  const auto primero = std::min(entero.find(separador), entero.size());
  if (primero == 0 || primero > kGrupo || entero.front() == '0') return false;
  const std::string_view resto = entero.substr(primero);
  if (resto.size() % (kGrupo + 1) != 0) return false;
  for (std::size_t i = 0; i < resto.size(); ++i)
    if ((i % (kGrupo + 1) == 0) != (resto[i] == separador)) return false;
  return true;
}

std::string Sin(std::string_view texto, char separador) {
  std::string cifras(texto);
  std::erase(cifras, separador);
  return cifras;
}

[[noreturn]] void NoEsNumero(const std::string& texto) {
  throw HostError("\"" + texto + "\" no es un número", ErrorNumber::TypeMismatch);
}

/// The same number with a point as its only separator.
std::string ConPunto(const std::string& texto, std::string_view cifras) {
  const auto comas = std::ranges::count(cifras, ','), puntos = std::ranges::count(cifras, '.');
  if (comas == 0 && puntos <= 1) return std::string(cifras);
  std::string signo;
  if (cifras.front() == '-' || cifras.front() == '+') {
    signo = cifras.substr(0, 1);
    cifras.remove_prefix(1);
  }
  const auto ultimo = cifras.find_last_of(kSeparadores);
  if (cifras.find_first_not_of(std::string(kDigitos).append(kSeparadores)) != cifras.npos) NoEsNumero(texto);
  const std::string_view entero = cifras.substr(0, ultimo), decimales = cifras.substr(ultimo + 1);
  const char marca = cifras[ultimo];
  // One comma alone.
  if (comas + puntos == 1) {
    if (Agrupado(cifras, marca)) {
      const std::string junto = signo + Sin(cifras, marca);
      throw HostError("\"" + texto + "\" se puede leer como " + junto + " o como " + signo +
                          std::string(entero) + "." + std::string(decimales) +
                          ": escriba uno de los dos, sin coma",
                      ErrorNumber::TypeMismatch);
    }
    return signo + std::string(entero) + "." + std::string(decimales);
  }
  // Several of one kind part the digits; the last of two kinds is the decimal mark.
  if (comas == 0 || puntos == 0) {
    if (!Agrupado(cifras, marca)) NoEsNumero(texto);
    return signo + Sin(cifras, marca);
  }
  const char separador = marca == '.' ? ',' : '.';
  if ((marca == '.' ? puntos : comas) != 1 || !Agrupado(entero, separador)) NoEsNumero(texto);
  return signo + Sin(entero, separador) + "." + std::string(decimales);
}

}  // namespace

double NumeroEscrito(const std::string& texto) {
  const std::string_view cifras = Trim(texto);
  if (cifras.empty()) NoEsNumero(texto);
  const std::string numero = ConPunto(texto, cifras);
  try {
    return ParseNumber(numero);
  } catch (const HostError& error) {
    if (error.Number() != ErrorNumber::Overflow) NoEsNumero(texto);
    throw HostError("\"" + texto + "\" es un número demasiado grande", ErrorNumber::Overflow);
  }
}

}  // namespace zuvi::host
