// What self-registration writes, and takes away again: the classes and type libraries of one DLL.
#pragma once

#include <span>
#include <string>

#include "automation/com_server.h"
#include "automation/windows_com.h"

namespace zuvi {

/// Per machine (HKEY_LOCAL_MACHINE, needs elevation) or per user (HKEY_CURRENT_USER).
enum class RegistrationScope { Machine, User };

/// One creatable class: `prog_id` names it without version, `prog_id` + ".1" its first version.
struct RegisteredClass {
  CLSID clsid;
  GUID typelib_id;
  std::wstring prog_id;
  std::wstring description;
};

/// Registers everything, or leaves nothing of it behind: SELFREG_E_CLASS or SELFREG_E_TYPELIB.
HRESULT RegisterServer(const ComServer& server, std::span<const RegisteredClass> classes,
                       RegistrationScope scope) noexcept;
/// Removes what `RegisterServer` writes and nothing else; what is not there counts as removed.
HRESULT UnregisterServer(const ComServer& server, std::span<const RegisteredClass> classes,
                         RegistrationScope scope) noexcept;
/// The body of DllInstall: the command line "user" asks for the registration per user.
HRESULT InstallServer(const ComServer& server, std::span<const RegisteredClass> classes, bool install,
                      const wchar_t* command_line) noexcept;

}  // namespace zuvi
