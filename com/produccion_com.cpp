#include "com/produccion_com.h"

#include "automation/frontera.h"
#include "automation/handles.h"
#include "automation/invoke.h"

namespace zuvi {
namespace {

/// The object needs its apartment's shared state for as long as anybody holds it.
std::shared_ptr<Produccion> NuevaProduccion(std::shared_ptr<Apartamento> apartamento) {
  Modulo& modulo = apartamento->ModuloDelComponente();
  return std::shared_ptr<Produccion>(new Produccion(modulo),
                                     [apartamento = std::move(apartamento)](Produccion* p) { delete p; });
}

/// An optional argument may come as no pointer at all.
std::int32_t Opcional(const LONG* n_op) { return n_op ? *n_op : 0; }

std::string Texto(BSTR text) { return Utf8De(text, ::SysStringLen(text)); }

}  // namespace

ProduccionCom::ProduccionCom(ComModule& module, std::shared_ptr<Apartamento> apartamento)
    : module_(module), hold_(module, HoldKind::Object), produccion_(NuevaProduccion(std::move(apartamento))) {
  produccion_->published_as = static_cast<IDispatch*>(this);
}

ProduccionCom::~ProduccionCom() { produccion_->published_as = nullptr; }

STDMETHODIMP ProduccionCom::QueryInterface(REFIID iid, void** out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(::_Produccion))
    *out = static_cast<::_Produccion*>(this);
  else if (iid == IID_ISupportErrorInfo)
    *out = static_cast<ISupportErrorInfo*>(this);
  else if (iid == IID_IProvideClassInfo)
    *out = static_cast<IProvideClassInfo*>(this);
  else if (iid == kIidZuviIdentity)
    *out = static_cast<IZuviIdentity*>(this);
  if (!*out) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ProduccionCom::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

template <class Body>
HRESULT ProduccionCom::Llama(Body&& body) noexcept {
  const ComPtr<IUnknown> self(static_cast<::_Produccion*>(this));
  const ModuleHold running(module_, HoldKind::Method);
  return Frontera(module_.Source(), std::forward<Body>(body));
}

HRESULT ProduccionCom::GiveTypeInfo(REFGUID id, ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  return Frontera(module_.Source(), [&]() -> HRESULT {
    *info = module_.TypeInfo(id).detach();
    return *info ? S_OK : TYPE_E_ELEMENTNOTFOUND;
  });
}

STDMETHODIMP ProduccionCom::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP ProduccionCom::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  if (index != 0) return DISP_E_BADINDEX;
  return GiveTypeInfo(__uuidof(::_Produccion), info);
}

STDMETHODIMP ProduccionCom::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  return IdsOfNames(*produccion_, names, count, ids);
}

STDMETHODIMP ProduccionCom::Invoke(DISPID member, REFIID iid, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  const ComPtr<IUnknown> self(static_cast<::_Produccion*>(this));
  const ModuleHold running(module_, HoldKind::Method);
  return InvokeOn(*produccion_, module_, {member, flags, params, result, exception, bad_argument});
}

HRESULT ProduccionCom::Da(const ObjectPtr& objeto, IDispatch** out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  return Llama([&] { *out = Publish(objeto, module_).detach(); });
}

// `Ambiente` is a dispatch interface: its pointers are plain IDispatch pointers.
STDMETHODIMP ProduccionCom::get_Ambiente(::Ambiente** ambiente) noexcept {
  return Da(produccion_->TraeAmbiente(), reinterpret_cast<IDispatch**>(ambiente));
}
STDMETHODIMP ProduccionCom::putref_Ambiente(::Ambiente* ambiente) noexcept {
  return Llama([&] { produccion_->PonAmbiente(ObjectDe(ambiente, module_)); });
}
STDMETHODIMP ProduccionCom::get_Parent(IDispatch** parent) noexcept {
  return Da(produccion_->Parent(), parent);
}
STDMETHODIMP ProduccionCom::putref_Parent(IDispatch* parent) noexcept {
  return Llama([&] { produccion_->PonParent(ObjectDe(parent, module_)); });
}

STDMETHODIMP ProduccionCom::NuevaOp() noexcept {
  return Llama([&] { produccion_->NuevaOp(); });
}
STDMETHODIMP ProduccionCom::ModificaOp(LONG* n_op) noexcept {
  if (!n_op) return E_POINTER;
  return Llama([&] { produccion_->ModificaOp(*n_op); });
}
STDMETHODIMP ProduccionCom::ConsultaOp(LONG* n_op) noexcept {
  if (!n_op) return E_POINTER;
  return Llama([&] { produccion_->ConsultaOp(*n_op); });
}
STDMETHODIMP ProduccionCom::EntregaProductoTerminado(LONG* n_op) noexcept {
  if (!n_op) return E_POINTER;
  return Llama([&] { produccion_->EntregaProductoTerminado(*n_op); });
}
STDMETHODIMP ProduccionCom::Ensamble(BSTR* articulo, LONG* n_almacen, LONG* n_cantidad, LONG* n_op) noexcept {
  if (!articulo || !n_almacen || !n_cantidad) return E_POINTER;
  return Llama([&] { produccion_->Ensamble(Texto(*articulo), *n_almacen, *n_cantidad, Opcional(n_op)); });
}
STDMETHODIMP ProduccionCom::Desensamble(BSTR* articulo, double* n_cantidad, LONG* n_almacen,
                                        LONG* n_op) noexcept {
  if (!articulo || !n_cantidad || !n_almacen) return E_POINTER;
  return Llama([&] { produccion_->Desensamble(Texto(*articulo), *n_cantidad, *n_almacen, Opcional(n_op)); });
}
STDMETHODIMP ProduccionCom::CancelaOp(LONG* n_op, VARIANT_BOOL* resultado) noexcept {
  if (!n_op || !resultado) return E_POINTER;
  *resultado = VARIANT_FALSE;
  return Llama([&] { *resultado = produccion_->CancelaOp(*n_op) ? VARIANT_TRUE : VARIANT_FALSE; });
}
STDMETHODIMP ProduccionCom::MuestraCapturaDeFracciones() noexcept {
  return Llama([&] { produccion_->MuestraCapturaDeFracciones(); });
}
STDMETHODIMP ProduccionCom::MuestraTurnos() noexcept {
  return Llama([&] { produccion_->MuestraTurnos(); });
}

STDMETHODIMP ProduccionCom::InterfaceSupportsErrorInfo(REFIID iid) noexcept {
  return iid == __uuidof(::_Produccion) ? S_OK : S_FALSE;
}

STDMETHODIMP ProduccionCom::GetClassInfo(ITypeInfo** info) noexcept {
  return GiveTypeInfo(__uuidof(::Produccion), info);
}

}  // namespace zuvi
