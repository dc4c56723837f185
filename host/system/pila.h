#pragma once

namespace zuvi::host {

/// Whether the calling thread has so little stack left that it should not recurse any further.
bool PilaCasiAgotada();

}  // namespace zuvi::host
