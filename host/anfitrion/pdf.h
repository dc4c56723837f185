#pragma once

#include <string>

namespace zuvi::host {

/// Makes a PDF beside an HTML page with whatever tool of the system can (a browser without window, an office
/// suite). False when there is none or it fails or takes longer than half a minute.
bool HazPdf(const std::string& pagina);

}  // namespace zuvi::host
