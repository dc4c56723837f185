#include "host/win32/opciones_windows.h"

#include <lmcons.h>
#include <shlobj.h>
#include <windows.h>

#include "base/text.h"
#include "host/processes/paginas.h"
#include "host/system/archivos.h"
#include "host/system/red.h"
#include "host/system/rutas.h"
#include "win32/handles.h"
#include "win32/image.h"
#include "win32/text.h"

namespace zuvi::host {
namespace {

std::string Variable(const wchar_t* nombre) {
  return Narrow(
      SystemText([&](wchar_t* texto, DWORD cabe) { return GetEnvironmentVariableW(nombre, texto, cabe); }));
}

/// A folder of the user's profile, wherever it was moved to; empty where there is none.
std::filesystem::path CarpetaDelPerfil(REFKNOWNFOLDERID cual) {
  wchar_t* ruta = nullptr;
  // It may be on a machine that is off: it is not looked at before something is written there.
  const HRESULT codigo = SHGetKnownFolderPath(cual, KF_FLAG_DONT_VERIFY, nullptr, &ruta);
  const UniqueHandle<wchar_t*, &CoTaskMemFree> suya(ruta);
  return SUCCEEDED(codigo) && ruta ? std::filesystem::path(ruta) : std::filesystem::path();
}

std::string ArchivoPropio() {
  const std::filesystem::path datos = CarpetaDelPerfil(FOLDERID_LocalAppData);
  if (datos.empty()) throw HostError("No se encontró la carpeta de datos del usuario");
  CreaCarpetas(datos / "Zuvi");  // without it opening the database fails, and tells why
  return TextoDeRuta(datos / "Zuvi" / "zuvi.db");
}

}  // namespace

Impresion ImpresionDeWindows() {
  const std::string impresion = ToLower(Variable(L"ZUVI_IMPRIME"));
  return impresion == "no" ? Impresion::No : impresion == "imprime" ? Impresion::Imprime : Impresion::Abre;
}

namespace {

void LiberaDelMonton(void* bloque) { HeapFree(GetProcessHeap(), 0, bloque); }

/// A function that only an emulation has; null elsewhere.
template <class Funcion>
Funcion DelEmulador(const char* nombre) {
  return FunctionOf<Funcion>(L"kernel32", nombre);
}

/// The file by the name that the system under the emulation has for it.
std::string RutaParaControlador(const std::string& archivo) {
  const auto convierte = DelEmulador<char*(CDECL*)(LPCWSTR)>("wine_get_unix_file_name");
  const UniqueHandle<char*, &LiberaDelMonton> ruta(convierte ? convierte(Wide(archivo).c_str()) : nullptr);
  return ruta ? ruta.get() : archivo;
}

/// The other way round, for a name that begins at the root of that system.
std::string RutaDeWindows(const std::string& archivo) {
  const auto convierte = DelEmulador<wchar_t*(CDECL*)(LPCSTR)>("wine_get_dos_file_name");
  const bool desde_raiz = archivo.starts_with('/') && !archivo.starts_with("//");
  const UniqueHandle<wchar_t*, &LiberaDelMonton> ruta(convierte && desde_raiz ? convierte(archivo.c_str())
                                                                              : nullptr);
  return ruta ? Narrow(ruta.get()) : archivo;
}

}  // namespace

std::vector<std::string> CarpetasDeReportes() {
  std::vector<std::string> carpetas;
  // Windows may keep programs that it does not know out of the documents.
  for (const KNOWNFOLDERID* cual : {&FOLDERID_Documents, &FOLDERID_LocalAppData})
    if (const std::filesystem::path carpeta = CarpetaDelPerfil(*cual); !carpeta.empty())
      carpetas.push_back(TextoDeRuta(carpeta / "Zuvi" / "Reportes"));
  return carpetas;
}

Opciones OpcionesDeWindows() {
  Opciones opciones;
  const std::string base = Variable(L"ZUVI_BASE");
  PonBase(opciones, base.empty() ? ArchivoPropio() : base);
  opciones.archivo_por_omision = base.empty();
  opciones.crea_archivo = true;
  opciones.nombre_del_sistema = RutaDeWindows;
  opciones.nombre_para_controlador = RutaParaControlador;
  opciones.esta_en_red = EstaEnRed;
  opciones.ruta = Narrow(FolderOf(ThisImage()));
  const std::string reportes = RutaDeWindows(Variable(L"ZUVI_REPORTES"));
  // In full: the program may change its current folder.
  opciones.reportes =
      reportes.empty() ? CarpetasDeReportes() : std::vector{TextoDeRuta(Completa(Ruta(reportes)))};
  if (const std::string idioma = Variable(L"ZUVI_IDIOMA"); !idioma.empty()) opciones.idioma = idioma;
  opciones.usuario = Variable(L"ZUVI_USUARIO");
  if (opciones.usuario.empty()) {
    wchar_t usuario[UNLEN + 1] = L"";
    DWORD largo = UNLEN + 1;
    if (GetUserNameW(usuario, &largo)) opciones.usuario = Narrow(usuario);
  }
  return opciones;
}

}  // namespace zuvi::host
