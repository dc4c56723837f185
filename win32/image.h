// Program files in memory: this one and the system's libraries.
#pragma once

#include <windows.h>

#include <string>

namespace zuvi {

/// The program file, DLL or EXE, that this is linked into.
HINSTANCE ThisImage() noexcept;
/// Full path of a loaded program file, however long.
std::wstring PathOf(HMODULE image);
/// Folder of a loaded program file, without trailing separator.
std::wstring FolderOf(HMODULE image);

/// Keeps the program file this is linked into in memory until the process ends. To be called before the
/// system is given anything that leads back here: a window or its class, a timer, a hook. The end of a
/// thread's use of COM takes a DLL out of memory whatever the DLL answers, and those would go on leading
/// there.
void PinImage() noexcept;
/// The same for the program file in which an address lies: somebody else's, whose object is kept here until
/// COM takes the thread down.
void PinImageOf(const void* within) noexcept;

/// Loads a library that comes with the system, by its file name ("msftedit.dll"): out of the system's own
/// folder, with whatever it needs itself, and never from beside the program or from the current folder. The
/// caller frees it. Null when the system has none.
HMODULE LoadSystemLibrary(const wchar_t* name);

/// A function of a loaded library by its name; null where this system's has none.
template <class Function>
Function FunctionOf(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}
/// The same of a library that every process has, by its file name.
template <class Function>
Function FunctionOf(const wchar_t* library, const char* name) {
  return FunctionOf<Function>(::GetModuleHandleW(library), name);
}

}  // namespace zuvi
