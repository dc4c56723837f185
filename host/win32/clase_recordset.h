#pragma once

#include "automation/windows_com.h"

#include <functional>
#include <memory>

#include "automation/com_server.h"

namespace zuvi::host {

/// The class of ADO's record sets as one apartment finds it while the host works there: record sets on a
/// connection of the host are its own, all others the system's. Belongs to the apartment's thread.
class ClaseRecordset {
 public:
  /// `crea` answers for the class: see `IClassFactory::CreateInstance`. `al_terminar` runs when COM takes the
  /// publication down with the apartment, on its thread.
  using Crea = std::function<HRESULT(IUnknown* exterior, REFIID iid, void** salida)>;
  ClaseRecordset(ComServer& servidor, Crea crea, std::function<void()> al_terminar);
  ClaseRecordset(const ClaseRecordset&) = delete;
  ClaseRecordset& operator=(const ClaseRecordset&) = delete;
  ~ClaseRecordset() { Retira(); }

  /// Publishes the class for the calling apartment, unless it is. Without it only what opens record sets on
  /// our connections fails, and says so; everything else works.
  void Publica() noexcept;
  void Retira() noexcept;
  /// A new object of the system's class, with the system's own answer; the error info is its own as well.
  HRESULT CreaDelSistema(IUnknown* exterior, REFIID iid, void** salida) noexcept;

 private:
  struct Centinela;

  ComServer& servidor_;
  Crea crea_;
  std::function<void()> al_terminar_;
  DWORD registro_ = 0;
  std::weak_ptr<Centinela> centinela_;
  ComPtr<IClassFactory> del_sistema_;  // kept once it was asked for
};

}  // namespace zuvi::host
