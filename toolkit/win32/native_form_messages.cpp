// What a window makes of its messages.
#include "toolkit/win32/native_control.h"
#include "toolkit/win32/native_form.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace zuvi::native {

LRESULT CALLBACK NativeForm::Procedure(HWND window, UINT id, WPARAM w, LPARAM l) {
  if (id == WM_NCCREATE) {
    auto* const created = static_cast<WindowLife*>(reinterpret_cast<const CREATESTRUCTW*>(l)->lpCreateParams);
    created->window = window;
    created->while_native = created->shared_from_this();
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
  }
  auto* const stored = reinterpret_cast<WindowLife*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!stored) return ::DefWindowProcW(window, id, w, l);
  const auto life = stored->shared_from_this();
  if (id == WM_NCDESTROY) {
    ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    life->window = nullptr;
    life->while_native.reset();
  } else if (life->peer) {
    const Entry entry(*life);
    try {
      if (const auto result = life->peer->Handle({window, id, w, l})) return *result;
    } catch (...) {
      // Handlers trap their own errors; out of memory is left, and Windows is owed an answer.
      return 0;
    }
    return ::DefWindowProcW(window, id, w, l);
  } else if (id == WM_CLOSE || id == WM_SYSCOMMAND) {
    return 0;  // closed already, and only waiting for its procedures to return
  }
  return ::DefWindowProcW(window, id, w, l);
}

NativeControl* NativeForm::PeerOf(HWND window) const {
  const auto handle = reinterpret_cast<std::intptr_t>(window);
  for (const auto& control : form_.Controls())
    if (window && control->NativeSide() && control->NativeSide()->Handle() == handle)
      return static_cast<NativeControl*>(control->NativeSide());
  return nullptr;
}

bool NativeForm::IgnoresKey(const Message& message) {
  // Keys come here when the focused control was hidden; the next one takes over.
  if (message.id != WM_KEYDOWN || ::GetFocus() != message.window) return false;
  Control* const active = form_.ActiveControl();
  if (active && active->CanFocus())
    GiveFocus();
  else
    form_.FocusNext();
  return true;
}

void NativeForm::OnWheel(const Message& m) {
  // Handed on by the control with the focus. What can only be read scrolls where the pointer is.
  if (wheeling_) return;
  NativeControl* const peer = PeerOf(::WindowFromPoint({GET_X_LPARAM(m.l), GET_Y_LPARAM(m.l)}));
  if (!peer || !peer->OnlyReads()) {
    scroll_.Wheel(GET_WHEEL_DELTA_WPARAM(m.w));
    return;
  }
  const auto life = life_;
  wheeling_ = true;
  ::SendMessageW(peer->Window(), m.id, m.w, m.l);
  if (life->peer) wheeling_ = false;
}

bool NativeForm::OnTimer(WPARAM id) {
  const auto found = timers_.find(reinterpret_cast<const void*>(id));
  if (found == timers_.end()) return false;
  const auto timer = found->second;
  // A timer does not interrupt itself.
  if (timer->ticking) return true;
  timer->ticking = true;
  const auto tick = timer->tick;
  tick();
  timer->ticking = false;
  return true;
}

std::optional<LRESULT> NativeForm::Handle(const Message& m) {
  switch (m.id) {
    case WM_COMMAND:
      if (auto* peer = PeerOf(reinterpret_cast<HWND>(m.l))) {
        peer->OnCommand(HIWORD(m.w));
        return 0;
      }
      return std::nullopt;
    case WM_NOTIFY: {
      const auto& notification = *reinterpret_cast<const NMHDR*>(m.l);
      auto* peer = PeerOf(notification.hwndFrom);
      if (peer) return peer->OnNotify(notification);
      return std::nullopt;
    }
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(m.l);
      if (auto* peer = PeerOf(item.hwndItem)) peer->OnDraw(item);
      return TRUE;
    }
    case WM_TIMER:
      if (OnTimer(m.w)) return 0;
      return std::nullopt;
    default:
      return HandleInput(m);
  }
}

std::optional<LRESULT> NativeForm::HandleInput(const Message& m) {
  switch (m.id) {
    case WM_ACTIVATE:
      if (LOWORD(m.w) == WA_INACTIVE) {
        Dismiss();
      } else if (!HIWORD(m.w)) {
        GiveFocus();
      }
      return 0;
    case WM_SETFOCUS: {
      Control* const control = form_.ActiveControl();
      if (control && control->CanFocus() && Active()) GiveFocus();
      return 0;
    }
    case WM_GETDLGCODE:
      return DLGC_WANTALLKEYS;
    case WM_KEYDOWN:
      if (IgnoresKey(m)) return 0;
      return std::nullopt;
    case WM_SYSCHAR:
      if (form_.Mnemonic(static_cast<char16_t>(m.w))) return 0;
      return std::nullopt;
    case WM_LBUTTONDOWN:
    case WM_NCLBUTTONDOWN:
    case WM_ENTERSIZEMOVE:
      Dismiss();
      return std::nullopt;
    case WM_MOUSEWHEEL:
      OnWheel(m);
      return 0;
    case WM_HSCROLL:
    case WM_VSCROLL:
      if (m.l != 0) return std::nullopt;
      scroll_.Turn(m.id == WM_HSCROLL ? SB_HORZ : SB_VERT, LOWORD(m.w));
      return 0;
    default:
      return HandleState(m);
  }
}

std::optional<LRESULT> NativeForm::HandleState(const Message& m) {
  switch (m.id) {
    case WM_SIZE:
      OnSize(m.w, LOWORD(m.l), HIWORD(m.l));
      return 0;
    case WM_GETMINMAXINFO:
      SmallestSize(*reinterpret_cast<MINMAXINFO*>(m.l));
      return 0;
    case WM_PAINT:
      OnPaint(m.window);
      return 0;
    case kModalEnded:
      OnModalEnded();
      return 0;
    case WM_CLOSE:
      form_.Unload(UnloadMode::TitleBar);
      return 0;
    case WM_QUERYENDSESSION:
      return form_.Unload(UnloadMode::System);
    case WM_DESTROY:
      // Taken down by others, with its owner or its thread.
      life_->going = true;
      form_.Unload(UnloadMode::System);
      return 0;
    case WM_DPICHANGED:
      OnNewScale(HIWORD(m.w), *reinterpret_cast<const RECT*>(m.l));
      return 0;
    case WM_SETTINGCHANGE:
      // Which of the settings it was is told in several ways, by the version of the system.
      if (texts_ && !texts_->Is(Factory().MessageFont(dpi_), dpi_)) Rescale();
      return std::nullopt;
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
      for (const auto& control : form_.Controls())
        if (control->NativeSide())
          ::SendMessageW(reinterpret_cast<HWND>(control->NativeSide()->Handle()), m.id, m.w, m.l);
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

}  // namespace zuvi::native
