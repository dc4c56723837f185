// Entry points of ZuviHost.dll.
#include "automation/windows_com.h"

#include <algorithm>
#include <new>
#include <vector>

#include "automation/class_factory.h"
#include "host/win32/servidor_host.h"
#include "win32/image.h"
#include "win32/text.h"

namespace {

using namespace zuvi;
using zuvi::host::ClaseHost;
using zuvi::host::ClasesHost;
using zuvi::host::ServidorHost;

/// The DLL's state. It is never destroyed at the end of the process: by then the database driver may be gone.
ServidorHost& Servidor() {
  alignas(ServidorHost) static unsigned char lugar[sizeof(ServidorHost)];
  static ServidorHost* const servidor = ::new (lugar) ServidorHost(ThisImage());
  return *servidor;
}

std::vector<RegisteredClass> Registradas() {
  std::vector<RegisteredClass> clases;
  for (const ClaseHost& clase : ClasesHost())
    clases.push_back({clase.ids.clsid, clase.biblioteca, Wide(clase.prog_id), clase.descripcion});
  return clases;
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instancia, DWORD razon, LPVOID) {
  if (razon == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(instancia);
  return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** salida) {
  if (!salida) return E_POINTER;
  *salida = nullptr;
  const auto clases = ClasesHost();
  const auto clase = std::ranges::find_if(clases, [&](const ClaseHost& c) { return c.ids.clsid == clsid; });
  if (clase == clases.end()) return CLASS_E_CLASSNOTAVAILABLE;
  return Guarded("ZuviHost", [&] {
    return GiveFactory(
        Servidor().Automatizacion(), [&c = *clase] { return Servidor().Crea(c); }, iid, salida);
  });
}

HRESULT WINAPI DllCanUnloadNow() {
  HRESULT resultado = S_FALSE;
  Guarded("ZuviHost", [&] { resultado = Servidor().Descansa() ? S_OK : S_FALSE; });
  return resultado;
}

HRESULT WINAPI DllRegisterServer() {
  return RegisterServer(Servidor().Automatizacion(), Registradas(), RegistrationScope::Machine);
}

HRESULT WINAPI DllUnregisterServer() {
  return UnregisterServer(Servidor().Automatizacion(), Registradas(), RegistrationScope::Machine);
}

HRESULT WINAPI DllInstall(BOOL instala, LPCWSTR linea) {
  return InstallServer(Servidor().Automatizacion(), Registradas(), instala != FALSE, linea);
}
}
