#pragma once

#include <string_view>

#include "host/base_datos.h"

namespace zuvi::host {

/// Throws HostError when the text is more than one statement of that engine, or holds a NUL character, at
/// which the database would end it. A trailing semicolon is allowed.
void ExigeUnaSentencia(Motor motor, std::string_view sql);

}  // namespace zuvi::host
