#pragma once

#include "automation/windows_com.h"

#include <memory>
#include <optional>

#include "automation/handles.h"
#include "host/odbc/memory_recordset.h"
#include "host/win32/clase_recordset.h"

namespace zuvi::host {

/// What `CreateObject("ADODB.Recordset")` gives beside the host. Opened on a connection of ours it is a
/// record set of ours; whatever else is done with it is done by an object of the system's class. Whose it is
/// is settled anew each time it is opened. Until then it keeps what is set, so that a program that works with
/// our connections alone never needs the system's class.
class RecordsetIndeciso final : public Counted<IDispatch> {
 public:
  /// `clase` must outlive it.
  RecordsetIndeciso(ComServer& servidor, ClaseRecordset& clase)
      : servidor_(servidor), retiene_(servidor, HoldKind::Object), clase_(clase) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** salida) noexcept override;
  STDMETHODIMP GetTypeInfoCount(UINT* cuantas) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT indice, LCID region, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* nombres, UINT cuantos, LCID region,
                             DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID miembro, REFIID iid, LCID region, WORD modo, DISPPARAMS* argumentos,
                      VARIANT* resultado, EXCEPINFO* excepcion, UINT* malo) noexcept override;

 private:
  /// Who answers a call.
  enum class Quien { Propio, Sistema, Nadie };
  struct Llamada {
    DISPID miembro;
    WORD modo;
    DISPPARAMS* argumentos;
  };
  /// What was set before it is known whose it is.
  struct Puesto {
    std::optional<LONG> cursor{}, bloqueo{}, lugar{};
    std::optional<std::string> fuente{};
  };

  Quien Responde(const Llamada& llamada);
  bool EsNuestra(const VARIANT& conexion) const;
  bool AbiertoEnElSistema() const;
  /// Keeps a value that is good for both; false for any other call.
  bool Guarda(const Llamada& llamada);
  /// Reads what is kept, or what a new record set has; false for any other call.
  bool Lee(const Llamada& llamada, VARIANT* resultado) const;
  std::optional<LONG>* NumeroGuardado(DISPID miembro);
  void HazPropio();
  /// Makes the system's object, or has one at hand take what was set; the system's own failure otherwise.
  HRESULT PideSistema(EXCEPINFO* excepcion);
  HRESULT PonEnSistema(IDispatch* sistema, EXCEPINFO* excepcion) const;

  ComServer& servidor_;
  ServerHold retiene_;
  ClaseRecordset& clase_;
  Puesto puesto_;
  std::shared_ptr<MemoryRecordset> propio_;  // while it is ours
  ComPtr<IDispatch> sistema_;                // once it was needed
  bool al_dia_ = false;                      // the system's object has what was set
  bool entregado_ = false;                   // somebody talks to the system's object itself
};

}  // namespace zuvi::host
