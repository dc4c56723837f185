#include "host/win32/ruta_larga.h"

#include <string_view>

#include "win32/text.h"

namespace zuvi::host {
namespace {

constexpr std::wstring_view kLarga = L"\\\\?\\", kRed = L"\\\\?\\UNC\\";
/// A folder's name leaves room for a file's old short name of 8.3.
constexpr std::size_t kCabe = MAX_PATH - 12;

std::wstring SinPrefijo(const std::wstring& ruta) {
  if (ruta.starts_with(kRed)) return L"\\\\" + ruta.substr(kRed.size());
  return ruta.starts_with(kLarga) ? ruta.substr(kLarga.size()) : ruta;
}

}  // namespace

std::wstring RutaCompleta(const std::wstring& ruta) {
  const std::wstring completa = SystemText(
      [&](wchar_t* texto, DWORD cabe) { return GetFullPathNameW(ruta.c_str(), cabe, texto, nullptr); });
  return completa.empty() ? ruta : completa;
}

std::wstring RutaLarga(const std::wstring& ruta) {
  std::wstring completa = RutaCompleta(ruta);
  if (completa.size() < kCabe || completa.starts_with(kLarga) || completa.starts_with(L"\\\\.\\"))
    return completa;
  if (completa.starts_with(L"\\\\")) return std::wstring(kRed) + completa.substr(2);
  return std::wstring(kLarga) + completa;
}

std::wstring RutaCorta(const std::wstring& ruta) {
  if (ruta.size() < MAX_PATH) return ruta;
  const std::wstring larga = RutaLarga(ruta);
  // The file keeps its own name: a short one has another extension, and that may be another program's.
  const auto barra = larga.find_last_of(L'\\');
  const std::wstring carpeta = larga.substr(0, barra);
  const std::wstring corta =
      SystemText([&](wchar_t* texto, DWORD cabe) { return GetShortPathNameW(carpeta.c_str(), texto, cabe); });
  const std::wstring hallada = SinPrefijo(corta) + larga.substr(barra);
  return !corta.empty() && hallada.size() < MAX_PATH ? hallada : std::wstring();
}

}  // namespace zuvi::host
