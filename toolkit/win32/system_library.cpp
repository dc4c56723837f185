#include "toolkit/win32/system_library.h"

namespace zuvi::native {

HMODULE LoadSystemLibrary(const wchar_t* name) {
  std::wstring path(MAX_PATH, L'\0');
  UINT length = ::GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
  if (length > path.size()) {
    path.resize(length);
    length = ::GetSystemDirectoryW(path.data(), length);
  }
  if (length == 0 || length > path.size()) return nullptr;
  path.resize(length);
  path += L'\\';
  path += name;
  // What the library needs is looked for beside it. Systems that came out before the stricter flag refuse
  // that; they have no such function either.
  const bool strict = ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "AddDllDirectory") != nullptr;
  return ::LoadLibraryExW(path.c_str(), nullptr,
                          strict ? LOAD_LIBRARY_SEARCH_SYSTEM32 : LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace zuvi::native
