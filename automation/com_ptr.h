// automation/: what every automation DLL of ours needs, whatever it publishes. Knows base and the contract.
#pragma once

#include <atomic>
#include <utility>

#include "automation/windows_com.h"

namespace zuvi {

/// A counted interface pointer. No implicit conversion and no overloaded address: `get()` and `put()` say
/// what happens to the count.
template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  /// Shares: takes a reference of its own.
  explicit ComPtr(T* pointer) : pointer_(pointer) {
    if (pointer_) pointer_->AddRef();
  }
  /// Takes over the caller's reference.
  static ComPtr Adopt(T* pointer) {
    ComPtr adopted;
    adopted.pointer_ = pointer;
    return adopted;
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }

  T* get() const { return pointer_; }
  T* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  /// For out-parameters: lets go of what it holds.
  T** put() {
    *this = ComPtr();
    return &pointer_;
  }
  void** put_void() { return reinterpret_cast<void**>(put()); }
  /// Hands the reference over to the caller.
  [[nodiscard]] T* detach() { return std::exchange(pointer_, nullptr); }
  /// The same object by another interface; null when it has none.
  template <class U>
  ComPtr<U> As(REFIID iid = __uuidof(U)) const {
    ComPtr<U> other;
    if (pointer_ && FAILED(pointer_->QueryInterface(iid, other.put_void()))) return {};
    return other;
  }

 private:
  T* pointer_ = nullptr;
};

/// A new object of `Class`, by one of its interfaces. Throws what its constructor throws, and std::bad_alloc.
template <class Interface, class Class, class... Args>
ComPtr<Interface> NewCounted(Args&&... args) {
  return ComPtr<Interface>::Adopt(new Class(std::forward<Args>(args)...));
}

/// What objects held by COM's counted pointers have in common: they are made with one reference and go with
/// the last.
template <class... Interfaces>
class Counted : public Interfaces... {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  Counted() = default;
  virtual ~Counted() = default;

 private:
  std::atomic<ULONG> references_{1};
};

}  // namespace zuvi
