#include "component/services/reporta_error.h"

namespace zuvi {

bool ReportaError(Desktop& desktop, const std::string& modulo, const std::string& procedimiento,
                  const std::string& descripcion) noexcept {
  try {
    desktop.Avisa("Error occured:\r\nModule: " + modulo + "\r\nFunction: " + procedimiento +
                  "\r\nDescription: " + descripcion);
  } catch (...) {
    // No memory for the text itself: a short report is better than none.
    desktop.Avisa({});
  }
  return true;
}

std::string DescripcionActual() noexcept {
  try {
    try {
      throw;
    } catch (const std::bad_alloc&) {
      return DescripcionDe(ErrorNumber::OutOfMemory);
    } catch (const std::exception& e) {
      return e.what();
    } catch (...) {
      return DescripcionDe(ErrorNumber::AutomationFailure);
    }
  } catch (...) {
    return {};
  }
}

}  // namespace zuvi
