#pragma once

#include <string>
#include <vector>

#include "base/object.h"

namespace zuvi::host {

/// Key of the shift that is selected in a shift window, as it is stored; "" without a selection. Throws
/// HostError for a window that has no such list.
std::string TurnoElegido(Object& ventana);

/// The same of the window among these whose event is running now, which is the one that asks; "" when none
/// of them asks, or when it is no shift window.
std::string TurnoDeQuienPregunta(const std::vector<ObjectPtr>& ventanas);

}  // namespace zuvi::host
