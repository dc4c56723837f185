// Late-bound calls coming in, for every object we publish. More tolerant than the type library's own Invoke,
// because scripts are: by-reference variants are followed and written back, numbers and texts coerced, let
// and set taken alike, the locale ignored. Strict where silence would hide a mistake: names and argument
// counts.
#pragma once

#include "automation/com_server.h"
#include "automation/windows_com.h"
#include "base/object.h"

namespace zuvi {

/// IDispatch::GetIDsOfNames: the member, then names of its parameters.
HRESULT IdsOfNames(Object& object, LPOLESTR* names, UINT count, DISPID* ids) noexcept;

/// The part of it after the member's own name: the places of its parameters, by the names from the second on.
HRESULT IdsOfParameters(const Member* member, LPOLESTR* names, UINT count, DISPID* ids);

/// The arguments of IDispatch::Invoke, as they come.
struct Invocation {
  DISPID member;
  WORD flags;
  DISPPARAMS* params;
  VARIANT* result;
  EXCEPINFO* exception;
  UINT* bad_argument;
};

/// IDispatch::Invoke.
HRESULT InvokeOn(Object& object, ComServer& server, const Invocation& call) noexcept;

}  // namespace zuvi
