// The one place where procedures trap errors.
#pragma once

#include <new>
#include <string>

#include "base/error.h"
#include "toolkit/desktop.h"

namespace zuvi {

/// Shows the error report and returns true. `origen`, a window or a class, stands after "Module:" there.
bool ReportaError(Desktop& desktop, const std::string& origen, const std::string& procedimiento,
                  const std::string& descripcion) noexcept;

/// Runs a procedure body; an error is reported and ends it. True when the body ran to its end.
template <class Body>
bool ConReporte(Desktop& desktop, const char* origen, const char* procedimiento, Body&& body) noexcept {
  try {
    body();
    return true;
  } catch (...) {
    ReportaError(desktop, origen, procedimiento, CurrentDescription());
    return false;
  }
}

/// Runs a procedure body that ends silently on an error. True when the body ran to its end.
template <class Body>
bool EnSilencio(Body&& body) noexcept {
  try {
    body();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace zuvi
