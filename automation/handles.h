// Owners of what automation hands out: texts, variants, exception records, descriptions that type information
// lends.
#pragma once

#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "automation/windows_com.h"
#include "win32/handles.h"
#include "win32/text.h"

namespace zuvi {

using UniqueBstr = UniqueHandle<BSTR, &::SysFreeString>;

/// UTF-8 of a BSTR, zeros inside included; null is the empty text.
inline std::string FromBstr(BSTR text) { return Narrow({text, ::SysStringLen(text)}); }
/// Throws std::bad_alloc.
inline UniqueBstr ToBstr(std::string_view text) {
  // No early way out: a loop without one runs many characters at a time.
  unsigned char beyond_ascii = 0;
  for (const char c : text) beyond_ascii |= static_cast<unsigned char>(c);
  const bool plain = beyond_ascii < 0x80;
  const std::wstring wide = plain ? std::wstring() : Wide(text);
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

/// The exception record of one call; its texts are freed with it.
class UniqueExcepInfo {
 public:
  UniqueExcepInfo() = default;
  UniqueExcepInfo(const UniqueExcepInfo&) = delete;
  UniqueExcepInfo& operator=(const UniqueExcepInfo&) = delete;
  ~UniqueExcepInfo() {
    for (const BSTR text : {info_.bstrSource, info_.bstrDescription, info_.bstrHelpFile})
      if (text) ::SysFreeString(text);
  }
  EXCEPINFO* put() { return &info_; }
  /// What the callee told, with what it left to be asked for.
  const EXCEPINFO& Told() {
    if (const auto fill_in = std::exchange(info_.pfnDeferredFillIn, nullptr)) fill_in(&info_);
    return info_;
  }

 private:
  EXCEPINFO info_{};
};

/// A description that type information lends, given back at the end. The lender must outlive it.
template <class Lender, class T, auto give_back>
class Lent {
 public:
  explicit Lent(Lender* lender) : lender_(lender) {}
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;
  ~Lent() {
    if (lent_) (lender_->*give_back)(lent_);
  }
  /// For the one call that asks for it.
  T** put() { return &lent_; }
  const T* operator->() const { return lent_; }
  const T& operator*() const { return *lent_; }

 private:
  Lender* lender_;
  T* lent_ = nullptr;
};
using TypeAttributes = Lent<ITypeInfo, TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using FunctionDescription = Lent<ITypeInfo, FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;
using LibraryAttributes = Lent<ITypeLib, TLIBATTR, &ITypeLib::ReleaseTLibAttr>;

}  // namespace zuvi
