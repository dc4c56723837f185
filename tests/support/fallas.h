// The ways in which host calls fail, for tests that let each call fail once.
#pragma once

#include <array>
#include <string>

#include "tests/support/mundo.h"

namespace zuvi::pruebas {

inline constexpr std::array kClasesDirectas{Clase::Texto, Clase::SinTexto, Clase::SinMemoria};
inline constexpr std::array kClasesPorNombre{
    Clase::Texto,          Clase::SinTexto,        Clase::SinMemoria,   Clase::SinMiembro,
    Clase::TextoPorNumero, Clase::NumeroPorObjeto, Clase::NadaPorObjeto};

/// For the names of tests.
inline std::string NombreDe(Clase clase) {
  static const char* const kClases[] = {"Texto",          "SinTexto",        "SinMemoria",   "SinMiembro",
                                        "TextoPorNumero", "NumeroPorObjeto", "NadaPorObjeto"};
  return kClases[static_cast<int>(clase)];
}

/// What a report says of such a failure.
inline std::string Descripcion(Clase clase) {
  switch (clase) {
    case Clase::Texto:
      return kTextoFalla;
    case Clase::SinTexto:
      return "";
    case Clase::SinMemoria:
      return "Out of memory";
    case Clase::SinMiembro:
      return "Object doesn't support this property or method";
    case Clase::TextoPorNumero:
    case Clase::NumeroPorObjeto:
      return "Type mismatch";
    case Clase::NadaPorObjeto:
      break;
  }
  return "Object variable or With block variable not set";
}

}  // namespace zuvi::pruebas
