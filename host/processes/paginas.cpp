#include "host/processes/paginas.h"

#include <random>

#include "base/error.h"
#include "host/system/archivos.h"
#include "host/system/rutas.h"

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

/// The names a page may get, the first that is free to be replaced: an open or foreign file keeps its own.
constexpr int kNombres = 9;

std::filesystem::path NombreDePagina(const std::string& nombre, int intento) {
  std::filesystem::path archivo = Ruta(nombre);
  if (intento == 1) return archivo;
  const std::filesystem::path extension = archivo.extension();
  archivo.replace_extension();
  archivo += " (" + std::to_string(intento) + ")";
  archivo += extension;
  return archivo;
}

/// Writes the page into a folder. The file's name, or why there is none.
std::error_code EscribeEn(const std::filesystem::path& carpeta, const std::string& nombre,
                          const std::string& pagina, std::filesystem::path& archivo) {
  if (const std::error_code fallo = CreaCarpetas(carpeta)) return fallo;
  // Beside it first: whoever looks sees the old page or the new one, never half of it.
  const std::filesystem::path nueva =
      carpeta / Ruta("." + nombre + "." + std::to_string(std::random_device{}()));
  std::error_code fallo = EscribeNuevo(nueva, pagina);
  if (!fallo) {
    for (int intento = 1; intento <= kNombres; ++intento) {
      archivo = carpeta / NombreDePagina(nombre, intento);
      fallo = Reemplaza(nueva, archivo);
      if (!fallo) return {};
    }
  }
  Borra(nueva);
  return fallo;
}

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

std::string EscribePagina(const std::string& nombre, const std::string& pagina,
                          const std::vector<std::string>& carpetas) {
  std::string motivos;
  for (const std::string& una : carpetas) {
    const std::filesystem::path carpeta = Completa(Ruta(una));
    std::filesystem::path archivo;
    const std::error_code fallo = EscribeEn(carpeta, nombre, pagina, archivo);
    if (!fallo) return TextoDeRuta(archivo);
    motivos += "\n" + TextoDeRuta(carpeta) + ": " + Motivo(fallo);
  }
  if (motivos.empty()) motivos = "\nel usuario no tiene carpeta propia";
  throw HostError("No se pudo escribir el reporte " + nombre + motivos +
                  "\nOtra carpeta se da en la variable ZUVI_REPORTES");
}

}  // namespace zuvi::host
