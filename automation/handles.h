#pragma once

#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "automation/windows_com.h"
#include "base/text.h"

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
  if (!text) return {};
  // Plain text, the usual case, is narrowed without looking for surrogates.
  unsigned beyond_ascii = 0;
  for (std::size_t i = 0; i < length; ++i) beyond_ascii |= text[i];
  if (beyond_ascii >= 0x80) return Utf8(View(text, length));
  std::string out(length, '\0');
  std::transform(text, text + length, out.begin(), [](wchar_t c) { return static_cast<char>(c); });
  return out;
}
inline std::wstring Ancho(std::string_view text) {
  const std::u16string wide = Utf16(text);
  return {reinterpret_cast<const wchar_t*>(wide.data()), wide.size()};
}
/// Throws std::bad_alloc.
inline UniqueBstr NuevoBstr(std::string_view text) {
  // No early way out: a loop without one runs many characters at a time.
  unsigned char beyond_ascii = 0;
  for (const char c : text) beyond_ascii |= static_cast<unsigned char>(c);
  const bool plain = beyond_ascii < 0x80;
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

/// VariantClear without the call for the types of nearly all arguments and results.
inline void Clear(VARIANT& variant) noexcept {
  const VARTYPE type = V_VT(&variant);
  if (type == VT_DISPATCH) {
    IDispatch* const object = V_DISPATCH(&variant);
    V_VT(&variant) = VT_EMPTY;
    if (object) object->Release();
  } else if (type == VT_BSTR) {
    ::SysFreeString(V_BSTR(&variant));
    V_VT(&variant) = VT_EMPTY;
  } else if (type <= VT_DATE || type == VT_BOOL) {
    V_VT(&variant) = VT_EMPTY;
  } else {
    ::VariantClear(&variant);
  }
}

/// A VARIANT that clears itself.
class UniqueVariant {
 public:
  UniqueVariant() = default;
  UniqueVariant(const UniqueVariant&) = delete;
  UniqueVariant& operator=(const UniqueVariant&) = delete;
  ~UniqueVariant() { Clear(variant_); }
  VARIANT& get() { return variant_; }
  const VARIANT& get() const { return variant_; }
  VARIANT* put() {
    Clear(variant_);
    return &variant_;
  }
  /// Hands the contents over; stays empty.
  [[nodiscard]] VARIANT detach() { return std::exchange(variant_, VARIANT{}); }

 private:
  VARIANT variant_{};
};

}  // namespace zuvi
