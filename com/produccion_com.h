// com/: the edge of ZuviProduccion.dll: the type libraries' sources, the published class, the entry points.
#pragma once

#include <atomic>
#include <memory>

#include "automation/com_module.h"
#include "automation/dispatch_object.h"
#include "com/modulo_produccion.h"
#include "component/produccion.h"

// After the system's headers; made from the IDL.
#include "ZuviProduccion.h"

namespace zuvi {

/// The class `Produccion` as hosts see it: `_Produccion` by vtable, and the same members by name.
class ProduccionCom final : public ::_Produccion,
                            public ISupportErrorInfo,
                            public IProvideClassInfo,
                            public IZuviIdentity {
 public:
  ProduccionCom(ComModule& module, std::shared_ptr<Apartamento> apartamento);

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override;

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                             DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) noexcept override;

  STDMETHODIMP get_Ambiente(::Ambiente** ambiente) noexcept override;
  STDMETHODIMP putref_Ambiente(::Ambiente* ambiente) noexcept override;
  STDMETHODIMP get_Parent(IDispatch** parent) noexcept override;
  STDMETHODIMP putref_Parent(IDispatch* parent) noexcept override;
  STDMETHODIMP NuevaOp() noexcept override;
  STDMETHODIMP ModificaOp(LONG* n_op) noexcept override;
  STDMETHODIMP ConsultaOp(LONG* n_op) noexcept override;
  STDMETHODIMP EntregaProductoTerminado(LONG* n_op) noexcept override;
  STDMETHODIMP Ensamble(BSTR* articulo, LONG* n_almacen, LONG* n_cantidad, LONG* n_op) noexcept override;
  STDMETHODIMP Desensamble(BSTR* articulo, double* n_cantidad, LONG* n_almacen, LONG* n_op) noexcept override;
  STDMETHODIMP CancelaOp(LONG* n_op, VARIANT_BOOL* resultado) noexcept override;
  STDMETHODIMP MuestraCapturaDeFracciones() noexcept override;
  STDMETHODIMP MuestraTurnos() noexcept override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override;
  STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override;

  const void* STDMETHODCALLTYPE Cookie() noexcept override { return &module_; }
  void* STDMETHODCALLTYPE ObjectBehind() noexcept override { return static_cast<Object*>(produccion_.get()); }

 private:
  ~ProduccionCom();
  /// The body of a vtable method: the object stays alive and the module loaded while it runs.
  template <class Body>
  HRESULT Llama(Body&& body) noexcept;
  HRESULT GiveTypeInfo(REFGUID id, ITypeInfo** info) noexcept;
  HRESULT Da(const ObjectPtr& objeto, IDispatch** out) noexcept;

  std::atomic<ULONG> references_{1};
  ComModule& module_;
  ModuleHold hold_;
  std::shared_ptr<Produccion> produccion_;
};

}  // namespace zuvi
