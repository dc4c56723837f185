#pragma once

#include <atomic>
#include <functional>

#include "automation/com_module.h"
#include "automation/frontera.h"
#include "automation/windows_com.h"

namespace zuvi {

/// Makes objects of one class.
class ClassFactory final : public IClassFactory {
 public:
  /// Gives a new object; it may throw.
  using Creator = std::function<ComPtr<IUnknown>()>;
  /// Answers `CreateInstance` itself: outer object, interface, where to put it (null until then).
  using Maker = std::function<HRESULT(IUnknown*, REFIID, void**)>;

  ClassFactory(ComModule& module, Maker make)
      : module_(module), hold_(module, HoldKind::Factory), make_(std::move(make)) {}
  ClassFactory(ComModule& module, Creator create)
      : ClassFactory(module,
                     Maker([&module, create = std::move(create)](IUnknown* outer, REFIID iid, void** out) {
                       if (outer) return CLASS_E_NOAGGREGATION;
                       return Frontera(module.Source(), [&] { return create()->QueryInterface(iid, out); });
                     })) {}

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
    // Its object may let go of the last reference to this one.
    const ComPtr<IClassFactory> self(static_cast<IClassFactory*>(this));
    const ModuleHold running(module_, HoldKind::Method);
    try {
      return make_(outer, iid, out);
    } catch (...) {
      return CurrentError().code;
    }
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
  Maker make_;
};

/// The body of DllGetClassObject once the class is known.
inline HRESULT GiveFactory(ComModule& module, ClassFactory::Creator create, REFIID iid, void** out) noexcept {
  return Frontera(module.Source(), [&] {
    const auto factory = ComPtr<IClassFactory>::Adopt(new ClassFactory(module, std::move(create)));
    return factory->QueryInterface(iid, out);
  });
}

}  // namespace zuvi
