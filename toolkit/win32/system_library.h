#pragma once

#include "toolkit/win32/windows_ui.h"

namespace zuvi::native {

/// Loads a library that comes with the system, by its file name ("msftedit.dll"): out of the system's own
/// folder, with whatever it needs itself, and never from beside the program or from the current folder. The
/// caller frees it. Null when the system has none.
HMODULE LoadSystemLibrary(const wchar_t* name);

}  // namespace zuvi::native
