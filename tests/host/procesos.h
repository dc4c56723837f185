// Processes of their own and the files they share.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>

#include "tests/host/carpeta.h"

namespace zuvi::host {

/// Runs the body in a process of its own; its result is the exit code.
template <class Cuerpo>
pid_t Hijo(Cuerpo cuerpo) {
  const pid_t pid = fork();
  if (pid != 0) return pid;
  int codigo = 99;
  try {
    codigo = cuerpo();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
  }
  _exit(codigo);
}

/// Exit code of such a process; -1 when it did not get to one.
inline int Espera(pid_t pid) {
  int estado = 0;
  waitpid(pid, &estado, 0);
  return WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
}

/// A database file that does not exist before and after.
class Archivo : Carpeta {
 public:
  using Carpeta::Carpeta;
  std::string Texto() const { return En("b.db"); }
};

}  // namespace zuvi::host
