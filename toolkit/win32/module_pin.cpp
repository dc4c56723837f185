#include "toolkit/win32/module_pin.h"

#include "toolkit/win32/windows_ui.h"

namespace zuvi::native {

void PinModule() noexcept { PinModuleOf(reinterpret_cast<const void*>(&PinModule)); }

void PinModuleOf(const void* within) noexcept {
  HMODULE pinned = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       static_cast<LPCWSTR>(within), &pinned);
}

}  // namespace zuvi::native
