#include "host/win32/opciones_windows.h"

#include <lmcons.h>
#include <shlobj.h>
#include <windows.h>

#include "base/text.h"
#include "host/red.h"

namespace zuvi::host {
namespace {

std::string DeAncho(const wchar_t* texto) {
  return Utf8(std::u16string(texto, texto + std::char_traits<wchar_t>::length(texto)));
}

std::string Variable(const wchar_t* nombre) {
  const DWORD largo = GetEnvironmentVariableW(nombre, nullptr, 0);
  if (largo == 0) return {};
  std::wstring valor(largo, L'\0');
  valor.resize(GetEnvironmentVariableW(nombre, valor.data(), largo));
  return DeAncho(valor.c_str());
}

std::string CarpetaDelModulo() {
  HMODULE modulo = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&CarpetaDelModulo), &modulo);
  wchar_t ruta[MAX_PATH * 4] = L"";
  GetModuleFileNameW(modulo, ruta, static_cast<DWORD>(std::size(ruta)));
  const std::string completa = DeAncho(ruta);
  const auto barra = completa.find_last_of('\\');
  return barra == std::string::npos ? std::string(".") : completa.substr(0, barra);
}

std::string ArchivoPropio() {
  wchar_t carpeta[MAX_PATH] = L"";
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr, 0, carpeta)))
    throw HostError("No se encontró la carpeta de datos del usuario");
  const std::wstring zuvi = std::wstring(carpeta) + L"\\Zuvi";
  CreateDirectoryW(zuvi.c_str(), nullptr);  // may exist already
  return DeAncho((zuvi + L"\\zuvi.db").c_str());
}

}  // namespace

Impresion ImpresionDeWindows() {
  const std::string impresion = Minusculas(Variable(L"ZUVI_IMPRIME"));
  return impresion == "no" ? Impresion::No : impresion == "imprime" ? Impresion::Imprime : Impresion::Abre;
}

namespace {

/// A function that only an emulation has; null elsewhere.
template <class Funcion>
Funcion DelEmulador(const char* nombre) {
  return reinterpret_cast<Funcion>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32"), nombre)));
}

/// The file by the name that the system under the emulation has for it.
std::string RutaParaControlador(const std::string& archivo) {
  const auto convierte = DelEmulador<char*(CDECL*)(LPCWSTR)>("wine_get_unix_file_name");
  const std::u16string ancho = Utf16(archivo);
  char* ruta = convierte ? convierte(reinterpret_cast<const wchar_t*>(ancho.c_str())) : nullptr;
  if (!ruta) return archivo;
  const std::string resultado = ruta;
  HeapFree(GetProcessHeap(), 0, ruta);
  return resultado;
}

/// The other way round, for a name that begins at the root of that system; empty for any other.
std::string DelOtroSistema(const std::string& archivo) {
  const auto convierte = DelEmulador<wchar_t*(CDECL*)(LPCSTR)>("wine_get_dos_file_name");
  const bool desde_raiz = archivo.starts_with('/') && !archivo.starts_with("//");
  wchar_t* ruta = convierte && desde_raiz ? convierte(archivo.c_str()) : nullptr;
  if (!ruta) return {};
  const std::string resultado = DeAncho(ruta);
  HeapFree(GetProcessHeap(), 0, ruta);
  return resultado;
}

/// The file by its full name, on a server too.
std::string RutaDeWindows(const std::string& archivo) {
  if (std::string otra = DelOtroSistema(archivo); !otra.empty()) return otra;
  const std::u16string utf16 = Utf16(archivo);
  const std::wstring ancha(utf16.begin(), utf16.end());
  std::wstring completa(GetFullPathNameW(ancha.c_str(), 0, nullptr, nullptr), L'\0');
  completa.resize(
      GetFullPathNameW(ancha.c_str(), static_cast<DWORD>(completa.size()), completa.data(), nullptr));
  return completa.empty() ? archivo : DeAncho(completa.c_str());
}

}  // namespace

Opciones OpcionesDeWindows() {
  Opciones opciones;
  const std::string base = Variable(L"ZUVI_BASE");
  PonBase(opciones, base.empty() ? ArchivoPropio() : base);
  opciones.archivo_por_omision = base.empty();
  opciones.crea_archivo = true;
  opciones.nombre_del_sistema = RutaDeWindows;
  opciones.nombre_para_controlador = RutaParaControlador;
  opciones.esta_en_red = EstaEnRed;
  opciones.ruta = CarpetaDelModulo();
  if (const std::string idioma = Variable(L"ZUVI_IDIOMA"); !idioma.empty()) opciones.idioma = idioma;
  opciones.usuario = Variable(L"ZUVI_USUARIO");
  if (opciones.usuario.empty()) {
    wchar_t usuario[UNLEN + 1] = L"";
    DWORD largo = UNLEN + 1;
    if (GetUserNameW(usuario, &largo)) opciones.usuario = DeAncho(usuario);
  }
  return opciones;
}

}  // namespace zuvi::host
