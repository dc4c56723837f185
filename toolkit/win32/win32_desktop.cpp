#include "toolkit/win32/win32_desktop.h"

#include <algorithm>
#include <optional>

#include "base/clock.h"
#include "toolkit/win32/message_box.h"
#include "toolkit/win32/message_loop.h"
#include "toolkit/win32/native_form.h"

namespace zuvi {
namespace {

/// Longest time pending events are given at once; timers could keep a queue from ever being empty.
constexpr DWORD kPumpLimit = 250;
/// Time between two looks at the queue during a long work. Looking costs as much as many rows of a list.
constexpr DWORD kBreath = 5;

struct Front {
  HWND except = nullptr;
  HWND found = nullptr;
};

BOOL CALLBACK TakeFirst(HWND window, LPARAM param) {
  auto& front = *reinterpret_cast<Front*>(param);
  const bool tool = (::GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0;
  if (window == front.except || tool || !::IsWindowVisible(window)) return TRUE;
  front.found = window;
  return FALSE;
}

/// The window of this thread that is in front of all others but `except`.
HWND FrontWindow(HWND except) {
  Front front{except};
  ::EnumThreadWindows(::GetCurrentThreadId(), &TakeFirst, reinterpret_cast<LPARAM>(&front));
  return front.found;
}

HWND HandleOf(const Form& form) {
  return form.NativeSide() ? reinterpret_cast<HWND>(form.NativeSide()->Handle()) : nullptr;
}

/// What a program that ends meanwhile ends with.
std::optional<int> ServeUntilGone(const Form& form) {
  native::NestedLoop loop;
  while (form.Visible()) {
    MSG message;
    const BOOL got = ::GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) return got == 0 ? static_cast<int>(message.wParam) : 0;
    loop.Serve(message);
  }
  return std::nullopt;
}

}  // namespace

Win32Desktop::Win32Desktop(HINSTANCE__* instance)
    : instance_(instance), boxes_(std::make_unique<native::MessageBoxes>()) {}
Win32Desktop::~Win32Desktop() = default;

int Win32Desktop::Box(const std::string& text, const wchar_t* title, unsigned style) noexcept {
  try {
    return boxes_->Show(Wide(text), title, style);
  } catch (...) {
    return ::MessageBoxW(nullptr, L"Out of memory", title, MB_OK);
  }
}

void Win32Desktop::ShowMessage(const std::string& text) noexcept { Box(text, L"ZuviProduccion", MB_OK); }

void Win32Desktop::PumpEvents() {
  const DWORD start = ::GetTickCount();
  native::NestedLoop loop;
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      // The loop that runs the program is to see it.
      ::PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    loop.Serve(message);
    if (::GetTickCount() - start > kPumpLimit) break;
  }
  breathed_ = ::GetTickCount();
}

void Win32Desktop::PumpIfDue() {
  if (::GetTickCount() - breathed_ >= kBreath) PumpEvents();
}

void Win32Desktop::Attach(Form& form) {
  if (!factory_)
    factory_ = std::make_shared<native::WindowFactory>(instance_, &native::NativeForm::Procedure);
  const auto alike = std::ranges::count_if(Forms(), [&](const std::shared_ptr<Form>& open) {
    return open.get() != &form && open->Visible() && open->Name() == form.Name();
  });
  auto peer = std::make_unique<native::NativeForm>(factory_, form);
  native::NativeForm& window = *peer;
  form.SetPeer(std::move(peer));
  try {
    window.Create(static_cast<int>(alike));
  } catch (...) {
    for (const auto& control : form.Controls()) control->SetPeer(nullptr);
    form.SetPeer(nullptr);
    throw;
  }
  window.ShowNow();
}

void Win32Desktop::RunModal(Form& form, Form* owner) {
  const auto keep = form.Keep();
  auto* const window = static_cast<native::NativeForm*>(form.NativeSide());
  if (!window || !form.Visible()) return;
  HWND behind = owner ? HandleOf(*owner) : FrontWindow(window->Window());
  if (!owner) {
    const auto ours = std::ranges::find_if(
        Forms(), [&](const std::shared_ptr<Form>& open) { return behind && HandleOf(*open) == behind; });
    if (ours != Forms().end()) owner = ours->get();
  }
  const auto block =
      std::make_shared<native::ModalBlock>(owner ? owner->Keep() : nullptr, owner ? nullptr : behind);
  window->SetModal(block, behind, owner);
  const auto life = window->Life();

  const std::optional<int> quit = ServeUntilGone(form);
  block->Release();
  const bool newest = life->modal.lock() != nullptr;
  life->modal.reset();
  if (!quit) {
    // Whoever was given the keyboard while it closed: one goes on where it was opened from. Where a later
    // window held this up, that has happened already.
    if (newest && behind && ::IsWindowVisible(behind) && ::IsWindowEnabled(behind)) ::SetActiveWindow(behind);
    return;
  }
  // The program ends: so do its windows, and the loop outside is to know.
  if (form.Visible() && !form.Unload(UnloadMode::System)) form.Hide();
  ::PostQuitMessage(*quit);
}

Date Win32Desktop::Now() const { return Date::FromCivil(Ahora()); }

}  // namespace zuvi
