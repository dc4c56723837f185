#pragma once

#include "automation/windows_com.h"

#include <memory>

#include "automation/prog_id_factory.h"
#include "host/ventanas/fabrica_ventanas.h"
#include "host/win32/clase_recordset.h"
#include "toolkit/win32/win32_desktop.h"

namespace zuvi::host {

struct ClaseHost;

/// The host of one apartment: its connection, its windows, the record sets it publishes. Nothing of it is
/// shared with another apartment, and it goes on the thread it came on.
class ApartamentoHost {
 public:
  /// `dll` counts what is published. `nuevo` answers for the class of record sets, `al_terminar` is told when
  /// COM ends the apartment.
  ApartamentoHost(ComServer& dll, ClaseRecordset::Crea nuevo, std::function<void()> al_terminar);
  ApartamentoHost(const ApartamentoHost&) = delete;
  ApartamentoHost& operator=(const ApartamentoHost&) = delete;

  /// A new object of a class, published.
  ComPtr<IUnknown> Crea(const ClaseHost& clase);
  /// A new record set for who asked for ADO's; see `IClassFactory::CreateInstance`.
  HRESULT CreaRecordset(IUnknown* exterior, REFIID iid, void** salida);
  /// Whether somebody still has an object or a window of it.
  bool EnUso() const { return !servidor_.Idle(); }

 private:
  /// Makes the objects of the host, which starts when it is first needed.
  FabricaVentanas& Fabrica();

  ComServer servidor_;  // what its own objects are counted in
  Win32Desktop escritorio_;
  ProgIdFactory otras_;  // the component
  std::shared_ptr<Anfitrion> anfitrion_;
  std::unique_ptr<FabricaVentanas> fabrica_;  // of that host
  ClaseRecordset recordset_;
};

}  // namespace zuvi::host
