#include "host/traza.h"

#include <fstream>
#include <memory>

#include "base/error.h"
#include "host/rutas.h"

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

Traza::Oyente OyenteDeArchivo(const std::string& ruta) {
  auto archivo = std::make_shared<std::ofstream>(Ruta(ruta), std::ios::app | std::ios::binary);
  if (!*archivo) throw HostError("No se puede escribir la traza en " + ruta);
  return [archivo](Suceso suceso, const std::string& texto) {
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
    *archivo << linea << std::flush;
  };
}

}  // namespace zuvi::host
