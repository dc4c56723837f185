#include "host/odbc/traza.h"

#include "base/error.h"
#include "host/system/archivos.h"
#include "host/system/rutas.h"

namespace zuvi::host {

const char* NombreDe(Suceso suceso) {
  switch (suceso) {
    case Suceso::Sentencia:
      return "sentencia";
    case Suceso::Llamada:
      return "llamada";
    case Suceso::Mensaje:
      return "mensaje";
    case Suceso::Pregunta:
      return "pregunta";
    case Suceso::Bitacora:
      return "bitacora";
  }
  return "";
}

ArchivoDeTraza::ArchivoDeTraza(const std::string& ruta)
    : archivo_(ParaAbrir(Ruta(ruta)), std::ios::app | std::ios::binary) {
  if (!archivo_) throw HostError("No se puede escribir la traza en " + ruta);
}

void ArchivoDeTraza::Escribe(Suceso suceso, const std::string& texto) {
  // One event is one line: line ends inside it are written as \n.
  std::string linea = NombreDe(suceso);
  linea += '\t';
  for (const char c : texto) {
    if (c == '\r') continue;
    if (c == '\n')
      linea += "\\n";
    else
      linea += c;
  }
  linea += '\n';
  archivo_ << linea << std::flush;
}

}  // namespace zuvi::host
