#pragma once

#include <string>

#include "host/anfitrion/anfitrion.h"
#include "services/control_procesos.h"

namespace zuvi::host {

/// A captured text: "2.5*A-100" is two and a half of article A-100, a code alone is one of it.
struct Captura {
  double cantidad = 1;
  std::string codigo;
};
/// What was typed, taken apart. A quantity that is no number above zero belongs to the code.
Captura LeeCaptura(const std::string& texto);

/// The process "FRACCIONES001": the fraction window has opened; shows the last captures.
void ProcesoFraccionesInicio(Anfitrion& anfitrion, PeticionProceso& peticion);
/// The process "FRACCIONES": takes the window's `Codigo`, looks it up as an article or a secondary key,
/// writes it into `fracciones` with quantity, time and user, clears the field and shows the last captures. A
/// code that nothing is known of is written too, without an article, and told in the page and in `Estado`.
void ProcesoFracciones(Anfitrion& anfitrion, PeticionProceso& peticion);

}  // namespace zuvi::host
