// Entry points of ZuviProduccion.dll.
#include <new>

#include "automation/class_factory.h"
#include "com/servidor_produccion.h"
#include "win32/image.h"

namespace {

/// The DLL's state. It is never destroyed: at the end of a process the hosts of its objects may be gone
/// already.
zuvi::ServidorProduccion& Estado() {
  alignas(zuvi::ServidorProduccion) static unsigned char place[sizeof(zuvi::ServidorProduccion)];
  static auto* const state = ::new (place) zuvi::ServidorProduccion(zuvi::ThisImage());
  return *state;
}

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(instance);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (!zuvi::ServidorProduccion::Tiene(clsid)) return CLASS_E_CLASSNOTAVAILABLE;
  return zuvi::GiveFactory(
      Estado().Automatizacion(), [] { return Estado().CreaProduccion(); }, iid, out);
}

STDAPI DllCanUnloadNow() { return Estado().Automatizacion().Idle() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return zuvi::RegisterServer(Estado().Automatizacion(), zuvi::ServidorProduccion::Clases(),
                              zuvi::RegistrationScope::Machine);
}

STDAPI DllUnregisterServer() {
  return zuvi::UnregisterServer(Estado().Automatizacion(), zuvi::ServidorProduccion::Clases(),
                                zuvi::RegistrationScope::Machine);
}

STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  return zuvi::InstallServer(Estado().Automatizacion(), zuvi::ServidorProduccion::Clases(), install != FALSE,
                             command_line);
}
}
