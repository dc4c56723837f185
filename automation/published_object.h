#pragma once

#include "automation/com_error.h"
#include "automation/dispatch_object.h"
#include "automation/invoke.h"

namespace zuvi {

/// By this our own objects are known again when they come back in as a plain IDispatch. The cookie is the
/// address of the ComServer: two DLLs of ours in one process must not take each other's objects for their
/// own.
struct IZuviIdentity : IUnknown {
  virtual const void* STDMETHODCALLTYPE Cookie() noexcept = 0;
  /// The object behind, as `Object*`; valid only in the server that owns the cookie.
  virtual void* STDMETHODCALLTYPE ObjectBehind() noexcept = 0;

 protected:
  ~IZuviIdentity() = default;
};
inline constexpr IID kIidZuviIdentity = {
    0x5b1f3a0e, 0x6c6d, 0x4a52, {0x9d, 0x3b, 0x0f, 0x64, 0x27, 0xc8, 0x11, 0xe5}};

/// An object of ours as automation clients have it: its members by name, from its table or, without one, from
/// its own look-up. `Interface` is IDispatch, or an interface derived from it whose methods a class of its
/// own adds. With `ids`, which must outlive it, it tells its type and keeps error info.
template <class Interface>
class PublishedObject : public Counted<Interface, ISupportErrorInfo, IProvideClassInfo, IZuviIdentity> {
 public:
  PublishedObject(ObjectPtr object, ComServer& server, const ClassIds* ids)
      : server_(server), hold_(server, HoldKind::Object), object_(std::move(object)), ids_(ids) {
    object_->published_as = static_cast<IDispatch*>(this);
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch || (ids_ && iid == ids_->interface_id))
      *out = static_cast<Interface*>(this);
    else if (iid == kIidZuviIdentity)
      *out = static_cast<IZuviIdentity*>(this);
    else if (ids_ && iid == IID_ISupportErrorInfo)
      *out = static_cast<ISupportErrorInfo*>(this);
    else if (ids_ && iid == IID_IProvideClassInfo)
      *out = static_cast<IProvideClassInfo*>(this);
    if (!*out) return E_NOINTERFACE;
    this->AddRef();
    return S_OK;
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    if (!count) return E_POINTER;
    *count = ids_ ? 1 : 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
    return GiveTypeInfo(index == 0 ? &ClassIds::interface_id : nullptr, info);
  }
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    return IdsOfNames(*object_, names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) noexcept override {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    const Running running(*this);
    return InvokeOn(*object_, server_, {member, flags, params, result, exception, bad_argument});
  }

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return ids_ && iid == ids_->interface_id ? S_OK : S_FALSE;
  }
  STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override {
    return GiveTypeInfo(&ClassIds::clsid, info);
  }

  const void* STDMETHODCALLTYPE Cookie() noexcept override { return &server_; }
  void* STDMETHODCALLTYPE ObjectBehind() noexcept override { return object_.get(); }

 protected:
  ~PublishedObject() override { object_->published_as = nullptr; }

  /// A call that is under way: the object, whose last reference the callee may let go of, stays, and so does
  /// the DLL.
  struct Running {
    explicit Running(PublishedObject& object)
        : self(static_cast<Interface*>(&object)), hold(object.server_, HoldKind::Method) {}
    ComPtr<Interface> self;
    ServerHold hold;
  };
  /// The body of a method called by its place in the interface.
  template <class Body>
  HRESULT Run(Body&& body) noexcept {
    const Running running(*this);
    return Guarded(server_.Source(), std::forward<Body>(body));
  }
  ComServer& Server() const { return server_; }

 private:
  HRESULT GiveTypeInfo(GUID ClassIds::*which, ITypeInfo** info) noexcept {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (!which) return DISP_E_BADINDEX;
    if (!ids_) return E_NOTIMPL;
    return Guarded(server_.Source(), [&]() -> HRESULT {
      *info = server_.TypeInfo(ids_->*which).detach();
      return *info ? S_OK : TYPE_E_ELEMENTNOTFOUND;
    });
  }

  ComServer& server_;
  ServerHold hold_;
  ObjectPtr object_;
  const ClassIds* ids_;
};

}  // namespace zuvi
