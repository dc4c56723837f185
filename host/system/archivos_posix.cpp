#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "host/system/archivos.h"

namespace zuvi::host {
namespace {

std::error_code Ultimo() { return {errno, std::generic_category()}; }

/// All of it on the disk.
bool Escribe(int canal, const std::string& texto) {
  for (std::size_t hechos = 0; hechos < texto.size();) {
    const ssize_t n = write(canal, texto.data() + hechos, texto.size() - hechos);
    if (n < 0 && errno != EINTR) return false;
    if (n > 0) hechos += static_cast<std::size_t>(n);
  }
  return fsync(canal) == 0;
}

}  // namespace

std::filesystem::path Completa(const std::filesystem::path& ruta) {
  std::error_code fallo;
  const std::filesystem::path completa = std::filesystem::absolute(ruta, fallo);
  return fallo ? ruta : completa;
}

std::filesystem::path ParaAbrir(const std::filesystem::path& ruta) { return ruta; }

std::error_code CreaCarpetas(const std::filesystem::path& carpeta) {
  std::error_code fallo;
  std::filesystem::create_directories(carpeta, fallo);
  return fallo;
}

std::error_code EscribeNuevo(const std::filesystem::path& ruta, const std::string& texto) {
  const int canal = open(ruta.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
  if (canal < 0) return Ultimo();
  std::error_code fallo;
  if (!Escribe(canal, texto)) fallo = Ultimo();
  if (close(canal) != 0 && !fallo) fallo = Ultimo();
  return fallo;
}

std::error_code Reemplaza(const std::filesystem::path& origen, const std::filesystem::path& destino) {
  std::error_code fallo;
  std::filesystem::rename(origen, destino, fallo);
  return fallo;
}

void Borra(const std::filesystem::path& ruta) {
  std::error_code sin_importancia;
  std::filesystem::remove(ruta, sin_importancia);
}

std::string TextoDelSistema(const std::error_code& fallo) { return fallo.message(); }

}  // namespace zuvi::host
