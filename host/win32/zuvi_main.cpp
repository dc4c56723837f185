// Zuvi.exe: the host's main window. Zuvi.exe guion.vbs [argumentos]: runs a script with the working
// environment at hand. Exit code: what the script gave to WScript.Quit, 0 at its end or when the window was
// closed, 1 after an error.
#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/text.h"
#include "com/automation/dispatch_object.h"
#include "com/automation/handles.h"
#include "component/services/reporta_error.h"
#include "host/win32/guion.h"
#include "host/win32/wscript.h"

namespace {

constexpr char kUso[] =
    "Uso: Zuvi.exe [guion.vbs|guion.js [argumentos]]\n"
    "Sin argumentos abre la ventana principal; con un guion lo ejecuta con el ambiente de trabajo\n"
    "a la mano (objetos Ambiente y WScript). La base es la de la variable ZUVI_BASE.\n"
    "Códigos de salida: el de WScript.Quit; 0 al terminar; 1 error.\n";

struct Departamento {
  Departamento() : resultado(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~Departamento() {
    if (SUCCEEDED(resultado)) CoUninitialize();
  }
  HRESULT resultado;
};

std::u16string RutaCompleta(const wchar_t* archivo) {
  wchar_t ruta[MAX_PATH * 4];
  const DWORD largo = GetFullPathNameW(archivo, static_cast<DWORD>(std::size(ruta)), ruta, nullptr);
  return largo > 0 && largo < std::size(ruta)
             ? std::u16string(ruta, ruta + largo)
             : std::u16string(archivo, archivo + std::char_traits<wchar_t>::length(archivo));
}

/// Opens the main window and serves this thread's windows until that one is closed. It asks its windows to
/// close with it.
int AbrePrincipal(zuvi::ComModule& modulo) {
  const auto principal = zuvi::ObjectDe(zuvi::host::CreaPorNombre("ZuviQuery.Principal").get(), modulo);
  principal->Call("Abre");
  MSG mensaje;
  while (zuvi::ABooleano(principal->Call("Abierta")) && GetMessageW(&mensaje, nullptr, 0, 0) > 0) {
    TranslateMessage(&mensaje);
    DispatchMessageW(&mensaje);
  }
  return 0;
}

/// A window needs no console; one that was made for this program alone goes away.
void SueltaConsola() {
  DWORD procesos[2];
  if (GetConsoleProcessList(procesos, 2) == 1) FreeConsole();
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  // What a driver or script object loads by its bare name is not taken from beside the script.
  SetDllDirectoryW(L"");
  SetConsoleOutputCP(CP_UTF8);
  if (argc > 1 && (std::wstring_view(argv[1]) == L"--help" || std::wstring_view(argv[1]) == L"/?")) {
    std::fputs(kUso, stdout);
    return 0;
  }
  const bool con_ventana = argc < 2;
  if (con_ventana) SueltaConsola();
  const Departamento departamento;
  try {
    std::vector<std::string> argumentos;
    for (int i = 2; i < argc; ++i)
      argumentos.push_back(
          zuvi::Utf8(std::u16string(argv[i], argv[i] + std::char_traits<wchar_t>::length(argv[i]))));
    zuvi::ComModule modulo("Zuvi", GetModuleHandleW(nullptr), 0);
    if (con_ventana) return AbrePrincipal(modulo);
    const zuvi::host::ResultadoGuion resultado =
        zuvi::host::EjecutaGuion(modulo, RutaCompleta(argv[1]), argumentos);
    if (!resultado.error.empty()) std::fprintf(stderr, "%s\n", resultado.error.c_str());
    return resultado.codigo;
  } catch (...) {
    const std::string error = zuvi::DescripcionActual();
    std::fprintf(stderr, "Zuvi: %s\n", error.c_str());
    if (con_ventana)
      MessageBoxW(nullptr, zuvi::Ancho(error).c_str(), L"Zuvi", MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
    return 1;
  }
}
