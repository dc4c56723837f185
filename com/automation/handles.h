#pragma once

#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "com/automation/windows_com.h"

namespace zuvi {

/// Owner of a system handle: one alias per kind names the type and what closes it.
template <class T, auto close>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(T handle) : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, T{})) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~UniqueHandle() {
    if (handle_) close(handle_);
  }
  T get() const { return handle_; }
  explicit operator bool() const { return handle_ != T{}; }
  T* put() {
    *this = UniqueHandle();
    return &handle_;
  }
  [[nodiscard]] T detach() { return std::exchange(handle_, T{}); }

 private:
  T handle_{};
};

using UniqueBstr = UniqueHandle<BSTR, &::SysFreeString>;
using UniqueKey = UniqueHandle<HKEY, &::RegCloseKey>;

inline std::u16string_view View(const wchar_t* text, std::size_t length) {
  return {reinterpret_cast<const char16_t*>(text), length};
}
/// UTF-8 of a text of the system; null is the empty text.
inline std::string Utf8De(const wchar_t* text) {
  return text ? Utf8(View(text, std::char_traits<wchar_t>::length(text))) : std::string();
}
/// UTF-8 of a BSTR, zeros inside included.
inline std::string Utf8De(BSTR text, std::size_t length) {
  return text ? Utf8(View(text, length)) : std::string();
}
inline std::wstring Ancho(std::string_view text) {
  const std::u16string wide = Utf16(text);
  return {reinterpret_cast<const wchar_t*>(wide.data()), wide.size()};
}
/// Throws std::bad_alloc.
inline UniqueBstr NuevoBstr(std::string_view text) {
  const bool plain = std::ranges::all_of(text, [](char c) { return static_cast<signed char>(c) >= 0; });
  const std::wstring wide = plain ? std::wstring() : Ancho(text);
  const std::size_t length = plain ? text.size() : wide.size();
  UniqueBstr bstr(::SysAllocStringLen(nullptr, static_cast<UINT>(length)));
  if (!bstr) throw std::bad_alloc();
  if (plain)
    std::ranges::copy(text, bstr.get());
  else
    std::ranges::copy(wide, bstr.get());
  return bstr;
}

/// A VARIANT that clears itself.
class UniqueVariant {
 public:
  UniqueVariant() { ::VariantInit(&variant_); }
  UniqueVariant(const UniqueVariant&) = delete;
  UniqueVariant& operator=(const UniqueVariant&) = delete;
  ~UniqueVariant() {
    // Plain numbers own nothing.
    if (V_VT(&variant_) > VT_DATE) ::VariantClear(&variant_);
  }
  VARIANT& get() { return variant_; }
  const VARIANT& get() const { return variant_; }
  VARIANT* put() {
    ::VariantClear(&variant_);
    return &variant_;
  }
  /// Hands the contents over; stays empty.
  [[nodiscard]] VARIANT detach() {
    VARIANT out = variant_;
    ::VariantInit(&variant_);
    return out;
  }

 private:
  VARIANT variant_;
};

}  // namespace zuvi
