// The one place where procedures trap errors.
#pragma once

#include <new>
#include <string>

#include "base/error.h"
#include "toolkit/desktop.h"

namespace zuvi {

/// Shows the error report and returns true.
bool ReportaError(Desktop& desktop, const std::string& modulo, const std::string& procedimiento,
                  const std::string& descripcion) noexcept;

/// Runs a procedure body; an error is reported and ends it. True when the body ran to its end.
template <class Body>
bool ConReporte(Desktop& desktop, const char* modulo, const char* procedimiento, Body&& body) noexcept {
  try {
    body();
    return true;
  } catch (...) {
    ReportaError(desktop, modulo, procedimiento, DescripcionActual());
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
