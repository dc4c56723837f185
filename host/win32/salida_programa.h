#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace zuvi::host {

/// What the program without a console of its own writes: to the file or the pipe that it was given, in UTF-8,
/// else to the console of the program that started it, which reads UTF-16 and keeps its code page. Where
/// there is neither, as after a double click, a message box shows it; and nobody, where no user has a
/// desktop.
class SalidaPrograma {
 public:
  /// Joins the console of the program that started this one when an output is not redirected.
  SalidaPrograma();
  /// Writes a line to the standard output.
  void Escribe(const std::string& linea) { Escribe(salida_, linea, MB_ICONINFORMATION); }
  /// Writes a line to the standard error.
  void EscribeError(const std::string& linea) { Escribe(errores_, linea, MB_ICONERROR); }
  /// Whether errors go to a file, a pipe or a console.
  bool HayErrores() const { return errores_ != nullptr; }

 private:
  static void Escribe(HANDLE destino, const std::string& linea, unsigned icono);

  HANDLE salida_;  // the process has them to its end; null for none
  HANDLE errores_;
};

/// Shows a text in a box, if somebody sees this program's desktop: one of a service has no user to answer it.
void MuestraCaja(std::string_view texto, unsigned icono);

}  // namespace zuvi::host
