// Entry points of ZuviHost.dll.
#include "automation/windows_com.h"

#include <algorithm>
#include <new>
#include <vector>

#include "automation/class_factory.h"
#include "automation/handles.h"
#include "host/win32/modulo_host.h"

namespace {

using namespace zuvi;
using zuvi::host::ClaseHost;
using zuvi::host::ClasesHost;
using zuvi::host::ModuloHost;

HINSTANCE instancia_dll = nullptr;

/// The DLL's state. It is never destroyed at the end of the process: by then the database driver may be gone.
ModuloHost& Modulo() {
  alignas(ModuloHost) static unsigned char lugar[sizeof(ModuloHost)];
  static ModuloHost* const modulo = ::new (lugar) ModuloHost(instancia_dll);
  return *modulo;
}

std::vector<RegisteredClass> Registradas() {
  std::vector<RegisteredClass> clases;
  for (const ClaseHost& clase : ClasesHost())
    clases.push_back({clase.ids.clsid, clase.biblioteca, Ancho(clase.prog_id), clase.descripcion});
  return clases;
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instancia, DWORD razon, LPVOID) {
  if (razon == DLL_PROCESS_ATTACH) {
    instancia_dll = instancia;
    DisableThreadLibraryCalls(instancia);
  }
  return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** salida) {
  if (!salida) return E_POINTER;
  *salida = nullptr;
  const auto clases = ClasesHost();
  const auto clase = std::ranges::find_if(clases, [&](const ClaseHost& c) { return c.ids.clsid == clsid; });
  if (clase == clases.end()) return CLASS_E_CLASSNOTAVAILABLE;
  return Frontera("ZuviHost", [&] {
    return GiveFactory(
        Modulo().Automatizacion(), [&c = *clase] { return Modulo().Crea(c); }, iid, salida);
  });
}

HRESULT WINAPI DllCanUnloadNow() {
  HRESULT resultado = S_FALSE;
  Frontera("ZuviHost", [&] { resultado = Modulo().Descansa() ? S_OK : S_FALSE; });
  return resultado;
}

HRESULT WINAPI DllRegisterServer() {
  return RegisterModule(Modulo().Automatizacion(), Registradas(), RegistrationScope::Machine);
}

HRESULT WINAPI DllUnregisterServer() {
  return UnregisterModule(Modulo().Automatizacion(), Registradas(), RegistrationScope::Machine);
}

HRESULT WINAPI DllInstall(BOOL instala, LPCWSTR linea) {
  return InstallModule(Modulo().Automatizacion(), Registradas(), instala != FALSE, linea);
}
}
