#include "com/automation/registration.h"

#include "com/automation/frontera.h"
#include "com/automation/handles.h"

// Exported by oleaut32 from Windows Vista on, but declared by no header here.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib*, OLECHAR* path, OLECHAR* help_directory);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID, WORD major, WORD minor, LCID, SYSKIND);

namespace zuvi {
namespace {

constexpr SYSKIND kSysKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
/// A key below the classes of the machine or of the user.
std::wstring Classes(const std::wstring& key) { return L"Software\\Classes\\" + key; }

HKEY Root(RegistrationScope scope) {
  return scope == RegistrationScope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

std::wstring Text(REFGUID id) {
  wchar_t text[40];
  ::StringFromGUID2(id, text, 40);
  return text;
}

/// Writes one value, making the key; false on failure.
bool Set(RegistrationScope scope, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
  UniqueKey handle;
  const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  return ::RegCreateKeyExW(Root(scope), Classes(key).c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, handle.put(),
                           nullptr) == ERROR_SUCCESS &&
         ::RegSetValueExW(handle.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          bytes) == ERROR_SUCCESS;
}

std::wstring Get(RegistrationScope scope, const std::wstring& key) {
  wchar_t text[MAX_PATH];
  DWORD bytes = sizeof text;
  const LSTATUS status =
      ::RegGetValueW(Root(scope), Classes(key).c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &bytes);
  return status == ERROR_SUCCESS ? text : std::wstring();
}

bool Remove(RegistrationScope scope, const std::wstring& key) {
  const LSTATUS status = ::RegDeleteTreeW(Root(scope), Classes(key).c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

bool RegisterClassKeys(const ComModule& module, const RegisteredClass& c, RegistrationScope scope) {
  const std::wstring versioned = c.prog_id + L".1";
  const std::wstring key = L"CLSID\\" + Text(c.clsid);
  return Set(scope, key, nullptr, c.description) &&
         Set(scope, key + L"\\InprocServer32", nullptr, module.Path()) &&
         Set(scope, key + L"\\InprocServer32", L"ThreadingModel", L"Apartment") &&
         Set(scope, key + L"\\ProgID", nullptr, versioned) &&
         Set(scope, key + L"\\VersionIndependentProgID", nullptr, c.prog_id) &&
         Set(scope, key + L"\\TypeLib", nullptr, Text(c.typelib_id)) &&
         Set(scope, key + L"\\Version", nullptr, L"1.0") &&
         Set(scope, key + L"\\Programmable", nullptr, L"") && Set(scope, versioned, nullptr, c.description) &&
         Set(scope, versioned + L"\\CLSID", nullptr, Text(c.clsid)) &&
         Set(scope, c.prog_id, nullptr, c.description) &&
         Set(scope, c.prog_id + L"\\CLSID", nullptr, Text(c.clsid)) &&
         Set(scope, c.prog_id + L"\\CurVer", nullptr, versioned);
}

bool UnregisterClassKeys(const RegisteredClass& c, RegistrationScope scope) {
  bool done = Remove(scope, L"CLSID\\" + Text(c.clsid));
  // A name that has come to stand for somebody else's class stays.
  for (const std::wstring& name : {c.prog_id + L".1", c.prog_id})
    if (const auto owner = Get(scope, name + L"\\CLSID"); owner.empty() || owner == Text(c.clsid))
      done = Remove(scope, name) && done;
  return done;
}

ComPtr<ITypeLib> Load(const ComModule& module, int number) {
  ComPtr<ITypeLib> library;
  if (FAILED(::LoadTypeLibEx(module.TypeLibPath(number).c_str(), REGKIND_NONE, library.put()))) return {};
  return library;
}

bool RegisterLibrary(const ComModule& module, int number, RegistrationScope scope) {
  const auto library = Load(module, number);
  if (!library) return false;
  std::wstring path = module.TypeLibPath(number);
  return SUCCEEDED(scope == RegistrationScope::User
                       ? ::RegisterTypeLibForUser(library.get(), path.data(), nullptr)
                       : ::RegisterTypeLib(library.get(), path.data(), nullptr));
}

bool UnregisterLibrary(const ComModule& module, int number, RegistrationScope scope) {
  const auto library = Load(module, number);
  TLIBATTR* found = nullptr;
  if (!library || FAILED(library->GetLibAttr(&found))) return false;
  const TLIBATTR a = *found;
  library->ReleaseTLibAttr(found);
  UniqueBstr path;
  if (FAILED(::QueryPathOfRegTypeLib(a.guid, a.wMajorVerNum, a.wMinorVerNum, a.lcid, path.put())))
    return true;
  const auto unregister =
      scope == RegistrationScope::User ? &::UnRegisterTypeLibForUser : &::UnRegisterTypeLib;
  return SUCCEEDED(unregister(a.guid, a.wMajorVerNum, a.wMinorVerNum, a.lcid, kSysKind));
}

HRESULT Unregister(const ComModule& module, std::span<const RegisteredClass> classes,
                   RegistrationScope scope) {
  HRESULT result = S_OK;
  for (int number = 1; number <= module.TypeLibraries(); ++number)
    if (!UnregisterLibrary(module, number, scope)) result = SELFREG_E_TYPELIB;
  for (const RegisteredClass& c : classes)
    if (!UnregisterClassKeys(c, scope)) result = SELFREG_E_CLASS;
  return result;
}

HRESULT Register(const ComModule& module, std::span<const RegisteredClass> classes, RegistrationScope scope) {
  HRESULT failure = S_OK;
  for (const RegisteredClass& c : classes)
    if (SUCCEEDED(failure) && !RegisterClassKeys(module, c, scope)) failure = SELFREG_E_CLASS;
  for (int number = 1; SUCCEEDED(failure) && number <= module.TypeLibraries(); ++number)
    if (!RegisterLibrary(module, number, scope)) failure = SELFREG_E_TYPELIB;
  if (FAILED(failure)) Unregister(module, classes, scope);
  return failure;
}

}  // namespace

HRESULT RegisterModule(const ComModule& module, std::span<const RegisteredClass> classes,
                       RegistrationScope scope) noexcept {
  return Frontera(module.Source(), [&] { return Register(module, classes, scope); });
}

HRESULT UnregisterModule(const ComModule& module, std::span<const RegisteredClass> classes,
                         RegistrationScope scope) noexcept {
  return Frontera(module.Source(), [&] { return Unregister(module, classes, scope); });
}

HRESULT InstallModule(const ComModule& module, std::span<const RegisteredClass> classes, bool install,
                      const wchar_t* command_line) noexcept {
  const bool user = command_line && ::CompareStringOrdinal(command_line, -1, L"user", -1, TRUE) == CSTR_EQUAL;
  const auto scope = user ? RegistrationScope::User : RegistrationScope::Machine;
  return install ? RegisterModule(module, classes, scope) : UnregisterModule(module, classes, scope);
}

}  // namespace zuvi
