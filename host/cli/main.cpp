// `zuvi`: the batch operations from the command line, on the same core and host as the windows.
#include <exception>
#include <iostream>

#include "base/error.h"
#include "host/cli/comandos.h"

int main(int argc, char** argv) {
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
  return static_cast<int>(salida);
}
