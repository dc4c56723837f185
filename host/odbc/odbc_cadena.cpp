#include "host/odbc/odbc_cadena.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace zuvi::host {
namespace {

/// In the name of whatever holds a password, misspelled and in Spanish too.
constexpr std::array kSecretos{"pwd", "pass", "contrase", "clave", "secret"};
/// What only a connection string has, wherever it stands in it.
constexpr std::array kDelatan{"DRIVER", "DSN", "FILEDSN", "SERVER", "UID", "USER"};
/// Names by which a string is known that lacks what to connect with.
constexpr std::array kHabituales{"DRIVER", "DSN",      "FILEDSN", "SERVER",  "DATABASE", "UID",     "USER",
                                 "PWD",    "PASSWORD", "SOCKET",  "CHARSET", "OPTION",   "SAVEFILE"};

template <class Lista>
bool EsDe(const Lista& lista, std::string_view nombre) {
  return std::ranges::any_of(lista, [&](const char* uno) { return IgualSinCaso(uno, nombre); });
}

bool EsSecreto(std::string_view nombre) {
  const std::string minusculas = Minusculas(nombre);
  return std::ranges::any_of(kSecretos,
                             [&](const char* parte) { return minusculas.find(parte) != std::string::npos; });
}

/// Attribute names are words; what has a dot or a slash in it is part of a file's name.
bool EsPalabra(std::string_view nombre) {
  return !nombre.empty() && std::ranges::all_of(nombre, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == ' ' || static_cast<unsigned char>(c) >= 0x80;
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

std::vector<std::string> CadenaOdbc::Nombres() const {
  std::vector<std::string> nombres;
  for (const auto& [nombre, valor] : atributos_) nombres.push_back(nombre);
  return nombres;
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
  // A file whose name starts like an attribute is given with its folder: "./driver=x".
  const std::size_t igual = texto.find('=');
  if (igual == std::string_view::npos) return false;
  if (texto.substr(0, igual).find_first_of("/\\") != std::string_view::npos) return false;
  const std::vector<std::string> nombres = CadenaOdbc(texto).Nombres();
  return !nombres.empty() &&
         (EsDe(kHabituales, nombres.front()) || std::ranges::any_of(nombres, [](const std::string& nombre) {
            return EsDe(kDelatan, nombre) || EsSecreto(nombre);
          }));
}

std::string SinClave(std::string_view cadena) {
  CadenaOdbc atributos(cadena);
  if (atributos.Defecto().empty()) {
    for (const std::string& nombre : atributos.Nombres())
      if (EsSecreto(nombre)) atributos.Quita(nombre);
    return atributos.Texto();
  }
  // Where the string breaks off somewhere, nobody knows where the password ends.
  const std::string minusculas = Minusculas(cadena);
  std::size_t corte = std::string::npos;
  for (const char* parte : kSecretos) corte = std::min(corte, minusculas.find(parte));
  if (const std::size_t direccion = minusculas.find("://"); direccion != std::string::npos)
    corte = std::min(corte, direccion + 3);
  return corte >= cadena.size() ? std::string(cadena) : std::string(cadena.substr(0, corte)) + "…";
}

}  // namespace zuvi::host
