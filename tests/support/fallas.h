// The ways in which host calls fail, for tests that let each call fail once.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "tests/support/mundo.h"

namespace zuvi::pruebas {

inline constexpr std::array kClases{Clase::Texto,        Clase::SinTexto,       Clase::SinMemoria,
                                    Clase::SinMiembro,   Clase::TextoPorNumero, Clase::NumeroPorObjeto,
                                    Clase::NadaPorObjeto};

/// What an operation did, step by step.
using Pasos = std::vector<std::string>;

inline bool EsComienzo(const Pasos& hecho, const Pasos& limpio) {
  return hecho.size() <= limpio.size() && std::equal(hecho.begin(), hecho.end(), limpio.begin());
}

/// For the names of tests.
inline std::string NombreDe(Clase clase) {
  static const char* const kNombres[] = {"Texto",          "SinTexto",        "SinMemoria",   "SinMiembro",
                                         "TextoPorNumero", "NumeroPorObjeto", "NadaPorObjeto"};
  return kNombres[static_cast<int>(clase)];
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

/// One way of failing: once or from then on.
struct Modo {
  Clase clase;
  bool persistente;
};

inline std::vector<Modo> Modos() {
  std::vector<Modo> modos;
  for (const bool persistente : {false, true})
    for (const Clase clase : kClases) modos.push_back({clase, persistente});
  return modos;
}

/// Names a test whose parameter is what is done and in which mode it fails.
template <class Parametros>
std::string NombreDeCaso(const testing::TestParamInfo<Parametros>& info) {
  const auto& [caso, modo] = info.param;
  return std::string(caso.nombre) + NombreDe(modo.clase) + (modo.persistente ? "Siempre" : "UnaVez");
}

}  // namespace zuvi::pruebas
