#pragma once

#include <functional>

#include "automation/com_error.h"
#include "automation/com_server.h"
#include "automation/windows_com.h"

namespace zuvi {

/// Makes objects of one class.
class ClassFactory final : public Counted<IClassFactory> {
 public:
  /// Gives a new object; it may throw.
  using Creator = std::function<ComPtr<IUnknown>()>;
  /// Answers `CreateInstance` itself: outer object, interface, where to put it (null until then).
  using Maker = std::function<HRESULT(IUnknown*, REFIID, void**)>;

  ClassFactory(ComServer& server, Maker make)
      : server_(server), hold_(server, HoldKind::Factory), make_(std::move(make)) {}
  ClassFactory(ComServer& server, Creator create)
      : ClassFactory(server,
                     Maker([&server, create = std::move(create)](IUnknown* outer, REFIID iid, void** out) {
                       if (outer) return CLASS_E_NOAGGREGATION;
                       return Guarded(server.Source(), [&] { return create()->QueryInterface(iid, out); });
                     })) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
    if (!out) return E_POINTER;
    *out = iid == IID_IUnknown || iid == IID_IClassFactory ? static_cast<IClassFactory*>(this) : nullptr;
    if (!*out) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept override {
    if (!out) return E_POINTER;
    *out = nullptr;
    // Its object may let go of the last reference to this one.
    const ComPtr<IClassFactory> self(static_cast<IClassFactory*>(this));
    const ServerHold running(server_, HoldKind::Method);
    try {
      return make_(outer, iid, out);
    } catch (...) {
      return CurrentError().code;
    }
  }
  STDMETHODIMP LockServer(BOOL lock) noexcept override {
    lock ? server_.Hold(HoldKind::ServerLock) : server_.LetGo(HoldKind::ServerLock);
    return S_OK;
  }

 private:
  ComServer& server_;
  ServerHold hold_;
  Maker make_;
};

/// The body of DllGetClassObject once the class is known.
inline HRESULT GiveFactory(ComServer& server, ClassFactory::Creator create, REFIID iid, void** out) noexcept {
  return Guarded(server.Source(), [&] {
    const auto factory = NewCounted<IClassFactory, ClassFactory>(server, std::move(create));
    return factory->QueryInterface(iid, out);
  });
}

}  // namespace zuvi
