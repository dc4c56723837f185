// Every test program takes on the regional settings of its environment, as a host program may have done:
// nothing may depend on them.
#include <gmock/gmock.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <stdexcept>
#include <string>

namespace {

/// A folder for the pages of this run, gone with it: none of them ends among the user's documents.
class Paginas {
 public:
  Paginas() {
    std::string ruta = (std::filesystem::temp_directory_path() / "zuvi_paginas_XXXXXX").string();
    if (mkdtemp(ruta.data())) ruta_ = ruta;
    setenv("ZUVI_REPORTES", ruta_.c_str(), 1);
  }
  ~Paginas() {
    std::error_code sin_importancia;
    if (!ruta_.empty()) std::filesystem::remove_all(ruta_, sin_importancia);
  }
  Paginas(const Paginas&) = delete;
  Paginas& operator=(const Paginas&) = delete;

 private:
  std::string ruta_;
};

}  // namespace

int main(int argc, char** argv) {
  const Paginas paginas;
  testing::InitGoogleMock(&argc, argv);
  try {
    std::locale::global(std::locale(""));
  } catch (const std::runtime_error&) {
    std::fputs("Falta la configuración regional que pide el entorno (LC_ALL)\n", stderr);
    return 2;
  }
  return RUN_ALL_TESTS();
}
