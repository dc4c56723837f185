#pragma once

#include <functional>

#include "host/anfitrion/anfitrion.h"
#include "services/control_procesos.h"

namespace zuvi::host {

/// Which days to generate: `dias` of them from `desde` on.
struct Periodo {
  Date desde;
  std::int32_t dias = 0;
};

/// The days that a name of the period list stands for: "Día" the date itself, "Semana" seven days, "Mes" up
/// to the day before the same day of the next month. Throws HostError for any other name.
Periodo PeriodoDe(const std::string& nombre, const Date& desde);

/// What a generation came to.
struct Generados {
  /// Rows that are new.
  std::int64_t renglones = 0;
  /// Days that are complete, from the first on. Fewer than asked for when the user ended it.
  std::int32_t dias = 0;
};

/// Writes the rows of `horarios` for every member of a shift (of all shifts when `turno` is empty) and every
/// day of the period that is not the shift's rest day; rows that exist are left as they are. Each day is one
/// transaction, and between days windows answer: when the user ends it there, when `sigue` says no, or after
/// an error, whole days are left, and the same again adds the others.
Generados GeneraHorarios(Anfitrion& anfitrion, const std::string& turno, const Periodo& periodo,
                         const std::function<bool()>& sigue = {});

/// The process "TURNOS003": generates for the selected shift, the period and the date of the window, and
/// tells the user how many rows there are more. Without a selection it asks before it takes all shifts. While
/// it runs, another one is refused; it ends with the window.
void ProcesoHorarios(Anfitrion& anfitrion, PeticionProceso& peticion);

}  // namespace zuvi::host
