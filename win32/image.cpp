#include "win32/image.h"

#include "win32/text.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace zuvi {

HINSTANCE ThisImage() noexcept { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

std::wstring PathOf(HMODULE image) {
  // Paths may be longer than MAX_PATH; a full buffer means there is more.
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(image, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::wstring FolderOf(HMODULE image) {
  const std::wstring path = PathOf(image);
  return path.substr(0, path.rfind(L'\\'));
}

void PinImage() noexcept { PinImageOf(&__ImageBase); }

void PinImageOf(const void* within) noexcept {
  HMODULE pinned = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       static_cast<LPCWSTR>(within), &pinned);
}

HMODULE LoadSystemLibrary(const wchar_t* name) {
  const std::wstring folder =
      SystemText([](wchar_t* text, DWORD room) { return ::GetSystemDirectoryW(text, room); });
  if (folder.empty()) return nullptr;
  // What the library needs is looked for beside it. Systems that came out before the stricter flag refuse
  // that; they have no such function either.
  const bool strict = FunctionOf<FARPROC>(L"kernel32.dll", "AddDllDirectory") != nullptr;
  return ::LoadLibraryExW((folder + L'\\' + name).c_str(), nullptr,
                          strict ? LOAD_LIBRARY_SEARCH_SYSTEM32 : LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace zuvi
