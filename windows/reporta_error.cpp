#include "windows/reporta_error.h"

namespace zuvi {

bool ReportaError(Desktop& desktop, const std::string& origen, const std::string& procedimiento,
                  const std::string& descripcion) noexcept {
  try {
    desktop.ShowMessage("Error occured:\r\nModule: " + origen + "\r\nFunction: " + procedimiento +
                        "\r\nDescription: " + descripcion);
  } catch (...) {
    // No memory for the text itself: a short report is better than none.
    desktop.ShowMessage({});
  }
  return true;
}

}  // namespace zuvi
