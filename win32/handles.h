// win32/: what every room on Windows needs of the system and nothing else: owners of its handles, text across
// its edge, the program file and the thread that the code runs in. Knows base alone.
#pragma once

#include <windows.h>

#include <utility>

namespace zuvi {

/// Owner of one handle of the system: an alias per kind names its type and what gives it back. Empty is T{}.
template <class T, auto close>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(T handle) : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, T{})) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    UniqueHandle(std::move(other)).swap(*this);
    return *this;
  }
  ~UniqueHandle() {
    if (handle_) close(handle_);
  }
  T get() const { return handle_; }
  explicit operator bool() const { return handle_ != T{}; }
  /// For out-parameters: gives back what it holds.
  T* put() {
    *this = UniqueHandle();
    return &handle_;
  }
  /// Hands the handle over to the caller.
  [[nodiscard]] T detach() { return std::exchange(handle_, T{}); }
  void swap(UniqueHandle& other) noexcept { std::swap(handle_, other.handle_); }

 private:
  T handle_{};
};

using UniqueHook = UniqueHandle<HHOOK, &::UnhookWindowsHookEx>;
using UniqueKey = UniqueHandle<HKEY, &::RegCloseKey>;
using UniqueLibrary = UniqueHandle<HMODULE, &::FreeLibrary>;
using UniqueWindow = UniqueHandle<HWND, &::DestroyWindow>;

using UniqueFile = UniqueHandle<HANDLE, &::CloseHandle>;
/// Owner of what CreateFile gives; empty where it gave none, and the thread's last error tells why.
inline UniqueFile Opened(HANDLE file) { return UniqueFile(file == INVALID_HANDLE_VALUE ? nullptr : file); }

}  // namespace zuvi
