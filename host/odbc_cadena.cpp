#include "host/odbc_cadena.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace zuvi::host {
namespace {

constexpr std::array kClaves{"PWD", "PASSWORD"};
/// Names by which a string is known that lacks what to connect with.
constexpr std::array kHabituales{"DRIVER", "DSN",      "FILEDSN", "SERVER",  "DATABASE", "UID",     "USER",
                                 "PWD",    "PASSWORD", "SOCKET",  "CHARSET", "OPTION",   "SAVEFILE"};

template <class Lista>
bool EsDe(const Lista& lista, std::string_view nombre) {
  return std::ranges::any_of(lista, [&](const char* uno) { return IgualSinCaso(uno, nombre); });
}

/// Attribute names are words; what has a dot or a slash in it is part of a file's name.
bool EsPalabra(std::string_view nombre) {
  return !nombre.empty() && std::ranges::all_of(nombre, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == ' ';
  });
}

struct Valor {
  std::size_t fin = 0;  // at the semicolon after it, or the end of the string
  bool completo = true;
};

/// Inside braces a semicolon is part of the value and "}}" is a brace.
Valor LeeValor(std::string_view cadena, std::size_t desde) {
  std::size_t i = std::min(cadena.find_first_not_of(' ', desde), cadena.size());
  Valor valor;
  if (i < cadena.size() && cadena[i] == '{') {
    valor.completo = false;
    for (++i; i < cadena.size(); ++i) {
      if (cadena[i] != '}') continue;
      if (i + 1 < cadena.size() && cadena[i + 1] == '}') {
        ++i;
        continue;
      }
      ++i;
      valor.completo = Recorta(cadena.substr(i, std::min(cadena.find(';', i), cadena.size()) - i)).empty();
      break;
    }
  }
  valor.fin = std::min(cadena.find(';', i), cadena.size());
  return valor;
}

}  // namespace

CadenaOdbc::CadenaOdbc(std::string_view cadena) {
  for (std::size_t inicio = 0; inicio < cadena.size();) {
    const std::size_t igual = cadena.find('=', inicio);
    const std::size_t corte = std::min(cadena.find(';', inicio), cadena.size());
    if (corte < igual || igual == std::string_view::npos) {
      if (!Recorta(cadena.substr(inicio, corte - inicio)).empty() && defecto_.empty())
        defecto_ = "hay una parte sin «=»";
      inicio = corte + 1;
      continue;
    }
    const std::string nombre(Recorta(cadena.substr(inicio, igual - inicio)));
    const Valor valor = LeeValor(cadena, igual + 1);
    if (defecto_.empty() && !EsPalabra(nombre)) defecto_ = "hay un valor sin nombre de atributo";
    if (defecto_.empty() && !valor.completo)
      defecto_ = "las llaves de " + nombre + " no cierran donde termina";
    if (!Tiene(nombre))
      atributos_.emplace_back(nombre, Recorta(cadena.substr(igual + 1, valor.fin - igual - 1)));
    inicio = valor.fin + 1;
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

bool CadenaOdbc::Tiene(std::string_view nombre) const {
  return std::ranges::any_of(atributos_,
                             [&](const auto& atributo) { return IgualSinCaso(atributo.first, nombre); });
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

bool PareceCadena(std::string_view texto) {
  const CadenaOdbc cadena(texto);
  const std::string primero = cadena.Primero();
  // A file whose name starts like an attribute is given with its folder: "./driver=x".
  const std::size_t igual = texto.find('=');
  if (igual == std::string_view::npos) return false;
  std::string_view principio = texto.substr(0, igual);
  while (!principio.empty() && (principio.front() == ';' || principio.front() == ' '))
    principio.remove_prefix(1);
  if (!EsPalabra(Recorta(principio)) || !IgualSinCaso(Recorta(principio), primero)) return false;
  return EsDe(kHabituales, primero) || cadena.Tiene("DRIVER") || cadena.Tiene("DSN") ||
         cadena.Tiene("FILEDSN");
}

std::string SinClave(std::string_view cadena) {
  CadenaOdbc atributos(cadena);
  if (atributos.Defecto().empty()) {
    for (const char* clave : kClaves) atributos.Quita(clave);
    return atributos.Texto();
  }
  // Where the string breaks off somewhere, nobody knows where the password ends.
  const std::string minusculas = Minusculas(cadena);
  std::size_t corte = std::min(minusculas.find("pwd"), minusculas.find("password"));
  if (const std::size_t direccion = minusculas.find("://"); direccion != std::string::npos)
    corte = std::min(corte, direccion + 3);
  return corte >= cadena.size() ? std::string(cadena) : std::string(cadena.substr(0, corte)) + "…";
}

}  // namespace zuvi::host
