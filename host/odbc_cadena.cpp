#include "host/odbc_cadena.h"

#include <algorithm>

#include "base/text.h"

namespace zuvi::host {
namespace {

/// End of a value that starts at `desde`; inside braces a semicolon is part of it and "}}" is a brace.
std::size_t FinDeValor(std::string_view cadena, std::size_t desde) {
  std::size_t i = std::min(cadena.find_first_not_of(' ', desde), cadena.size());
  if (i < cadena.size() && cadena[i] == '{') {
    for (++i; i < cadena.size(); ++i) {
      if (cadena[i] != '}') continue;
      if (i + 1 == cadena.size() || cadena[i + 1] != '}') break;
      ++i;
    }
  }
  return std::min(cadena.find(';', i), cadena.size());
}

}  // namespace

CadenaOdbc::CadenaOdbc(std::string_view cadena) {
  for (std::size_t inicio = 0; inicio < cadena.size();) {
    const std::size_t igual = cadena.find('=', inicio);
    const std::size_t corte = cadena.find(';', inicio);
    if (igual == std::string_view::npos || corte < igual) {
      inicio = corte == std::string_view::npos ? cadena.size() : corte + 1;
      continue;
    }
    const std::size_t fin = FinDeValor(cadena, igual + 1);
    atributos_.emplace_back(Recorta(cadena.substr(inicio, igual - inicio)),
                            Recorta(cadena.substr(igual + 1, fin - igual - 1)));
    inicio = fin + 1;
  }
}

std::string CadenaOdbc::Trae(std::string_view nombre) const {
  for (const auto& [clave, valor] : atributos_) {
    if (!IgualSinCaso(clave, nombre)) continue;
    if (valor.size() < 2 || valor.front() != '{' || valor.back() != '}') return valor;
    std::string limpio;
    for (std::size_t i = 1; i + 1 < valor.size(); ++i) {
      limpio += valor[i];
      if (valor[i] == '}') ++i;
    }
    return limpio;
  }
  return {};
}

void CadenaOdbc::Pon(std::string_view nombre, std::string_view valor) {
  Quita(nombre);
  atributos_.emplace_back(nombre, valor);
}

void CadenaOdbc::Quita(std::string_view nombre) {
  std::erase_if(atributos_, [&](const auto& atributo) { return IgualSinCaso(atributo.first, nombre); });
}

std::string CadenaOdbc::Texto() const {
  std::string texto;
  for (const auto& [clave, valor] : atributos_) texto += clave + "=" + valor + ";";
  return texto;
}

}  // namespace zuvi::host
