#pragma once

#include <atomic>
#include <memory>

#include "automation/com_module.h"
#include "automation/windows_com.h"
#include "base/object.h"

namespace zuvi {

/// Identifiers of a creatable class and its default interface, as its type library states them.
struct ClassIds {
  CLSID clsid;
  IID interface_id;
};

/// By this our own objects are known again when they come back in as a plain IDispatch. The cookie is the
/// address of the ComModule: two DLLs of ours in one process must not take each other's objects for their
/// own.
struct IZuviIdentity : IUnknown {
  virtual const void* STDMETHODCALLTYPE Cookie() noexcept = 0;
  /// The object behind, as `Object*`; valid only in the module that owns the cookie.
  virtual void* STDMETHODCALLTYPE ObjectBehind() noexcept = 0;

 protected:
  ~IZuviIdentity() = default;
};
inline constexpr IID kIidZuviIdentity = {
    0x5b1f3a0e, 0x6c6d, 0x4a52, {0x9d, 0x3b, 0x0f, 0x64, 0x27, 0xc8, 0x11, 0xe5}};

/// The automation object of an object of ours. The same object always gives the same one while that lives.
/// An adapter of a foreign object gives the foreign object itself; null gives null. `ids` name the type
/// information of an object made by a class factory.
ComPtr<IDispatch> Publish(const ObjectPtr& object, ComModule& module, const ClassIds* ids = nullptr);

/// The object behind an automation object: ours if it came from this module, else an adapter.
ObjectPtr ObjectDe(IDispatch* dispatch, ComModule& module);

/// Publishes any Object by its table of members (or, without one, by its own look-up).
class DispatchObject final : public IDispatch,
                             public ISupportErrorInfo,
                             public IProvideClassInfo,
                             public IZuviIdentity {
 public:
  DispatchObject(ObjectPtr object, ComModule& module, const ClassIds* ids);

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override;

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                             DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) noexcept override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override;
  STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override;

  const void* STDMETHODCALLTYPE Cookie() noexcept override { return &module_; }
  void* STDMETHODCALLTYPE ObjectBehind() noexcept override { return object_.get(); }

 private:
  ~DispatchObject();

  std::atomic<ULONG> references_{1};
  ComModule& module_;
  ModuleHold hold_;
  ObjectPtr object_;
  const ClassIds* ids_;
};

}  // namespace zuvi
