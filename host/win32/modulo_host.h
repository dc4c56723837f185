#pragma once

#include "com/automation/windows_com.h"

#include <memory>
#include <span>
#include <string_view>

#include "com/automation/class_factory.h"
#include "com/automation/dispatch_object.h"
#include "com/automation/registration.h"
#include "com/fabrica_com.h"
#include "host/ventanas/fabrica_ventanas.h"
#include "toolkit/win32/win32_desktop.h"

namespace zuvi::host {

/// One creatable class of ZuviHost.dll.
struct ClaseHost {
  const char* prog_id;
  ClassIds ids;
  GUID biblioteca;
  const wchar_t* descripcion;
};

/// The classes of the host, in the order of their registration.
std::span<const ClaseHost> ClasesHost();

/// Everything ZuviHost.dll holds: the host with its connection and windows, and the class of record sets that
/// it publishes for this process while it is in use.
class ModuloHost {
 public:
  explicit ModuloHost(HINSTANCE instancia);

  ComModule& Automatizacion() { return modulo_; }
  /// A new object of a class, published.
  ComPtr<IUnknown> Crea(const ClaseHost& clase);
  /// True when nothing of the DLL is in use; then the host has closed its connection and can start anew.
  bool Descansa();

 private:
  /// Makes the objects of the host, which starts when it is first needed.
  FabricaVentanas& Fabrica();
  void PublicaRecordset();

  ComModule modulo_;
  Win32Desktop escritorio_;
  FabricaCom otras_;  // the component
  std::shared_ptr<Anfitrion> anfitrion_;
  std::unique_ptr<FabricaVentanas> fabrica_;  // of that host
  DWORD recordset_publicado_ = 0;
};

}  // namespace zuvi::host
