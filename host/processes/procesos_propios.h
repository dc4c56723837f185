// host/processes/: what the host itself does under a process key: schedules, fractions, codes, and the
// printable pages. A window is spoken to by name alone.
#pragma once

#include "host/anfitrion/anfitrion.h"

namespace zuvi::host {

/// What this host itself does under a process key, unless the key is vetoed: "Op001" gives the editor's
/// article and warehouse fields their lists, "OP007" generates the codes of the order with their label page,
/// "TURNOS003" the schedules of a shift, "FRACCIONES001" and "FRACCIONES" capture what the fraction window
/// reads. Windows are known by their published members alone, and one that lacks a member is left as it is.
void CorreProcesoPropio(Anfitrion& anfitrion, PeticionProceso& peticion);
/// Tells the order editor that its process was refused.
void AvisaRechazo(const PeticionProceso& peticion);

}  // namespace zuvi::host
