#include "host/system/archivos.h"

#include <windows.h>

#include "host/win32/ruta_larga.h"
#include "win32/handles.h"
#include "win32/text.h"

namespace zuvi::host {
namespace {

std::error_code Error(DWORD codigo) { return {static_cast<int>(codigo), std::system_category()}; }

bool EsCarpeta(const std::wstring& ruta) {
  const DWORD atributos = GetFileAttributesW(ruta.c_str());
  return atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// All of it on the disk; else why not.
DWORD Escribe(HANDLE archivo, const std::string& texto) {
  for (std::size_t hechos = 0; hechos < texto.size();) {
    const auto faltan = static_cast<DWORD>(std::min<std::size_t>(texto.size() - hechos, 1U << 20));
    DWORD n = 0;
    if (!WriteFile(archivo, texto.data() + hechos, faltan, &n, nullptr)) return GetLastError();
    hechos += n;
  }
  return FlushFileBuffers(archivo) ? ERROR_SUCCESS : GetLastError();
}

}  // namespace

std::filesystem::path Completa(const std::filesystem::path& ruta) { return RutaCompleta(ruta.wstring()); }

std::filesystem::path ParaAbrir(const std::filesystem::path& ruta) { return RutaLarga(ruta.wstring()); }

std::error_code CreaCarpetas(const std::filesystem::path& carpeta) {
  const std::wstring completa = RutaCompleta(carpeta.wstring());
  const std::wstring larga = RutaLarga(completa);
  if (EsCarpeta(larga) || CreateDirectoryW(larga.c_str(), nullptr)) return {};
  DWORD codigo = GetLastError();
  const auto barra = completa.find_last_of(L'\\');
  if (codigo == ERROR_PATH_NOT_FOUND && barra != std::wstring::npos && barra > 2) {
    if (const std::error_code fallo = CreaCarpetas(completa.substr(0, barra))) return fallo;
    if (CreateDirectoryW(larga.c_str(), nullptr)) return {};
    codigo = GetLastError();
  }
  // Another program may have made it in between.
  if (codigo == ERROR_ALREADY_EXISTS) return EsCarpeta(larga) ? std::error_code{} : Error(ERROR_DIRECTORY);
  return Error(codigo);
}

std::error_code EscribeNuevo(const std::filesystem::path& ruta, const std::string& texto) {
  const UniqueFile nuevo = Opened(CreateFileW(RutaLarga(ruta.wstring()).c_str(), GENERIC_WRITE, 0, nullptr,
                                              CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!nuevo) return Error(GetLastError());
  const DWORD codigo = Escribe(nuevo.get(), texto);
  return codigo == ERROR_SUCCESS ? std::error_code{} : Error(codigo);
}

std::error_code Reemplaza(const std::filesystem::path& origen, const std::filesystem::path& destino) {
  const std::wstring de = RutaLarga(origen.wstring()), a = RutaLarga(destino.wstring());
  DWORD codigo = ERROR_SUCCESS;
  // A virus scanner or an index looks at a new file for a moment, and a second writer replaces the same page.
  for (const DWORD espera : {20u, 40u, 80u, 160u, 0u}) {
    if (MoveFileExW(de.c_str(), a.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) return {};
    codigo = GetLastError();
    if ((codigo != ERROR_SHARING_VIOLATION && codigo != ERROR_ACCESS_DENIED) || EsCarpeta(a)) break;
    Sleep(espera);
  }
  return Error(codigo);
}

void Borra(const std::filesystem::path& ruta) { DeleteFileW(RutaLarga(ruta.wstring()).c_str()); }

std::string TextoDelSistema(const std::error_code& fallo) {
  wchar_t texto[512] = L"";
  DWORD largo = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                               static_cast<DWORD>(fallo.value()), 0, texto, std::size(texto), nullptr);
  while (largo > 0 && (texto[largo - 1] <= L' ' || texto[largo - 1] == L'.')) --largo;
  return largo > 0 ? Narrow({texto, largo}) : "error " + std::to_string(fallo.value());
}

}  // namespace zuvi::host
