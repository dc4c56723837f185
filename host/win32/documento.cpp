#include "host/win32/documento.h"

#include <windows.h>
// Only after the system's own types.
#include <shellapi.h>

#include "host/system/archivos.h"
#include "host/win32/ruta_larga.h"
#include "win32/text.h"

namespace zuvi::host {
namespace {

/// The system asks nothing of its own: what has no program, it says here.
std::error_code Ejecuta(const wchar_t* verbo, const std::string& archivo) {
  const std::wstring ruta = RutaCorta(Wide(archivo));
  if (ruta.empty()) return std::make_error_code(std::errc::filename_too_long);
  SHELLEXECUTEINFOW pedido{};
  pedido.cbSize = sizeof pedido;
  // This thread may end, or pump nothing, before a program in the background has answered.
  pedido.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  pedido.hwnd = GetActiveWindow();
  pedido.lpVerb = verbo;
  pedido.lpFile = ruta.c_str();
  pedido.nShow = SW_SHOWNORMAL;
  if (ShellExecuteExW(&pedido)) return {};
  const DWORD codigo = GetLastError();
  // Without a program for it the last error may tell only what was tried in its place.
  const bool sin_programa = reinterpret_cast<INT_PTR>(pedido.hInstApp) == SE_ERR_NOASSOC;
  return {static_cast<int>(sin_programa ? ERROR_NO_ASSOCIATION : codigo), std::system_category()};
}

}  // namespace

std::error_code ImprimeDocumento(const std::string& archivo) { return Ejecuta(L"print", archivo); }

std::error_code AbreDocumento(const std::string& archivo) {
  const std::error_code fallo = Ejecuta(L"open", archivo);
  // Some programs know only another way to show a page, the one of a double click.
  return fallo.value() == ERROR_NO_ASSOCIATION ? Ejecuta(nullptr, archivo) : fallo;
}

std::string MotivoDeDocumento(const std::error_code& fallo) {
  switch (fallo.value()) {
    case ERROR_NO_ASSOCIATION:
      return "ningún programa de este equipo sabe hacerlo";
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DLL_NOT_FOUND:
      return "el programa que debe hacerlo no está";
    case ERROR_CANCELLED:
      return "se canceló";
    default:
      return Motivo(fallo);
  }
}

}  // namespace zuvi::host
