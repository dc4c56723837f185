#include "automation/variants.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "automation/com_error.h"
#include "automation/com_object.h"
#include "automation/dispatch_object.h"
#include "base/object.h"

namespace zuvi {
namespace {

/// A variant may point to a variant; one that points to itself must not hang us.
constexpr int kMaxNesting = 8;

template <class Number>
Value WholeNumber(Number number) {
  if (std::in_range<std::int32_t>(number)) return static_cast<std::int32_t>(number);
  return static_cast<double>(number);
}

Value ObjectValue(IUnknown* unknown, ComServer& server) {
  if (!unknown) return ObjectPtr();
  ComPtr<IDispatch> dispatch;
  if (FAILED(unknown->QueryInterface(IID_IDispatch, dispatch.put_void())))
    throw HostError(ErrorNumber::TypeMismatch);
  return ObjectOf(dispatch.get(), server);
}

/// What a variant of that type holds, wherever it is kept: in the variant or behind its pointer.
template <class T>
const T& At(const VARIANT& v, const T& own) {
  if (!(V_VT(&v) & VT_BYREF)) return own;
  if (!V_BYREF(&v)) throw HostError(ErrorNumber::TypeMismatch);
  return *static_cast<const T*>(V_BYREF(&v));
}

Value Convert(const VARIANT& v, ComServer& server, int depth) {
  switch (V_VT(&v) & ~VT_BYREF) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Null{};
    case VT_I1:
      return static_cast<std::int16_t>(static_cast<signed char>(At(v, V_I1(&v))));
    case VT_UI1:
      return static_cast<std::int16_t>(At(v, V_UI1(&v)));
    case VT_I2:
      return static_cast<std::int16_t>(At(v, V_I2(&v)));
    case VT_UI2:
      return static_cast<std::int32_t>(At(v, V_UI2(&v)));
    case VT_I4:
    case VT_INT:
      return static_cast<std::int32_t>(At(v, V_I4(&v)));
    case VT_UI4:
    case VT_UINT:
      return WholeNumber(At(v, V_UI4(&v)));
    case VT_I8:
      return WholeNumber(At(v, V_I8(&v)));
    case VT_UI8:
      return WholeNumber(At(v, V_UI8(&v)));
    case VT_R4:
      return static_cast<double>(At(v, V_R4(&v)));
    case VT_R8:
      return At(v, V_R8(&v));
    case VT_CY:
      return static_cast<double>(At(v, V_CY(&v)).int64) / 10000.0;
    case VT_DECIMAL: {
      DECIMAL decimal = At(v, V_DECIMAL(&v));
      double number = 0;
      if (FAILED(::VarR8FromDec(&decimal, &number))) throw HostError(ErrorNumber::Overflow);
      return number;
    }
    case VT_DATE:
      return Date::FromSerial(At(v, V_DATE(&v)));
    case VT_BSTR:
      return FromBstr(At(v, V_BSTR(&v)));
    case VT_BOOL:
      return At(v, V_BOOL(&v)) != VARIANT_FALSE;
    case VT_DISPATCH:
      return ObjectOf(At(v, V_DISPATCH(&v)), server);
    case VT_UNKNOWN:
      return ObjectValue(At(v, V_UNKNOWN(&v)), server);
    case VT_ERROR:
      if (At(v, V_ERROR(&v)) == DISP_E_PARAMNOTFOUND) return {};
      break;
    case VT_VARIANT:
      if ((V_VT(&v) & VT_BYREF) && V_VARIANTREF(&v) && depth < kMaxNesting)
        return Convert(*V_VARIANTREF(&v), server, depth + 1);
      break;
    default:
      break;
  }
  throw HostError(ErrorNumber::TypeMismatch);
}

template <class Integer>
Integer Rounded(const Value& value) {
  const double number = std::nearbyint(ToNumber(value));
  // 2^63 and 2^64 are reals themselves while the largest integers below them are not: hence "less than".
  const double limit = std::ldexp(1.0, std::numeric_limits<Integer>::digits);
  const double least = std::is_signed_v<Integer> ? -limit : 0.0;
  if (!(number >= least && number < limit)) throw HostError(ErrorNumber::Overflow);
  return static_cast<Integer>(number);
}

void Check(HRESULT result) {
  if (FAILED(result)) throw HostErrorOf(result);
}

/// The value in a type of numbers; the tag is left to the caller.
void CoerceNumber(const Value& value, VARTYPE type, VARIANT& out) {
  switch (type) {
    case VT_I1:
      V_I1(&out) = static_cast<CHAR>(Rounded<std::int8_t>(value));
      break;
    case VT_UI1:
      V_UI1(&out) = Rounded<std::uint8_t>(value);
      break;
    case VT_I2:
      V_I2(&out) = ToInt16(value);
      break;
    case VT_UI2:
      V_UI2(&out) = Rounded<std::uint16_t>(value);
      break;
    case VT_I4:
    case VT_INT:
      V_I4(&out) = ToInt32(value);
      break;
    case VT_UI4:
    case VT_UINT:
      V_UI4(&out) = Rounded<std::uint32_t>(value);
      break;
    case VT_I8:
      V_I8(&out) = Rounded<std::int64_t>(value);
      break;
    case VT_UI8:
      V_UI8(&out) = Rounded<std::uint64_t>(value);
      break;
    case VT_R4: {
      const double number = ToNumber(value);
      if (std::isfinite(number) && std::fabs(number) > std::numeric_limits<float>::max())
        throw HostError(ErrorNumber::Overflow);
      V_R4(&out) = static_cast<float>(number);
      break;
    }
    case VT_R8:
      V_R8(&out) = ToNumber(value);
      break;
    case VT_CY:
      Check(::VarCyFromR8(ToNumber(value), &V_CY(&out)));
      break;
    case VT_DECIMAL:
      Check(::VarDecFromR8(ToNumber(value), &V_DECIMAL(&out)));
      break;
    default:
      throw HostError(ErrorNumber::TypeMismatch);
  }
}

std::size_t SizeOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
      return 4;
    default:
      return 8;
  }
}

