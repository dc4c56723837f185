// A folder of a test's own, and what lies in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace zuvi::host {

class Carpeta {
 public:
  explicit Carpeta(const char* nombre) : ruta_(std::filesystem::temp_directory_path() / nombre) {
    std::filesystem::remove_all(ruta_);
    std::filesystem::create_directories(ruta_);
  }
  ~Carpeta() { std::filesystem::remove_all(ruta_); }
  std::string En(const std::string& nombre) const { return (ruta_ / nombre).string(); }
  /// Every file in it with its bytes; pages apart. What the engine shares among those who have a file open is
  /// no data: whoever reads after a crash makes it anew.
  std::map<std::string, std::string> Contenido() const {
    std::map<std::string, std::string> archivos;
    for (const auto& entrada : std::filesystem::directory_iterator(ruta_)) {
      if (!entrada.is_regular_file()) continue;
      std::ostringstream bytes;
      const bool compartido = entrada.path().string().ends_with("-shm");
      if (!compartido) bytes << std::ifstream(entrada.path(), std::ios::binary).rdbuf();
      archivos[entrada.path().filename().string()] = bytes.str();
    }
    return archivos;
  }

 private:
  std::filesystem::path ruta_;
};

}  // namespace zuvi::host
