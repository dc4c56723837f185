#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <optional>

#include "host/processes/paginas.h"
#include "host/system/rutas.h"

namespace zuvi::host {
namespace {

using Carpeta = std::filesystem::path;

/// An absolute path out of the environment; empty when there is none.
Carpeta DelEntorno(const char* nombre) {
  const char* valor = std::getenv(nombre);
  return valor && *valor == '/' ? Carpeta(valor) : Carpeta();
}

Carpeta CasaDelUsuario() {
  if (Carpeta casa = DelEntorno("HOME"); !casa.empty()) return casa;
  const passwd* cuenta = getpwuid(geteuid());
  return cuenta && cuenta->pw_dir ? Carpeta(cuenta->pw_dir) : Carpeta();
}

/// What a line XDG_DOCUMENTS_DIR="$HOME/Documentos" names: a path below the home, or an absolute one.
std::optional<Carpeta> LeeRenglon(const std::string& renglon, const Carpeta& casa) {
  constexpr std::string_view kInicio = "XDG_DOCUMENTS_DIR=\"", kCasa = "$HOME";
  if (!renglon.starts_with(kInicio)) return {};
  std::string valor;
  for (std::size_t i = kInicio.size(); i < renglon.size() && renglon[i] != '"'; ++i) {
    if (renglon[i] == '\\' && i + 1 < renglon.size()) ++i;
    valor += renglon[i];
  }
  if (valor.starts_with(kCasa)) valor = casa.string() + valor.substr(kCasa.size());
  while (valor.size() > 1 && valor.ends_with('/')) valor.pop_back();
  // The home itself stands for "none".
  if (!valor.starts_with('/') || Carpeta(valor) == casa) return {};
  return valor;
}

/// The user's documents, where the desktop has such a folder.
std::optional<Carpeta> Documentos(const Carpeta& casa) {
  const Carpeta configuracion = DelEntorno("XDG_CONFIG_HOME");
  std::ifstream archivo((configuracion.empty() ? casa / ".config" : configuracion) / "user-dirs.dirs");
  for (std::string renglon; std::getline(archivo, renglon);)
    if (auto hallada = LeeRenglon(renglon, casa)) return hallada;
  return {};
}

}  // namespace

std::vector<std::string> CarpetasDeReportes() {
  std::vector<std::string> carpetas;
  const Carpeta casa = CasaDelUsuario();
  if (casa.empty()) return carpetas;
  if (const auto documentos = Documentos(casa))
    carpetas.push_back(TextoDeRuta(*documentos / "Zuvi" / "Reportes"));
  const Carpeta datos = DelEntorno("XDG_DATA_HOME");
  carpetas.push_back(TextoDeRuta((datos.empty() ? casa / ".local/share" : datos) / "Zuvi" / "Reportes"));
  return carpetas;
}

}  // namespace zuvi::host
