// The ways in which host calls fail, for tests that let each call fail once.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/mundo.h"

namespace zuvi::pruebas {

/// One way of failing: once or from then on.
struct Modo {
  Clase clase;
  bool persistente;
  /// Whether the failure is an error of the call; the others spoil what a call gives back.
  bool EsError() const { return clase <= Clase::SinMiembro; }
  /// What a report says of such a failure.
  std::string Descripcion() const {
    const char* const descripciones[] = {kTextoFalla,
                                         "",
                                         "Out of memory",
                                         "Object doesn't support this property or method",
                                         "Type mismatch",
                                         "Type mismatch",
                                         "Object variable or With block variable not set"};
    return descripciones[static_cast<int>(clase)];
  }
};

/// Runs a test with each host call failing in each way: `prueba(modo, n)` lets the n-th one fail and tells
/// how many failed; run 0 is the clean one. How often it ran in the fullest mode.
template <class Prueba>
int EnCadaLlamada(Prueba&& prueba) {
  int corridas = 0;
  for (const bool persistente : {false, true})
    for (int clase = 0; clase <= static_cast<int>(Clase::NadaPorObjeto); ++clase)
      for (int n = 0, fallas = 1; fallas > 0; corridas = std::max(corridas, ++n)) {
        const Modo modo{static_cast<Clase>(clase), persistente};
        SCOPED_TRACE(modo.Descripcion() + (persistente ? " from call " : " at call ") + std::to_string(n));
        const int dadas = prueba(modo, n);
        if (n > 0) fallas = dadas;
        if (testing::Test::HasFatalFailure()) return corridas;
      }
  return corridas;
}

/// What an operation did, step by step: those lines of the log that begin so.
using Pasos = std::vector<std::string>;
inline Pasos PasosDe(Pasos bitacora, const std::vector<std::string>& comienzos) {
  std::erase_if(bitacora, [&](const std::string& linea) {
    return std::ranges::none_of(comienzos, [&](const std::string& c) { return linea.starts_with(c); });
  });
  return bitacora;
}

inline bool EsComienzo(const Pasos& hecho, const Pasos& limpio) {
  return hecho.size() <= limpio.size() && std::equal(hecho.begin(), hecho.end(), limpio.begin());
}

/// Whether the steps are those of a clean run with some left out.
inline bool EsParteDe(const Pasos& hecho, const Pasos& limpio) {
  auto desde = limpio.begin();
  return std::ranges::all_of(hecho, [&](const std::string& paso) {
    desde = std::find(desde, limpio.end(), paso);
    return desde != limpio.end() && (++desde, true);
  });
}

/// Module and procedure of a report.
inline std::string LugarDe(const std::string& aviso) {
  const auto entre = [&](const std::string& marca) {
    const auto desde = aviso.find(marca) + marca.size();
    return aviso.substr(desde, aviso.find("\r\n", desde) - desde);
  };
  return entre("Module: ") + "." + entre("Function: ");
}

}  // namespace zuvi::pruebas
