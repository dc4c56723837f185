#include "automation/com_error.h"

#include <cstdio>
#include <new>

#include "automation/com_ptr.h"
#include "automation/handles.h"

namespace zuvi {
namespace {

struct Mapped {
  HRESULT code;
  ErrorNumber number;
};

/// Failures that have a number, and so a text, of their own among automation clients.
constexpr Mapped kMapped[] = {
    {DISP_E_MEMBERNOTFOUND, ErrorNumber::NoSuchMember},
    {DISP_E_UNKNOWNNAME, ErrorNumber::NoSuchMember},
    {DISP_E_TYPEMISMATCH, ErrorNumber::TypeMismatch},
    {DISP_E_BADVARTYPE, ErrorNumber::TypeMismatch},
    {DISP_E_OVERFLOW, ErrorNumber::Overflow},
    {DISP_E_DIVBYZERO, ErrorNumber::DivisionByZero},
    {DISP_E_BADINDEX, ErrorNumber::SubscriptOutOfRange},
    {DISP_E_BADPARAMCOUNT, ErrorNumber::WrongArgumentCount},
    {DISP_E_PARAMNOTOPTIONAL, ErrorNumber::WrongArgumentCount},
    {E_OUTOFMEMORY, ErrorNumber::OutOfMemory},
    {E_INVALIDARG, ErrorNumber::InvalidCall},
    {REGDB_E_CLASSNOTREG, ErrorNumber::CannotCreateObject},
    {CO_E_CLASSSTRING, ErrorNumber::CannotCreateObject},
};

HRESULT CodeOf(const HostError& error) {
  const bool foreign = error.Number() == ErrorNumber::AutomationFailure && FAILED(error.NativeCode());
  return foreign ? static_cast<HRESULT>(error.NativeCode()) : HresultOf(error.Number());
}

}  // namespace

ComError CurrentError() noexcept {
  try {
    try {
      throw;
    } catch (const HostError& error) {
      return {CodeOf(error), error.what()};
    } catch (const std::bad_alloc&) {
      return {E_OUTOFMEMORY, DescriptionOf(ErrorNumber::OutOfMemory)};
    } catch (const std::exception& error) {
      return {E_FAIL, error.what()};
    } catch (...) {
      return {E_FAIL, DescriptionOf(ErrorNumber::AutomationFailure)};
    }
  } catch (...) {
    return {E_OUTOFMEMORY, {}};
  }
}

HostError HostErrorOf(HRESULT code) {
  for (const Mapped& mapped : kMapped)
    if (mapped.code == code) return HostError(DescriptionOf(mapped.number), mapped.number, code);
  if (HRESULT_FACILITY(code) == FACILITY_CONTROL) {
    const auto number = static_cast<ErrorNumber>(HRESULT_CODE(code));
    const std::string text = DescriptionOf(number);
    if (text != DescriptionOf(ErrorNumber::AutomationFailure)) return HostError(text, number, code);
  }
  char text[64];
  std::snprintf(text, sizeof text, "%s (0x%08lX)", DescriptionOf(ErrorNumber::AutomationFailure).c_str(),
                static_cast<unsigned long>(code));
  return HostError(text, ErrorNumber::AutomationFailure, code);
}

void TellError(const ComError& error, const std::string& source) noexcept {
  ClearError();
  try {
    ComPtr<ICreateErrorInfo> writer;
    if (FAILED(::CreateErrorInfo(writer.put()))) return;
    std::wstring wide_source = Wide(source), wide_text = Wide(error.text);
    writer->SetSource(wide_source.data());
    writer->SetDescription(wide_text.data());
    if (const auto info = writer.As<IErrorInfo>()) ::SetErrorInfo(0, info.get());
  } catch (...) {
    // Without memory for the text the code alone has to do.
  }
}

void FillExcepInfo(const ComError& error, const std::string& source, EXCEPINFO* info) noexcept {
  if (!info) return;
  *info = {};
  info->scode = error.code;
  try {
    UniqueBstr from = ToBstr(source), text = ToBstr(error.text);
    info->bstrSource = from.detach();
    info->bstrDescription = text.detach();
  } catch (...) {
    // As above.
  }
}

}  // namespace zuvi
