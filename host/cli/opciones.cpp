#include "host/cli/opciones.h"

#include <cctype>
#include <cstdlib>
#include <string_view>

namespace zuvi::cli {
namespace {

std::string DelEntorno(const char* nombre, const char* si_falta) {
  const char* valor = std::getenv(nombre);
  return valor && *valor ? valor : si_falta;
}

/// A negative number is an argument, not an option.
bool EsOpcion(std::string_view texto) {
  return texto.size() > 1 && texto[0] == '-' && std::isdigit(static_cast<unsigned char>(texto[1])) == 0;
}

}  // namespace

LineaDeOrdenes LeeLinea(int argc, char** argv) {
  LineaDeOrdenes linea;
  linea.base = DelEntorno("ZUVI_BASE", "zuvi.db");
  linea.usuario = DelEntorno("ZUVI_USUARIO", "ADMIN");
  linea.idioma = DelEntorno("ZUVI_IDIOMA", "es");
  linea.reportes = DelEntorno("ZUVI_REPORTES", "");
  bool solo_argumentos = false;
  for (int i = 1; i < argc; ++i) {
    std::string opcion = argv[i];
    if (solo_argumentos || !EsOpcion(opcion)) {
      if (linea.comando.empty())
        linea.comando = opcion;
      else
        linea.argumentos.push_back(opcion);
      continue;
    }
    std::optional<std::string> pegado;
    if (const auto igual = opcion.find('='); opcion.starts_with("--") && igual != std::string::npos) {
      pegado = opcion.substr(igual + 1);
      opcion.resize(igual);
    }
    const auto valor = [&]() -> std::string {
      if (pegado) return *pegado;
      if (i + 1 == argc) throw MalUso("La opción " + opcion + " necesita un valor");
      return argv[++i];
    };
    if (opcion == "--base")
      linea.base = valor();
    else if (opcion == "--usuario")
      linea.usuario = valor();
    else if (opcion == "--idioma")
      linea.idioma = valor();
    else if (opcion == "--traza")
      linea.traza = valor();
    else if (opcion == "--reportes")
      linea.reportes = valor();
    else if (pegado)
      throw MalUso("La opción " + opcion + " no se conoce o no lleva valor");
    else if (opcion == "--si")
      linea.respuesta = true;
    else if (opcion == "--no")
      linea.respuesta = false;
    else if (opcion == "--vacia")
      linea.vacia = true;
    else if (opcion == "--help" || opcion == "-h")
      linea.ayuda = true;
    else if (opcion == "--version")
      linea.version = true;
    else if (opcion == "--")
      solo_argumentos = true;
    else
      throw MalUso("No se conoce la opción " + opcion);
  }
  if (linea.vacia && linea.comando != "crea") throw MalUso("La opción --vacia es del comando crea");
  if (linea.idioma != "es" && linea.idioma != "en") throw MalUso("El idioma debe ser es o en");
  return linea;
}

}  // namespace zuvi::cli
