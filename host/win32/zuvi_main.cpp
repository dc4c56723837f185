// Zuvi.exe: the host's main window. Zuvi.exe guion.vbs [argumentos]: runs a script with the working
// environment at hand. Exit code: what the script gave to WScript.Quit, 0 at its end or when the window was
// closed, 1 after an error.
#include <objbase.h>
#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/dispatch_object.h"
#include "base/error.h"
#include "host/win32/guion.h"
#include "host/win32/ruta_larga.h"
#include "host/win32/salida_programa.h"
#include "host/win32/wscript.h"
#include "win32/text.h"

namespace {

constexpr char kUso[] =
    "Uso: Zuvi.exe [guion.vbs|guion.js [argumentos]]\n"
    "Sin argumentos abre la ventana principal; con un guion lo ejecuta con el ambiente de trabajo\n"
    "a la mano (objetos Ambiente y WScript). La base es la de la variable ZUVI_BASE.\n"
    "Códigos de salida: el de WScript.Quit; 0 al terminar; 1 error.\n"
    "Desde una consola se espera a que termine con: start /wait Zuvi.exe guion.vbs";

struct Departamento {
  Departamento() : resultado(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~Departamento() {
    if (SUCCEEDED(resultado)) CoUninitialize();
  }
  HRESULT resultado;
};

/// Opens the main window and serves this thread's windows until that one is closed. It asks its windows to
/// close with it.
int AbrePrincipal(zuvi::ComServer& servidor) {
  const auto principal = zuvi::ObjectOf(zuvi::host::CreaPorNombre("ZuviQuery.Principal").get(), servidor);
  principal->Call("Abre");
  MSG mensaje;
  while (zuvi::ToBool(principal->Call("Abierta")) && GetMessageW(&mensaje, nullptr, 0, 0) > 0) {
    TranslateMessage(&mensaje);
    DispatchMessageW(&mensaje);
  }
  return 0;
}

int CorreGuion(zuvi::ComServer& servidor, zuvi::host::SalidaPrograma& salida, int argc, wchar_t** argv) {
  std::vector<std::string> argumentos;
  for (int i = 2; i < argc; ++i) argumentos.push_back(zuvi::Narrow(argv[i]));
  const zuvi::host::ResultadoGuion resultado =
      zuvi::host::EjecutaGuion(servidor, salida, zuvi::host::RutaCompleta(argv[1]), argumentos);
  if (!resultado.error.empty()) salida.EscribeError(resultado.error);
  return resultado.codigo;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  // What a driver or script object loads by its bare name is not taken from beside the script.
  SetDllDirectoryW(L"");
  const bool con_ventana = argc < 2;
  // A window has nothing to do with the console it was started from, and outlives it.
  std::optional<zuvi::host::SalidaPrograma> salida;
  if (!con_ventana) salida.emplace();
  if (!con_ventana && (std::wstring_view(argv[1]) == L"--help" || std::wstring_view(argv[1]) == L"/?")) {
    salida->Escribe(kUso);
    return 0;
  }
  const Departamento departamento;
  try {
    zuvi::ComServer servidor("Zuvi", GetModuleHandleW(nullptr), 0);
    return con_ventana ? AbrePrincipal(servidor) : CorreGuion(servidor, *salida, argc, argv);
  } catch (...) {
    const std::string error = zuvi::CurrentDescription();
    if (con_ventana) {
      if (salida.emplace().HayErrores()) salida->EscribeError("Zuvi: " + error);
      zuvi::host::MuestraCaja(error, MB_ICONERROR);
    } else {
      salida->EscribeError("Zuvi: " + error);
    }
    return 1;
  }
}
