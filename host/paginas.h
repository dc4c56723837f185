// Printable pages: what they share, and where they are kept.
#pragma once

#include <string>

namespace zuvi::host {

/// A text as it stands in HTML.
std::string Html(const std::string& texto);
/// The beginning of a page up to the opened body, with its title, the pages' common look and `estilo` (CSS)
/// besides.
std::string InicioDePagina(const std::string& titulo, const std::string& estilo = {});
inline constexpr const char* kFinDePagina = "</body>\n</html>\n";
/// Writes a page into the folder "Reportes" below `ruta` and returns the file's full name. Throws HostError.
std::string EscribePagina(const std::string& nombre, const std::string& pagina, const std::string& ruta);

}  // namespace zuvi::host
