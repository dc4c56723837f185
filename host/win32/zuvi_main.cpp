// Zuvi.exe guion.vbs [argumentos]: runs a script with the working environment at hand. Exit code: what the
// script gave to WScript.Quit, 0 at its end, 1 after an error, 2 for wrong usage.
#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "base/error.h"
#include "base/text.h"
#include "component/services/reporta_error.h"
#include "host/win32/guion.h"

namespace {

constexpr char kUso[] =
    "Uso: Zuvi.exe guion.vbs|guion.js [argumentos]\n"
    "Ejecuta un guion con el ambiente de trabajo a la mano (objetos Ambiente y WScript).\n"
    "Códigos de salida: el de WScript.Quit; 0 al terminar; 1 error del guion; 2 uso incorrecto.\n";

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

}  // namespace

int wmain(int argc, wchar_t** argv) {
  SetConsoleOutputCP(CP_UTF8);
  if (argc < 2 || std::wstring_view(argv[1]) == L"--help" || std::wstring_view(argv[1]) == L"/?") {
    std::fputs(kUso, argc < 2 ? stderr : stdout);
    return argc < 2 ? 2 : 0;
  }
  const Departamento departamento;
  try {
    std::vector<std::string> argumentos;
    for (int i = 2; i < argc; ++i)
      argumentos.push_back(
          zuvi::Utf8(std::u16string(argv[i], argv[i] + std::char_traits<wchar_t>::length(argv[i]))));
    zuvi::ComModule modulo("Zuvi", GetModuleHandleW(nullptr), 0);
    const zuvi::host::ResultadoGuion resultado =
        zuvi::host::EjecutaGuion(modulo, RutaCompleta(argv[1]), argumentos);
    if (!resultado.error.empty()) std::fprintf(stderr, "%s\n", resultado.error.c_str());
    return resultado.codigo;
  } catch (...) {
    std::fprintf(stderr, "Zuvi: %s\n", zuvi::DescripcionActual().c_str());
    return 1;
  }
}
