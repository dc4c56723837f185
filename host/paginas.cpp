#include "host/paginas.h"

#include <fcntl.h>

#include <cstdio>
#include <memory>
#include <random>

#ifdef _WIN32
#include <io.h>
#include <sys/stat.h>
#else
#include <unistd.h>
#endif

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

struct Cierra {
  void operator()(std::FILE* archivo) const { std::fclose(archivo); }
};
using ArchivoC = std::unique_ptr<std::FILE, Cierra>;

/// A file that was not there: what has its name already, a link too, is left alone.
ArchivoC Nuevo(const std::filesystem::path& ruta) {
#ifdef _WIN32
  const int canal = _wopen(ruta.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
  return ArchivoC(canal < 0 ? nullptr : _fdopen(canal, "wb"));
#else
  const int canal = open(ruta.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
  return ArchivoC(canal < 0 ? nullptr : fdopen(canal, "wb"));
#endif
}

/// False when not all of it is on the disk.
bool Guarda(const std::filesystem::path& ruta, const std::string& texto) {
  ArchivoC archivo = Nuevo(ruta);
  if (!archivo) return false;
  bool entera = std::fwrite(texto.data(), 1, texto.size(), archivo.get()) == texto.size() &&
                std::fflush(archivo.get()) == 0;
#ifdef _WIN32
  entera = entera && _commit(_fileno(archivo.get())) == 0;
#else
  entera = entera && fsync(fileno(archivo.get())) == 0;
#endif
  return std::fclose(archivo.release()) == 0 && entera;
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

std::string EscribePagina(const std::string& nombre, const std::string& pagina, const std::string& ruta) {
  std::error_code fallo;
  const std::filesystem::path carpeta =
      std::filesystem::absolute(Ruta(ruta.empty() ? "." : ruta), fallo) / "Reportes";
  std::filesystem::create_directories(carpeta, fallo);
  const std::filesystem::path archivo = carpeta / Ruta(nombre);
  // Beside it first: whoever looks sees the old page or the new one, never half of it. What stands under the
  // name is replaced, not written through.
  const std::filesystem::path nueva =
      carpeta / Ruta("." + nombre + "." + std::to_string(std::random_device{}()));
  fallo.clear();
  const bool escrita = Guarda(nueva, pagina);
  if (escrita) std::filesystem::rename(nueva, archivo, fallo);
  if (escrita && !fallo) return TextoDeRuta(archivo);
  std::error_code sin_importancia;
  std::filesystem::remove(nueva, sin_importancia);
  throw HostError("No se pudo escribir el reporte " + TextoDeRuta(archivo));
}

}  // namespace zuvi::host
