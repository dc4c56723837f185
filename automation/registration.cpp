#include "automation/registration.h"

#include <optional>
#include <vector>

#include "automation/com_error.h"
#include "automation/handles.h"
#include "win32/image.h"

namespace zuvi {
namespace {

/// The system's intermediaries for interfaces that a type library describes.
constexpr const wchar_t *kByVtable = L"{00020424-0000-0000-C000-000000000046}",
                        *kByName = L"{00020420-0000-0000-C000-000000000046}";

constexpr bool k64 = sizeof(void*) == 8;
constexpr const wchar_t* kPlatform = k64 ? L"win64" : L"win32";
/// Classes and interfaces of the other kind of process are kept apart; all else is shared with it.
constexpr REGSAM kOtherKind = k64 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

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

UniqueKey Open(RegistrationScope scope, const std::wstring& key, REGSAM kind = 0) {
  UniqueKey handle;
  ::RegOpenKeyExW(Root(scope), Classes(key).c_str(), 0, KEY_READ | kind, handle.put());
  return handle;
}

/// An identifier that stands for a key; empty where there is none.
std::wstring Get(RegistrationScope scope, const std::wstring& key) {
  wchar_t text[40];
  DWORD bytes = sizeof text;
  const UniqueKey handle = Open(scope, key);
  const LSTATUS status =
      handle ? ::RegGetValueW(handle.get(), nullptr, nullptr, RRF_RT_REG_SZ, nullptr, text, &bytes)
             : ERROR_FILE_NOT_FOUND;
  return status == ERROR_SUCCESS ? text : std::wstring();
}

bool HasKeys(RegistrationScope scope, const std::wstring& key) {
  const UniqueKey handle = Open(scope, key);
  DWORD count = 0;
  return handle &&
         ::RegQueryInfoKeyW(handle.get(), nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
         count > 0;
}

bool Remove(RegistrationScope scope, const std::wstring& key) {
  const LSTATUS status = ::RegDeleteTreeW(Root(scope), Classes(key).c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

bool RegisterClassKeys(const ComServer& server, const RegisteredClass& c, RegistrationScope scope) {
  const std::wstring versioned = c.prog_id + L".1";
  const std::wstring key = L"CLSID\\" + Text(c.clsid);
  return Set(scope, key, nullptr, c.description) &&
         Set(scope, key + L"\\InprocServer32", nullptr, server.Path()) &&
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
  const std::wstring key = L"CLSID\\" + Text(c.clsid);
  const bool done = Remove(scope, key);
  // The names lead there from the other kind of process as well.
  if (Open(scope, key, kOtherKind)) return done;
  bool named = true;
  // A name that has come to stand for somebody else's class stays.
  for (const std::wstring& name : {c.prog_id + L".1", c.prog_id})
    if (const auto owner = Get(scope, name + L"\\CLSID"); owner.empty() || owner == Text(c.clsid))
      named = Remove(scope, name) && named;
  return done && named;
}

/// A type library as the registry knows it. Its keys are written here: the system's functions for it write to
/// the machine's or to the user's as they see fit, and look for what they are to remove in both.
struct Library {
  ComPtr<ITypeLib> types;
  std::wstring path, folder, id, description;
  std::wstring version;  // "1.0"
  WORD flags = 0;

  std::wstring Key() const { return L"TypeLib\\" + id; }
  std::wstring VersionKey() const { return Key() + L"\\" + version; }
  std::wstring LanguageKey() const { return VersionKey() + L"\\0"; }
};

std::optional<Library> Load(const ComServer& server, int number) {
  Library l;
  l.path = server.TypeLibPath(number);
  l.folder = FolderOf(server.Instance());
  UniqueBstr description;
  if (FAILED(::LoadTypeLibEx(l.path.c_str(), REGKIND_NONE, l.types.put())) ||
      FAILED(l.types->GetDocumentation(-1, nullptr, description.put(), nullptr, nullptr)))
    return std::nullopt;
  LibraryAttributes found(l.types.get());
  if (FAILED(l.types->GetLibAttr(found.put()))) return std::nullopt;
  l.id = Text(found->guid);
  l.version = std::to_wstring(found->wMajorVerNum) + L"." + std::to_wstring(found->wMinorVerNum);
  l.flags = found->wLibFlags;
  if (description) l.description = description.get();
  return l;
}

/// An interface that other apartments reach by the system's intermediaries, which read it out of its library.
struct Interface {
  std::wstring key, name;
  bool by_vtable;
};

std::vector<Interface> Interfaces(const Library& l) {
  std::vector<Interface> all;
  for (UINT i = 0; i < l.types->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> info;
    UniqueBstr name;
    if (FAILED(l.types->GetTypeInfo(i, info.put()))) continue;
    TypeAttributes a(info.get());
    if (FAILED(info->GetTypeAttr(a.put()))) continue;
    const bool dual = (a->wTypeFlags & TYPEFLAG_FDUAL) != 0;
    const bool automation = dual || (a->wTypeFlags & (TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE)) != 0;
    const bool usable = automation && (a->typekind == TKIND_INTERFACE || a->typekind == TKIND_DISPATCH);
    const bool by_vtable = dual || a->typekind == TKIND_INTERFACE;
    if (usable && SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr)))
      all.push_back({L"Interface\\" + Text(a->guid), name.get(), by_vtable});
  }
  return all;
}

bool RegisterLibrary(const Library& l, RegistrationScope scope) {
  bool done = Set(scope, l.VersionKey(), nullptr, l.description) &&
              Set(scope, l.LanguageKey() + L"\\" + kPlatform, nullptr, l.path) &&
              Set(scope, l.VersionKey() + L"\\FLAGS", nullptr, std::to_wstring(l.flags)) &&
              Set(scope, l.VersionKey() + L"\\HELPDIR", nullptr, l.folder);
  for (const Interface& i : Interfaces(l))
    done = done && Set(scope, i.key, nullptr, i.name) &&
           Set(scope, i.key + L"\\ProxyStubClsid32", nullptr, i.by_vtable ? kByVtable : kByName) &&
           Set(scope, i.key + L"\\TypeLib", nullptr, l.id) &&
           Set(scope, i.key + L"\\TypeLib", L"Version", l.version);
  return done;
}

bool UnregisterLibrary(const Library& l, RegistrationScope scope) {
  bool done = true;
  for (const Interface& i : Interfaces(l))
    if (Get(scope, i.key + L"\\TypeLib") == l.id) done = Remove(scope, i.key) && done;
  done = Remove(scope, l.LanguageKey() + L"\\" + kPlatform) && done;
  // The other kind of process may have its own file there.
  if (!HasKeys(scope, l.LanguageKey())) done = Remove(scope, l.VersionKey()) && done;
  if (!HasKeys(scope, l.Key())) done = Remove(scope, l.Key()) && done;
  return done;
}

HRESULT Unregister(const ComServer& server, std::span<const RegisteredClass> classes,
                   RegistrationScope scope) {
  HRESULT result = S_OK;
  for (int number = 1; number <= server.TypeLibraries(); ++number)
    if (const auto library = Load(server, number); !library || !UnregisterLibrary(*library, scope))
      result = SELFREG_E_TYPELIB;
  for (const RegisteredClass& c : classes)
    if (!UnregisterClassKeys(c, scope)) result = SELFREG_E_CLASS;
  return result;
}

HRESULT Register(const ComServer& server, std::span<const RegisteredClass> classes, RegistrationScope scope) {
  HRESULT failure = S_OK;
  for (const RegisteredClass& c : classes)
    if (SUCCEEDED(failure) && !RegisterClassKeys(server, c, scope)) failure = SELFREG_E_CLASS;
  for (int number = 1; SUCCEEDED(failure) && number <= server.TypeLibraries(); ++number)
    if (const auto library = Load(server, number); !library || !RegisterLibrary(*library, scope))
      failure = SELFREG_E_TYPELIB;
  if (FAILED(failure)) Unregister(server, classes, scope);
  return failure;
}

}  // namespace

HRESULT RegisterServer(const ComServer& server, std::span<const RegisteredClass> classes,
                       RegistrationScope scope) noexcept {
  return Guarded(server.Source(), [&] { return Register(server, classes, scope); });
}

HRESULT UnregisterServer(const ComServer& server, std::span<const RegisteredClass> classes,
                         RegistrationScope scope) noexcept {
  return Guarded(server.Source(), [&] { return Unregister(server, classes, scope); });
}

HRESULT InstallServer(const ComServer& server, std::span<const RegisteredClass> classes, bool install,
                      const wchar_t* command_line) noexcept {
  const bool user = command_line && ::CompareStringOrdinal(command_line, -1, L"user", -1, TRUE) == CSTR_EQUAL;
  const auto scope = user ? RegistrationScope::User : RegistrationScope::Machine;
  return install ? RegisterServer(server, classes, scope) : UnregisterServer(server, classes, scope);
}

}  // namespace zuvi
