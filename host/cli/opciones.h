// host/cli/: the program `zuvi`: the batch operations and lists of the shop from the command line. Here: the
// command line itself, read.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zuvi::cli {

/// How the program ends; told in its help.
enum class Salida { Hecho = 0, Fallo = 1, MalUso = 2, SinBase = 3 };

/// A command line that makes no sense; the text says why.
class MalUso : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command line, read.
struct LineaDeOrdenes {
  std::string comando;
  std::vector<std::string> argumentos;
  std::string base = "zuvi.db";
  std::string usuario = "ADMIN";
  std::string idioma = "es";
  std::string traza;
  std::string reportes;
  std::optional<bool> respuesta;
  bool vacia = false;
  bool ayuda = false;
  bool version = false;
};

/// Reads the command line; options may stand anywhere. What is not given comes from ZUVI_BASE, ZUVI_USUARIO,
/// ZUVI_IDIOMA and ZUVI_REPORTES. Throws MalUso.
LineaDeOrdenes LeeLinea(int argc, char** argv);

}  // namespace zuvi::cli
