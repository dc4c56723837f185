#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <span>

#include "automation/com_server.h"
#include "automation/prog_id_factory.h"
#include "automation/registration.h"
#include "toolkit/win32/win32_desktop.h"
#include "win32/thread_identity.h"
#include "windows/modulo.h"

namespace zuvi {

/// What the component's objects of one apartment share, the two shared host objects among it. Host objects
/// belong to the thread that made them, so they are never shared across apartments, and they are let go when
/// the last object or window of the apartment is: on its own thread and never while the DLL is being taken
/// down.
class Apartamento : public std::enable_shared_from_this<Apartamento> {
 public:
  explicit Apartamento(ComServer& server);
  ~Apartamento();
  Modulo& ModuloDelComponente() { return modulo_; }

 private:
  std::shared_ptr<void> RetieneVentana();

  ComServer& server_;
  ProgIdFactory fabrica_;
  Win32Desktop escritorio_;
  Modulo modulo_;
};

/// Everything ZuviProduccion.dll owns.
class ServidorProduccion {
 public:
  explicit ServidorProduccion(HINSTANCE instance) : server_("ZuviProduccion", instance, 1) {}

  ComServer& Automatizacion() { return server_; }
  /// A new `Produccion` of the calling thread's apartment.
  ComPtr<IUnknown> CreaProduccion();
  /// True for the identifier of the one creatable class.
  static bool Tiene(REFCLSID clsid);
  /// What registration writes.
  static std::span<const RegisteredClass> Clases();

 private:
  std::shared_ptr<Apartamento> ApartamentoActual();

  ComServer server_;
  std::mutex mutex_;
  std::map<ThreadIdentity, std::weak_ptr<Apartamento>> apartamentos_;
};

}  // namespace zuvi
