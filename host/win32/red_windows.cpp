#include <windows.h>

#include <algorithm>

#include "host/system/red.h"
#include "win32/handles.h"
#include "win32/text.h"

namespace zuvi::host {
namespace {

/// With strokes of one kind only, and without the mark of a name that is not to be looked at closely, which
/// not every question about volumes understands.
std::wstring Sencilla(std::wstring ruta) {
  std::ranges::replace(ruta, L'/', L'\\');
  const bool marcada = ruta.starts_with(LR"(\\?\)") || ruta.starts_with(LR"(\\.\)");
  return marcada && ruta.size() > 5 && ruta[5] == L':' ? ruta.substr(4) : ruta;
}

/// A name that begins with a server's: \\server\share, \\?\UNC\server\share. The other names with two
/// strokes in front are of this machine's devices.
bool NombraServidor(const std::wstring& ruta) {
  if (!ruta.starts_with(LR"(\\)")) return false;
  if (!ruta.starts_with(LR"(\\?\)") && !ruta.starts_with(LR"(\\.\)")) return true;
  const std::wstring tras_marca = ruta.substr(4, 4);
  return ::CompareStringOrdinal(tras_marca.c_str(), -1, LR"(UNC\)", -1, TRUE) == CSTR_EQUAL;
}

/// A drive letter or a folder under which a share is mounted.
bool EstaEnVolumenRemoto(const std::wstring& ruta) {
  std::wstring raiz(ruta.size() + MAX_PATH, L'\0');
  return ::GetVolumePathNameW(ruta.c_str(), raiz.data(), static_cast<DWORD>(raiz.size())) &&
         ::GetDriveTypeW(raiz.c_str()) == DRIVE_REMOTE;
}

/// Where the links on the way to a file or folder end; empty when it cannot be told.
std::wstring Destino(const std::wstring& ruta) {
  const UniqueFile abierto =
      Opened(::CreateFileW(ruta.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!abierto) return {};
  return SystemText(
      [&](wchar_t* texto, DWORD cabe) { return ::GetFinalPathNameByHandleW(abierto.get(), texto, cabe, 0); });
}

bool EsRemota(const std::wstring& dada) {
  const std::wstring ruta = Sencilla(dada);
  return !ruta.empty() && (NombraServidor(ruta) || EstaEnVolumenRemoto(ruta));
}

}  // namespace

bool EstaEnRed(const std::string& archivo) {
  const std::wstring ruta = Wide(archivo);
  // By its name first: a server that is switched off keeps whoever opens a file of its waiting.
  if (EsRemota(ruta)) return true;
  const std::wstring destino = Destino(ruta);
  if (!destino.empty()) return EsRemota(destino);
  const std::size_t barra = ruta.find_last_of(L"\\/");
  return barra != std::wstring::npos && EsRemota(Destino(ruta.substr(0, barra + 1)));
}

}  // namespace zuvi::host
