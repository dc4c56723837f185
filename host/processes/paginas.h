// Printable pages: what they share, and where they are kept.
#pragma once

#include <string>
#include <vector>

namespace zuvi::host {

/// A text as it stands in HTML.
std::string Html(const std::string& texto);
/// The beginning of a page up to the opened body, with its title, the pages' common look and `estilo` (CSS)
/// besides.
std::string InicioDePagina(const std::string& titulo, const std::string& estilo = {});
/// The end of every page.
inline constexpr const char* kFinDePagina = "</body>\n</html>\n";
/// Writes a page into the first of these folders that can be written, made where it is missing, and returns
/// the file's full name. A page of that name is replaced; where its file is in use or another's, the new one
/// is called "name (2)". Throws HostError, which tells each folder with its reason.
std::string EscribePagina(const std::string& nombre, const std::string& pagina,
                          const std::vector<std::string>& carpetas);
/// The user's own folders for pages, best first; none where there is no such user.
std::vector<std::string> CarpetasDeReportes();

}  // namespace zuvi::host
