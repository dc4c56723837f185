// Entry points of ZuviProduccion.dll.
#include <new>

#include "automation/class_factory.h"
#include "com/modulo_produccion.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

/// The DLL's state. It is never destroyed: at the end of a process the hosts of its objects may be gone
/// already.
zuvi::ModuloProduccion& Estado() {
  alignas(zuvi::ModuloProduccion) static unsigned char place[sizeof(zuvi::ModuloProduccion)];
  static auto* const state = ::new (place) zuvi::ModuloProduccion(reinterpret_cast<HINSTANCE>(&__ImageBase));
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
  if (!zuvi::ModuloProduccion::Tiene(clsid)) return CLASS_E_CLASSNOTAVAILABLE;
  return zuvi::GiveFactory(
      Estado().Automatizacion(), [] { return Estado().CreaProduccion(); }, iid, out);
}

STDAPI DllCanUnloadNow() { return Estado().Automatizacion().Idle() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return zuvi::RegisterModule(Estado().Automatizacion(), zuvi::ModuloProduccion::Clases(),
                              zuvi::RegistrationScope::Machine);
}

STDAPI DllUnregisterServer() {
  return zuvi::UnregisterModule(Estado().Automatizacion(), zuvi::ModuloProduccion::Clases(),
                                zuvi::RegistrationScope::Machine);
}

STDAPI DllInstall(BOOL install, LPCWSTR command_line) {
  return zuvi::InstallModule(Estado().Automatizacion(), zuvi::ModuloProduccion::Clases(), install != FALSE,
                             command_line);
}
}