void Store(const Value& value, VARIANT& argument, ComServer& server, int depth) {
  if (!(V_VT(&argument) & VT_BYREF) || !V_BYREF(&argument)) return;
  const VARTYPE type = V_VT(&argument) & static_cast<VARTYPE>(~VT_BYREF);
  if (type == VT_VARIANT) {
    VARIANT& target = *V_VARIANTREF(&argument);
    if (V_VT(&target) & VT_BYREF) {
      if (depth < kMaxNesting) Store(value, target, server, depth + 1);
      return;
    }
    UniqueVariant fresh;
    ToVariant(value, server, fresh.get());
    std::swap(target, fresh.get());
    return;
  }
  UniqueVariant fresh;
  Coerce(value, type, server, fresh.get());
  // What was there goes out of scope with `fresh`, after the new contents are in place.
  switch (type) {
    case VT_BSTR:
      std::swap(*V_BSTRREF(&argument), V_BSTR(&fresh.get()));
      break;
    case VT_DISPATCH:
      std::swap(*V_DISPATCHREF(&argument), V_DISPATCH(&fresh.get()));
      break;
    case VT_UNKNOWN:
      std::swap(*V_UNKNOWNREF(&argument), V_UNKNOWN(&fresh.get()));
      break;
    case VT_DECIMAL:
      *V_DECIMALREF(&argument) = V_DECIMAL(&fresh.get());
      V_DECIMALREF(&argument)->wReserved = 0;
      break;
    default:
      std::memcpy(V_BYREF(&argument), &V_I8(&fresh.get()), SizeOf(type));
  }
}

}  // namespace

Value FromVariant(const VARIANT& variant, ComServer& server) { return Convert(variant, server, 0); }

const VARIANT& Followed(const VARIANT& variant) {
  const VARIANT* v = &variant;
  for (int depth = 0; V_VT(v) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(v) && depth < kMaxNesting; ++depth)
    v = V_VARIANTREF(v);
  return *v;
}

bool IsMissing(const VARIANT& variant) {
  const VARIANT& v = Followed(variant);
  return V_VT(&v) == VT_ERROR && V_ERROR(&v) == DISP_E_PARAMNOTFOUND;
}

void ToVariant(const Value& value, ComServer& server, VARIANT& out) {
  out = {};
  std::visit(Overloaded{[&](Empty) {}, [&](Null) { V_VT(&out) = VT_NULL; },
                        [&](std::int16_t n) {
                          V_VT(&out) = VT_I2;
                          V_I2(&out) = n;
                        },
                        [&](std::int32_t n) {
                          V_VT(&out) = VT_I4;
                          V_I4(&out) = n;
                        },
                        [&](double n) {
                          V_VT(&out) = VT_R8;
                          V_R8(&out) = n;
                        },
                        [&](const std::string& s) {
                          V_BSTR(&out) = ToBstr(s).detach();
                          V_VT(&out) = VT_BSTR;
                        },
                        [&](const Date& f) {
                          V_VT(&out) = VT_DATE;
                          V_DATE(&out) = f.Serial();
                        },
                        [&](bool b) {
                          V_VT(&out) = VT_BOOL;
                          V_BOOL(&out) = b ? VARIANT_TRUE : VARIANT_FALSE;
                        },
                        [&](const ObjectPtr& o) {
                          V_DISPATCH(&out) = Publish(o, server).detach();
                          V_VT(&out) = VT_DISPATCH;
                        }},
             value.Get());
}

bool IsCoercible(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
    case VT_DATE:
    case VT_BSTR:
    case VT_BOOL:
    case VT_DISPATCH:
    case VT_UNKNOWN:
    case VT_VARIANT:
      return true;
    default:
      return false;
  }
}

void Coerce(const Value& value, VARTYPE type, ComServer& server, VARIANT& out) {
  out = {};
  switch (type) {
    case VT_VARIANT:
      ToVariant(value, server, out);
      return;
    case VT_DATE:
      V_DATE(&out) = ToDate(value).Serial();
      break;
    case VT_BSTR:
      // "No text" is the null BSTR, whichever way a caller says it.
      V_BSTR(&out) = value.IsNull() || value.IsEmpty() ? nullptr : ToBstr(ToText(value)).detach();
      break;
    case VT_BOOL:
      V_BOOL(&out) = ToBool(value) ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      V_DISPATCH(&out) = value.IsEmpty() ? nullptr : Publish(ToObject(value), server).detach();
      break;
    default:
      CoerceNumber(value, type, out);
  }
  // DECIMAL shares its first two bytes with the tag, so the tag comes last.
  V_VT(&out) = type;
}

void MakeByRef(VARIANT& storage, VARTYPE type, VARIANT& out) {
  V_VT(&out) = static_cast<VARTYPE>(VT_BYREF | type);
  if (type == VT_VARIANT)
    V_VARIANTREF(&out) = &storage;
  else if (type == VT_DECIMAL)
    V_DECIMALREF(&out) = &V_DECIMAL(&storage);
  else
    V_BYREF(&out) = &V_I8(&storage);
}

void WriteBack(const Value& value, VARIANT& argument, ComServer& server) {
  Store(value, argument, server, 0);
}

}  // namespace zuvi
