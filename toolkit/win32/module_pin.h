#pragma once

namespace zuvi::native {

/// Keeps the program file this is linked into in memory until the process ends. To be called before the
/// system is given anything that leads back here: a window or its class, a timer, a hook. The end of a
/// thread's use of COM takes a DLL out of memory whatever the DLL answers, and those would go on leading
/// there.
void PinModule() noexcept;

}  // namespace zuvi::native
