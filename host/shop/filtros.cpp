#include "host/shop/filtros.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "base/clock.h"
#include "base/text.h"
#include "base/value.h"
#include "host/shop/numero_escrito.h"

namespace zuvi::host {
namespace {

constexpr std::size_t kDecimales = 6;
constexpr std::size_t kLargoFecha = 10;

bool EsDigito(int c) { return c >= '0' && c <= '9'; }

/// A property of the box that not every box has.
std::optional<std::int32_t> Entero(const ObjectPtr& caja, const char* nombre) {
  const auto id = caja->Find(nombre);
  if (!id) return std::nullopt;
  return ToInt32(caja->Read(*id, {}));
}

std::int16_t FiltraNumero(const Caja& caja, std::int16_t c, bool con_signo, std::size_t decimales) {
  // A separator is never dropped nor changed while typing: what is left of "1.2.3" or "1,690.50" would be
  // another number. The text is understood or refused as a whole.
  if (c == ',' || c == '.') return c;
  const auto punto = caja.texto.find_last_of(".,");
  if (c == '-')
    return con_signo && caja.al_principio && caja.texto.find('-') == std::string::npos ? c : std::int16_t{0};
  if (!EsDigito(c)) return 0;
  const bool lleno =
      !caja.al_principio && punto != std::string::npos && caja.texto.size() - punto > decimales;
  return lleno ? std::int16_t{0} : c;
}

std::string FormateaNumero(const std::string& texto, std::size_t decimales) {
  std::string numero;
  try {
    numero = NumberText(NumeroEscrito(texto));
  } catch (const HostError&) {
    return texto;
  }
  if (decimales == 0 || numero.find('E') != std::string::npos) return numero;
  auto punto = numero.find('.');
  if (punto == std::string::npos) {
    punto = numero.size();
    numero += '.';
  }
  const std::size_t escritos = numero.size() - punto - 1;
  if (escritos < decimales) numero.append(decimales - escritos, '0');
  return numero;
}

/// The groups of digits of a text, or nothing if it holds anything else than digits and separators.
std::optional<std::vector<std::string>> Grupos(const std::string& texto) {
  std::vector<std::string> grupos(1);
  for (const char c : texto) {
    if (EsDigito(c))
      grupos.back() += c;
    else if (c == '/' || c == '-' || c == '.')
      grupos.emplace_back();
    else
      return std::nullopt;
  }
  return grupos;
}

std::string FormateaFecha(const std::string& texto) {
  auto grupos = Grupos(std::string(Trim(texto)));
  if (!grupos) return texto;
  if (grupos->size() == 1 && (grupos->front().size() == 6 || grupos->front().size() == 8)) {
    const std::string todo = grupos->front();
    grupos = {todo.substr(0, 2), todo.substr(2, 2), todo.substr(4)};
  }
  if (grupos->size() != 3) return texto;
  if (grupos->front().size() == 4) std::swap((*grupos)[0], (*grupos)[2]);
  std::array<int, 3> numeros{};
  for (std::size_t i = 0; i < numeros.size(); ++i) {
    if ((*grupos)[i].empty() || (*grupos)[i].size() > 4) return texto;
    numeros[i] = std::stoi((*grupos)[i]);
  }
  // Two digits of a year mean the century of today.
  if ((*grupos)[2].size() <= 2) numeros[2] += Ahora().anio / 100 * 100;
  try {
    return Date::FromCivil({.anio = numeros[2], .mes = numeros[1], .dia = numeros[0]}).Formatea("dd-MM-yyyy");
  } catch (const HostError&) {
    return texto;
  }
}

}  // namespace

Caja ContenidoDe(const ObjectPtr& caja) {
  if (!caja) throw HostError(ErrorNumber::ObjectNotSet);
  return {.etiqueta = ToText(caja->Call("Tag")), .texto = ToText(caja->Call("Text"))};
}

Caja CajaDe(const ObjectPtr& caja) {
  Caja leida = ContenidoDe(caja);
  const auto inicio = Entero(caja, "SelStart");
  const auto largo = Entero(caja, "SelLength");
  leida.al_principio = inicio ? *inicio == 0 : leida.texto.empty();
  if (inicio && largo && *inicio >= 0 && *largo > 0) {
    // What is selected is replaced by the typed character.
    std::u16string ancho = Utf16(leida.texto);
    const auto desde = std::min(static_cast<std::size_t>(*inicio), ancho.size());
    ancho.erase(desde, static_cast<std::size_t>(*largo));
    leida.texto = Utf8(ancho);
  }
  return leida;
}

std::int16_t Filtra(const Caja& caja, std::int16_t caracter) {
  if (caracter >= 0 && caracter < ' ') return caracter;
  if (caja.etiqueta == "U") return static_cast<std::int16_t>(UpperCase(static_cast<char16_t>(caracter)));
  if (caja.etiqueta == "N") return FiltraNumero(caja, caracter, false, std::string::npos - 1);
  if (caja.etiqueta == "SD") return FiltraNumero(caja, caracter, false, kDecimales);
  if (caja.etiqueta == "SN") return FiltraNumero(caja, caracter, true, std::string::npos - 1);
  if (caja.etiqueta == "D") {
    const bool admitido = EsDigito(caracter) || caracter == '/' || caracter == '-';
    return admitido && caja.texto.size() < kLargoFecha ? caracter : std::int16_t{0};
  }
  return caracter;
}

std::string Formatea(const Caja& caja) {
  if (Trim(caja.texto).empty()) return caja.texto;
  if (caja.etiqueta == "U") return ToUpper(caja.texto);
  if (caja.etiqueta == "N" || caja.etiqueta == "SN") return FormateaNumero(caja.texto, 0);
  if (caja.etiqueta == "SD") return FormateaNumero(caja.texto, 2);
  if (caja.etiqueta == "D") return FormateaFecha(caja.texto);
  return caja.texto;
}

}  // namespace zuvi::host
