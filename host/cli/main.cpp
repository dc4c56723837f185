// `zuvi`: the batch operations from the command line, on the same core and host as the windows.
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>

#include "base/error.h"
#include "host/anfitrion/consola.h"
#include "host/cli/comandos.h"

namespace {

/// While it lives a stream that ends at a terminal shows control characters instead of sending them.
class Protegida {
 public:
  Protegida(std::ostream& salida, std::FILE* archivo) : salida_(salida), antes_(salida.rdbuf()) {
    if (zuvi::host::EsTerminal(archivo)) salida.rdbuf(&visible_.emplace(*antes_));
  }
  Protegida(const Protegida&) = delete;
  Protegida& operator=(const Protegida&) = delete;
  ~Protegida() { salida_.rdbuf(antes_); }

 private:
  std::ostream& salida_;
  std::streambuf* antes_;
  std::optional<zuvi::host::SalidaVisible> visible_;
};

zuvi::cli::Salida Corre(int argc, char** argv) {
  using zuvi::cli::Salida;
  Salida salida = Salida::Fallo;
  try {
    const auto linea = zuvi::cli::LeeLinea(argc, argv);
    if (linea.ayuda) {
      std::cout << zuvi::cli::Ayuda();
      salida = Salida::Hecho;
    } else if (linea.version) {
      std::cout << "zuvi " << ZUVI_VERSION << '\n';
      salida = Salida::Hecho;
    } else if (linea.comando.empty()) {
      throw zuvi::cli::MalUso("Falta el comando");
    } else {
      salida = zuvi::cli::Corre(linea);
    }
  } catch (const zuvi::cli::MalUso& error) {
    std::cerr << error.what() << "\nCon zuvi --help se muestra la ayuda.\n";
    salida = Salida::MalUso;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
  }
  return salida;
}

}  // namespace

int main(int argc, char** argv) {
  const Protegida salida(std::cout, stdout), errores(std::cerr, stderr);
  auto codigo = Corre(argc, argv);
  // What was lost on the way out is not done.
  if (!std::cout.flush() && codigo == zuvi::cli::Salida::Hecho) {
    std::cerr << "No se pudo escribir la salida\n";
    codigo = zuvi::cli::Salida::Fallo;
  }
  return static_cast<int>(codigo);
}
