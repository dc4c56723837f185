#pragma once

#include "base/fecha.h"

namespace zuvi {

/// Date and time of this station, in its own time zone.
FechaCivil Ahora();

}  // namespace zuvi
