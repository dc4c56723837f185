#pragma once

#include <atomic>
#include <functional>

#include "com/automation/com_module.h"
#include "com/automation/frontera.h"
#include "com/automation/windows_com.h"

namespace zuvi {

/// Makes objects of one class. `create` gives a new object; it may throw.
class ClassFactory final : public IClassFactory {
 public:
  using Creator = std::function<ComPtr<IUnknown>()>;

  ClassFactory(ComModule& module, Creator create)
      : module_(module), hold_(module, HoldKind::Factory), create_(std::move(create)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
    if (!out) return E_POINTER;
    *out = iid == IID_IUnknown || iid == IID_IClassFactory ? static_cast<IClassFactory*>(this) : nullptr;
    if (!*out) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    return Frontera(module_.Source(), [&] { return create_()->QueryInterface(iid, out); });
  }
  STDMETHODIMP LockServer(BOOL lock) noexcept override {
    lock ? module_.Hold(HoldKind::ServerLock) : module_.LetGo(HoldKind::ServerLock);
    return S_OK;
  }

 private:
  ~ClassFactory() = default;

  std::atomic<ULONG> references_{1};
  ComModule& module_;
  ModuleHold hold_;
  Creator create_;
};

/// The body of DllGetClassObject once the class is known.
inline HRESULT GiveFactory(ComModule& module, ClassFactory::Creator create, REFIID iid, void** out) noexcept {
  return Frontera(module.Source(), [&] {
    const auto factory = ComPtr<IClassFactory>::Adopt(new ClassFactory(module, std::move(create)));
    return factory->QueryInterface(iid, out);
  });
}

}  // namespace zuvi
