#include "host/win32/salida_programa.h"

#include <algorithm>

#include "win32/image.h"
#include "win32/text.h"

namespace zuvi::host {
namespace {

/// Whether a handle is one of a console, also of one that this process has not joined. A function of the
/// library under the documented ones tells; without it the answer is no.
bool EsDeConsola(HANDLE canal) {
  struct {
    ULONG_PTR estado, bytes;
  } resultado{};
  struct {
    ULONG tipo, rasgos;
  } aparato{};
  constexpr int kAparato = 4;
  constexpr ULONG kConsola = 0x50;
  using Funcion = LONG(NTAPI*)(HANDLE, void*, void*, ULONG, int);
  const auto pregunta = FunctionOf<Funcion>(L"ntdll.dll", "NtQueryVolumeInformationFile");
  return pregunta && pregunta(canal, &resultado, &aparato, sizeof aparato, kAparato) >= 0 &&
         aparato.tipo == kConsola;
}

/// The handle of a console that the starting program has, and this one not yet, is good for nothing. A number
/// that was left over from that program names one of another kind by chance, at most the current folder's.
bool Sirve(HANDLE canal) {
  if (!canal || canal == INVALID_HANDLE_VALUE) return false;
  DWORD modo = 0;
  BY_HANDLE_FILE_INFORMATION datos{};
  switch (GetFileType(canal)) {
    case FILE_TYPE_PIPE:
      return true;
    case FILE_TYPE_CHAR:
      return GetConsoleMode(canal, &modo) || !EsDeConsola(canal);
    case FILE_TYPE_DISK:  // a file may be given for writing alone, and then tells nothing about itself
      return !GetFileInformationByHandle(canal, &datos) ||
             (datos.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    default:
      return false;
  }
}

HANDLE Dado(DWORD cual) {
  const HANDLE canal = GetStdHandle(cual);
  return Sirve(canal) ? canal : nullptr;
}

HANDLE DeConsola() {
  const HANDLE canal = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  return canal == INVALID_HANDLE_VALUE ? nullptr : canal;
}

std::string ConRetornos(const std::string& linea) {
  std::string texto;
  for (const char c : linea) {
    if (c == '\n' && !texto.ends_with('\r')) texto += '\r';
    texto += c;
  }
  return texto + "\r\n";
}

void EscribeEnConsola(HANDLE consola, std::wstring_view texto) {
  constexpr std::size_t kTramo = 4096;
  while (!texto.empty()) {
    std::size_t cuantas = std::min(texto.size(), kTramo);
    if (cuantas < texto.size() && IS_HIGH_SURROGATE(texto[cuantas - 1])) --cuantas;
    DWORD n = 0;
    if (!WriteConsoleW(consola, texto.data(), static_cast<DWORD>(cuantas), &n, nullptr) || n == 0) return;
    texto.remove_prefix(n);
  }
}

void EscribeBytes(HANDLE canal, std::string_view texto) {
  while (!texto.empty()) {
    DWORD n = 0;
    const auto cuantos = static_cast<DWORD>(std::min<std::size_t>(texto.size(), 1U << 20));
    if (!WriteFile(canal, texto.data(), cuantos, &n, nullptr) || n == 0) return;
    texto.remove_prefix(n);
  }
}

bool HayEscritorio() {
  USEROBJECTFLAGS datos{};
  return !GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &datos, sizeof datos, nullptr) ||
         (datos.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace

SalidaPrograma::SalidaPrograma() : salida_(Dado(STD_OUTPUT_HANDLE)), errores_(Dado(STD_ERROR_HANDLE)) {
  if (salida_ && errores_) return;
  AttachConsole(ATTACH_PARENT_PROCESS);  // fails where there is none, or this process has it already
  if (!salida_) salida_ = DeConsola();
  if (!errores_) errores_ = DeConsola();
  // Joining a console may have put its own ones in their place; programs that a script starts get these.
  SetStdHandle(STD_OUTPUT_HANDLE, salida_);
  SetStdHandle(STD_ERROR_HANDLE, errores_);
}

void SalidaPrograma::Escribe(HANDLE destino, const std::string& linea, unsigned icono) {
  if (!destino) return MuestraCaja(linea, icono);
  const std::string texto = ConRetornos(linea);
  DWORD modo = 0;
  if (GetConsoleMode(destino, &modo))
    EscribeEnConsola(destino, Wide(texto));
  else
    EscribeBytes(destino, texto);
}

void MuestraCaja(std::string_view texto, unsigned icono) {
  if (HayEscritorio())
    MessageBoxW(GetActiveWindow(), Wide(texto).c_str(), L"Zuvi", MB_OK | MB_SETFOREGROUND | icono);
}

}  // namespace zuvi::host
