#pragma once

namespace zuvi::native {

/// Keeps the program file this is linked into in memory until the process ends. To be called before the
/// system is given anything that leads back here: a window or its class, a timer, a hook. The end of a
/// thread's use of COM takes a DLL out of memory whatever the DLL answers, and those would go on leading
/// there.
void PinModule() noexcept;

/// The same for the program file in which an address lies: somebody else's, whose object is kept here until
/// COM takes the thread down.
void PinModuleOf(const void* within) noexcept;

}  // namespace zuvi::native
