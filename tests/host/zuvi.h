// The program `zuvi`, run as its users run it.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace zuvi::host {

struct Corrida {
  int codigo = -1;
  std::string texto;  // both outputs, in the order of writing
};

/// With words before the program's name, such as variables.
inline Corrida Zuvi(const std::string& argumentos, const std::string& antes = "") {
  const std::string orden = antes + "'" ZUVI_PROGRAMA "' " + argumentos + " 2>&1 </dev/null";
  Corrida corrida;
  std::FILE* tubo = popen(orden.c_str(), "r");
  if (!tubo) return corrida;
  std::array<char, 4096> bloque{};
  for (std::size_t n; (n = fread(bloque.data(), 1, bloque.size(), tubo)) > 0;)
    corrida.texto.append(bloque.data(), n);
  const int estado = pclose(tubo);
  corrida.codigo = WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
  return corrida;
}

}  // namespace zuvi::host
