#pragma once

#include "base/date.h"

namespace zuvi {

/// Date and time of this station, in its own time zone.
CivilDate Ahora();

}  // namespace zuvi
