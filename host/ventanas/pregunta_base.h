#pragma once

#include "host/anfitrion/anfitrion.h"

namespace zuvi::host {

/// Asks the user before a database is changed that is not ready to work with: one without our tables gets
/// them, with the example shop or empty, and an earlier version is brought up to date. Only the file that is
/// used when none was named is made without a question. False when the user declines. Throws HostError.
bool AseguraBase(Anfitrion& anfitrion);

}  // namespace zuvi::host
