// host/win32/: ZuviHost.dll and Zuvi.exe: the host's objects as COM classes, an own host for each apartment,
// the progress window, the script runner, and what the host needs of Windows (files, disks, ODBC's library).
#pragma once

#include "automation/windows_com.h"

#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <utility>

#include "automation/dispatch_object.h"
#include "automation/registration.h"
#include "win32/thread_identity.h"

namespace zuvi::host {

class ApartamentoHost;

/// One creatable class of ZuviHost.dll.
struct ClaseHost {
  const char* prog_id;
  ClassIds ids;
  GUID biblioteca;
  const wchar_t* descripcion;
};

/// The classes of the host, in the order of their registration.
std::span<const ClaseHost> ClasesHost();

/// Everything ZuviHost.dll holds: a host for each apartment that works with one. May be called on any thread.
class ServidorHost {
 public:
  explicit ServidorHost(HINSTANCE instancia) : servidor_("ZuviHost", instancia, 2) {}

  ComServer& Automatizacion() { return servidor_; }
  /// A new object of a class, published, of the calling thread's apartment.
  ComPtr<IUnknown> Crea(const ClaseHost& clase);
  /// Lets go of the calling apartment's host unless it is in use: its connection is closed, and the next
  /// object starts a new one. True when no apartment has one and nothing else of the DLL is in use.
  bool Descansa();

 private:
  std::shared_ptr<ApartamentoHost> Actual();
  /// Takes the calling apartment's host out unless it is in use; null when there is none to be let go.
  std::shared_ptr<ApartamentoHost> Saca();

  ComServer servidor_;  // class factories are counted here; objects by their apartment
  std::mutex candado_;  // of the map alone: nobody is called under it
  std::map<ThreadIdentity, std::shared_ptr<ApartamentoHost>> apartamentos_;
};

}  // namespace zuvi::host
