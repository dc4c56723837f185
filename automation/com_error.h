// The edge: no exception leaves a method that COM called. Here they become an HRESULT and its error info.
#pragma once

#include <string>
#include <type_traits>

#include "automation/windows_com.h"
#include "base/error.h"

namespace zuvi {

/// An error as automation clients receive it.
struct ComError {
  HRESULT code = S_OK;
  std::string text;
};

/// The HRESULT of a run-time error number, 800A0000 + n.
constexpr HRESULT HresultOf(ErrorNumber number) {
  return MAKE_HRESULT(1, FACILITY_CONTROL, static_cast<int>(number));
}

/// The exception being handled, for `catch (...)`. A failure HRESULT that came from outside is kept.
ComError CurrentError() noexcept;

/// Error number and text that stand for a failure HRESULT of a host.
HostError HostErrorOf(HRESULT code);

/// Tells the thread's error info, for early-bound callers.
void TellError(const ComError& error, const std::string& source) noexcept;
/// Leaves no error info of earlier failures behind.
inline void ClearError() noexcept { ::SetErrorInfo(0, nullptr); }
/// Tells a late-bound caller; `info` may be null.
void FillExcepInfo(const ComError& error, const std::string& source, EXCEPINFO* info) noexcept;

/// Runs the body of a COM method. The body returns nothing or an HRESULT.
template <class Body>
HRESULT Guarded(const std::string& source, Body&& body) noexcept {
  try {
    HRESULT result = S_OK;
    if constexpr (std::is_void_v<std::invoke_result_t<Body>>)
      body();
    else
      result = body();
    ClearError();
    return result;
  } catch (...) {
    const ComError error = CurrentError();
    TellError(error, source);
    return error.code;
  }
}

}  // namespace zuvi
