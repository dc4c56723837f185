#include "host/paginas.h"

#include <fstream>

#include "base/error.h"
#include "host/rutas.h"

namespace zuvi::host {
namespace {

constexpr const char* kEstilo = R"(body { font: 11pt "Segoe UI", Arial, sans-serif; margin: 2cm; }
h1 { font-size: 16pt; }
table { border-collapse: collapse; width: 100%; margin-top: 1em; }
th, td { border-bottom: 1px solid #bbb; padding: 4px 6px; text-align: left; }
thead { display: table-header-group; }
tr { break-inside: avoid; }
.n { text-align: right; font-variant-numeric: tabular-nums; }
.datos th { width: 11em; border: 0; }
.datos td { border: 0; }
tfoot td { font-weight: bold; border-top: 2px solid #333; }
@page { margin: 1.5cm; }
)";

}  // namespace

std::string Html(const std::string& texto) {
  std::string html;
  for (const char c : texto) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

std::string InicioDePagina(const std::string& titulo, const std::string& estilo) {
  return "<!DOCTYPE html>\n<html lang=\"es\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + Html(titulo) +
         "</title>\n<style>\n" + kEstilo + estilo + "</style>\n</head>\n<body>\n";
}

std::string EscribePagina(const std::string& nombre, const std::string& pagina, const std::string& ruta) {
  std::error_code fallo;
  const std::filesystem::path carpeta =
      std::filesystem::absolute(Ruta(ruta.empty() ? "." : ruta), fallo) / "Reportes";
  std::filesystem::create_directories(carpeta, fallo);
  const std::filesystem::path archivo = carpeta / Ruta(nombre);
  std::ofstream salida(archivo, std::ios::binary | std::ios::trunc);
  salida << pagina;
  salida.close();
  if (!salida) throw HostError("No se pudo escribir el reporte " + TextoDeRuta(archivo));
  return TextoDeRuta(archivo);
}

}  // namespace zuvi::host
