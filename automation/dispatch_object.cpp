#include "automation/dispatch_object.h"

#include <typeinfo>

#include "automation/com_object.h"
#include "automation/frontera.h"
#include "automation/invoke.h"

namespace zuvi {

ComPtr<IDispatch> Publish(const ObjectPtr& object, ComModule& module, const ClassIds* ids) {
  if (!object) return {};
  if (const Object& given = *object; typeid(given) == typeid(ComObject))
    return ComPtr<IDispatch>(static_cast<const ComObject&>(given).Dispatch());
  const ObjectPtr target = object->Reference();
  if (!target) return {};
  if (target != object) return Publish(target, module, ids);
  if (target->published_as) return ComPtr<IDispatch>(static_cast<IDispatch*>(target->published_as));
  return ComPtr<IDispatch>::Adopt(new DispatchObject(target, module, ids));
}

ObjectPtr ObjectDe(IDispatch* dispatch, ComModule& module) {
  if (!dispatch) return nullptr;
  ComPtr<IDispatch> shared(dispatch);
  if (const auto own = shared.As<IZuviIdentity>(kIidZuviIdentity); own && own->Cookie() == &module)
    return static_cast<Object*>(own->ObjectBehind())->shared_from_this();
  return std::make_shared<ComObject>(std::move(shared), module);
}

DispatchObject::DispatchObject(ObjectPtr object, ComModule& module, const ClassIds* ids)
    : module_(module), hold_(module, HoldKind::Object), object_(std::move(object)), ids_(ids) {
  object_->published_as = static_cast<IDispatch*>(this);
}

DispatchObject::~DispatchObject() { object_->published_as = nullptr; }

STDMETHODIMP DispatchObject::QueryInterface(REFIID iid, void** out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (iid == IID_IUnknown || iid == IID_IDispatch || (ids_ && iid == ids_->interface_id))
    *out = static_cast<IDispatch*>(this);
  else if (iid == kIidZuviIdentity)
    *out = static_cast<IZuviIdentity*>(this);
  else if (ids_ && iid == IID_ISupportErrorInfo)
    *out = static_cast<ISupportErrorInfo*>(this);
  else if (ids_ && iid == IID_IProvideClassInfo)
    *out = static_cast<IProvideClassInfo*>(this);
  if (!*out) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) DispatchObject::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP DispatchObject::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = ids_ ? 1 : 0;
  return S_OK;
}

STDMETHODIMP DispatchObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  if (!ids_) return E_NOTIMPL;
  return Frontera(module_.Source(), [&]() -> HRESULT {
    *info = module_.TypeInfo(ids_->interface_id).detach();
    return *info ? S_OK : TYPE_E_ELEMENTNOTFOUND;
  });
}

STDMETHODIMP DispatchObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                           DISPID* ids) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  return IdsOfNames(*object_, names, count, ids);
}

STDMETHODIMP DispatchObject::Invoke(DISPID member, REFIID iid, LCID, WORD flags, DISPPARAMS* params,
                                    VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  // The callee may let go of the last reference to this object.
  const ComPtr<IDispatch> self(static_cast<IDispatch*>(this));
  const ModuleHold running(module_, HoldKind::Method);
  return InvokeOn(*object_, module_, {member, flags, params, result, exception, bad_argument});
}

STDMETHODIMP DispatchObject::InterfaceSupportsErrorInfo(REFIID iid) noexcept {
  return ids_ && iid == ids_->interface_id ? S_OK : S_FALSE;
}

STDMETHODIMP DispatchObject::GetClassInfo(ITypeInfo** info) noexcept {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (!ids_) return E_NOTIMPL;
  return Frontera(module_.Source(), [&]() -> HRESULT {
    *info = module_.TypeInfo(ids_->clsid).detach();
    return *info ? S_OK : TYPE_E_ELEMENTNOTFOUND;
  });
}

}  // namespace zuvi
