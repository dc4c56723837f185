#pragma once

#include <string>
#include <vector>

#include "automation/com_server.h"
#include "host/win32/salida_programa.h"

namespace zuvi::host {

/// How a script ended.
struct ResultadoGuion {
  int codigo = 0;
  /// "file(line,column): text" of the error that ended it; empty when there was none.
  std::string error;
};

/// Runs a script file (.vbs with VBScript, .js with JScript) on this thread, which must be a single-threaded
/// apartment. The script finds `Ambiente` (the working environment) and `WScript` (Echo, Sleep that pumps
/// messages, Quit, Arguments, CreateObject, ScriptFullName). What it writes goes to `salida`. Throws
/// HostError when the file or its engine cannot be had.
ResultadoGuion EjecutaGuion(ComServer& servidor, SalidaPrograma& salida, const std::wstring& archivo,
                            const std::vector<std::string>& argumentos);

/// Handles pending messages for so many milliseconds.
void AtiendeMensajes(unsigned milisegundos);

}  // namespace zuvi::host
