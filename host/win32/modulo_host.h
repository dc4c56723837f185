#pragma once

#include "com/automation/windows_com.h"

#include <memory>
#include <span>
#include <string_view>

#include "com/automation/class_factory.h"
#include "com/automation/dispatch_object.h"
#include "com/automation/registration.h"
#include "host/anfitrion.h"

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

/// Everything ZuviHost.dll holds: the host with its connection, and the class of record sets that it
/// publishes for this process while it is in use.
class ModuloHost {
 public:
  explicit ModuloHost(HINSTANCE instancia);

  ComModule& Automatizacion() { return modulo_; }
  /// A new object of a class, published.
  ComPtr<IUnknown> Crea(const ClaseHost& clase);
  /// True when nothing of the DLL is in use; then the host has closed its connection and can start anew.
  bool Descansa();

 private:
  const std::shared_ptr<Anfitrion>& AnfitrionVivo();
  void PublicaRecordset();

  ComModule modulo_;
  std::shared_ptr<Anfitrion> anfitrion_;
  DWORD recordset_publicado_ = 0;
};

}  // namespace zuvi::host
