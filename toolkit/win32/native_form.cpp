#include "toolkit/win32/native_form.h"

#include <algorithm>
#include <utility>

#include "toolkit/win32/native_control.h"
#include "toolkit/win32/peers.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace zuvi::native {
namespace {

constexpr std::int32_t kTipWidth = 6000;  // twips, from which on a tool tip's text is broken

}  // namespace

void WindowLife::Close() {
  peer = nullptr;
  if (!window || going) return;
  if (procedures > 0)
    ::ShowWindow(window, SW_HIDE);
  else
    ::DestroyWindow(window);
}

void WindowLife::TellOpener() {
  if (!ended || procedures > 0) return;
  ended = false;
  const auto told = opener.lock();
  if (!told || !told->window) return;
  told->ended_over.push_back(shared_from_this());
  ::PostMessageW(told->window, kModalEnded, 0, 0);
}

Entry::Entry(WindowLife& life) : life_(life.shared_from_this()) {
  if (life_->peer) form_ = life_->peer->Model().Keep();
  ++life_->procedures;
}

Entry::~Entry() {
  if (--life_->procedures == 0 && !life_->peer && life_->window && !life_->going)
    ::DestroyWindow(life_->window);
  life_->TellOpener();
}

ModalBlock::ModalBlock(std::shared_ptr<Form> owner, HWND foreign)
    : owner_(std::move(owner)), foreign_(foreign) {
  // Who is blocked already stays so, and is not ours to let go.
  if (owner_ && !owner_->Enabled()) owner_ = nullptr;
  if (foreign_ && !::IsWindowEnabled(foreign_)) foreign_ = nullptr;
  if (owner_) owner_->SetEnabled(false);
  if (foreign_) ::EnableWindow(foreign_, FALSE);
}

void ModalBlock::Release() {
  if (const auto owner = std::exchange(owner_, nullptr)) owner->SetEnabled(true);
  if (const HWND foreign = std::exchange(foreign_, nullptr)) ::EnableWindow(foreign, TRUE);
}

NativeForm::NativeForm(std::shared_ptr<NativeModule> module, Form& form)
    : form_(form), life_(std::make_shared<WindowLife>()) {
  life_->module = std::move(module);
  life_->peer = this;
}

NativeForm::~NativeForm() {
  life_->peer = nullptr;
  const bool modal = modal_ != nullptr;
  for (const auto& [id, timer] : timers_) ::KillTimer(Window(), reinterpret_cast<UINT_PTR>(id));
  // First the owner, so that it is the one to be activated.
  if (modal_) modal_->Release();
  life_->Close();
  if (modal) life_->ended = true;
  life_->TellOpener();
  // A modal loop that waits for a message looks again.
  if (modal) ::PostMessageW(nullptr, WM_NULL, 0, 0);
}

void NativeForm::MakeFonts() { texts_ = std::make_shared<NativeTexts>(Module().MessageFont(dpi_), dpi_); }

RECT NativeForm::FrameOf(int width, int height) const {
  RECT frame{0, 0, width, height};
  Module().AddFrame(frame, style_, extended_, dpi_);
  return frame;
}

RECT NativeForm::FirstPlace(int nth) const {
  const HWND front = ::GetForegroundWindow();
  const RECT area = NativeModule::WorkArea(front);
  const RECT frame = FrameOf(Pixels(form_.InsideWidth()), Pixels(form_.InsideHeight()));
  const LONG width = std::min(frame.right - frame.left, area.right - area.left);
  const LONG height = std::min(frame.bottom - frame.top, area.bottom - area.top);
  const LONG step = nth * Metric(SM_CYCAPTION);
  const auto placed = [step](LONG from, LONG to, LONG extent) {
    const LONG centred = from + (to - from - extent) / 2;
    return std::clamp(centred + step % std::max<LONG>(1, to - extent - centred + 1), from,
                      std::max(from, to - extent));
  };
  RECT place{};
  place.left = placed(area.left, area.right, width);
  place.top = placed(area.top, area.bottom, height);
  place.right = place.left + width;
  place.bottom = place.top + height;
  return place;
}

void NativeForm::Create(int nth) {
  style_ = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  if (form_.Sizable()) style_ |= WS_THICKFRAME | WS_MAXIMIZEBOX;
  if (!form_.Enabled()) style_ |= WS_DISABLED;
  extended_ = WS_EX_CONTROLPARENT;
  dpi_ = Module().DpiOf(nullptr);
  WindowPlan plan;
  plan.window_class = kFormClass;
  plan.style = style_;
  plan.extended = extended_;
  plan.text = Wide(form_.Caption());
  plan.place = FirstPlace(nth);
  plan.param = life_.get();
  Module().Create(plan);
  dpi_ = Module().DpiOf(Window());
  MakeFonts();
  form_.FitTo(texts_);
  const std::vector<std::shared_ptr<Control>> controls = form_.Controls();
  for (const auto& control : controls) {
    auto peer = PeerFor(*this, *control);
    if (!peer) continue;
    peer->Create();
    control->SetPeer(std::move(peer));
  }
  FitNative();
  const RECT place = FirstPlace(nth);
  ::SetWindowPos(Window(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void NativeForm::FitNative() {
  for (const auto& control : form_.Controls()) {
    const Peer* const peer = control->NativeSide();
    const Extent needs = peer ? peer->Needs() : Extent{};
    if (needs.width > control->Width() || needs.height > control->Height()) return form_.Fit();
  }
}

void NativeForm::ShowNow() {
  const auto life = life_;
  const Entry entry(*life);
  // The model tells of the first painting itself.
  showing_ = true;
  ShowState();
  if (!life->peer) return;
  ::SetForegroundWindow(Window());
  if (!life->peer) return;
  ::RedrawWindow(Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  if (!life->peer) return;
  showing_ = false;
  if (::IsIconic(Window())) return;
  // Shown maximized, or on a screen too small for the design.
  RECT inside;
  ::GetClientRect(Window(), &inside);
  OnSize(::IsZoomed(Window()) ? SIZE_MAXIMIZED : SIZE_RESTORED, inside.right, inside.bottom);
}

void NativeForm::ShowState() {
  switch (form_.State()) {
    case WindowState::Normal:
      ::ShowWindow(Window(), SW_SHOWNORMAL);
      break;
    case WindowState::Minimized:
      ::ShowWindow(Window(), SW_SHOWMINIMIZED);
      break;
    case WindowState::Maximized:
      ::ShowWindow(Window(), SW_SHOWMAXIMIZED);
      break;
  }
}

void NativeForm::Hide() {
  Dismiss();
  const bool modal = modal_ != nullptr;
  if (const auto block = std::exchange(modal_, nullptr)) block->Release();
  ::ShowWindow(Window(), SW_HIDE);
  if (modal) ::PostMessageW(nullptr, WM_NULL, 0, 0);
  if (modal) life_->ended = true;
}

void NativeForm::Update(Aspect aspect) {
  const auto life = life_;
  const Entry entry(*life);
  switch (aspect) {
    case Aspect::Text:
      ::SetWindowTextW(Window(), Wide(form_.Caption()).c_str());
      break;
    case Aspect::Enabled:
      ::EnableWindow(Window(), form_.Enabled());
      // In front, but without input until now.
      if (life->peer && Active() && !::IsChild(Window(), ::GetFocus())) GiveFocus();
      break;
    case Aspect::Visible:
      form_.Visible() ? ShowNow() : Hide();
      break;
    case Aspect::Bounds:
      if (!sizing_) {
        const RECT frame = FrameOf(Pixels(form_.InsideWidth()), Pixels(form_.InsideHeight()));
        ::SetWindowPos(Window(), nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                       SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      }
      break;
    case Aspect::Content:
      if (!showing_ && !sizing_ && !::IsIconic(Window())) LayOutWithBars();
      break;
    case Aspect::State: {
      const WindowState now = ::IsIconic(Window())   ? WindowState::Minimized
                              : ::IsZoomed(Window()) ? WindowState::Maximized
                                                     : WindowState::Normal;
      if (form_.Visible() && now != form_.State()) ShowState();
      break;
    }
    default:
      break;
  }
}

bool NativeForm::Active() const { return ::GetActiveWindow() == Window() && ::IsWindowEnabled(Window()); }

void NativeForm::TakeFocus() {
  const auto life = life_;
  const Entry entry(*life);
  if (::IsIconic(Window())) ::ShowWindow(Window(), SW_RESTORE);
  ::SetForegroundWindow(Window());
  if (life->peer && ::GetActiveWindow() != Window()) ::SetActiveWindow(Window());
}

void NativeForm::GiveFocus() {
  Control* const control = form_.ActiveControl();
  if (control && control->CanFocus() && control->NativeSide())
    control->NativeSide()->TakeFocus();
  else
    ::SetFocus(Window());
}

void NativeForm::Place(NativeControl& control) {
  if (sizing_) {
    moved_.push_back(&control);
    return;
  }
  const RECT r = control.Place();
  ::SetWindowPos(control.Window(), nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void NativeForm::OnSize(WPARAM kind, int width, int height) {
  if (showing_ || scroll_.Showing()) return;
  if (kind == SIZE_MINIMIZED) {
    form_.SetState(WindowState::Minimized);
    return;
  }
  form_.SetState(kind == SIZE_MAXIMIZED ? WindowState::Maximized : WindowState::Normal);
  if (width == Pixels(form_.InsideWidth()) && height == Pixels(form_.InsideHeight())) return;
  LayOutWithBars();
}

void NativeForm::LayOutWithBars() {
  const auto life = life_;
  scroll_.Hide();
  LayOut();
  // A bar takes room, for which something may give way, or the other bar be needed.
  while (life->peer && scroll_.Show()) LayOut();
}

void NativeForm::LayOut() {
  const auto life = life_;
  RECT inside;
  ::GetClientRect(Window(), &inside);
  // Controls move together at the end.
  sizing_ = true;
  form_.Resized(Twips(inside.right), Twips(inside.bottom));
  if (!life->peer) return;
  sizing_ = false;
  const std::vector<NativeControl*> moved = std::exchange(moved_, {});
  HDWP together = ::BeginDeferWindowPos(static_cast<int>(moved.size()));
  for (NativeControl* control : moved) {
    if (!control->Window()) continue;
    const RECT r = control->Place();
    if (together)
      together = ::DeferWindowPos(together, control->Window(), nullptr, r.left, r.top, r.right - r.left,
                                  r.bottom - r.top, SWP_NOZORDER | SWP_NOACTIVATE);
  }
  if (together) ::EndDeferWindowPos(together);
}

void NativeForm::OnPaint(HWND window) {
  PAINTSTRUCT paint;
  ::BeginPaint(window, &paint);
  ::EndPaint(window, &paint);
  if (painting_ || showing_) return;
  const auto life = life_;
  painting_ = true;
  form_.Paint();
  if (life->peer) painting_ = false;
}

void NativeForm::OnNewScale(UINT dpi, const RECT& place) {
  const auto life = life_;
  Dismiss();
  dpi_ = dpi;
  ::SetWindowPos(Window(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  if (life->peer) Rescale();
}

void NativeForm::Rescale() {
  const auto life = life_;
  // The controls hold the old ones until they have the new.
  const auto before = texts_;
  MakeFonts();
  for (const auto& control : form_.Controls()) {
    if (!life->peer) return;
    if (auto* peer = static_cast<NativeControl*>(control->NativeSide())) peer->Restyle();
  }
  form_.FitTo(texts_);
  if (!life->peer) return;
  PutOnScreen();
  if (tips_) ::SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, Pixels(kTipWidth));
  // What code has placed follows as it does when the user changes the size.
  if (life->peer) form_.Form_Resize();
  if (life->peer) ::RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void NativeForm::PutOnScreen() {
  RECT now;
  ::GetWindowRect(Window(), &now);
  if (::IsIconic(Window())) return;
  const auto life = life_;
  if (!::IsZoomed(Window())) {
    const RECT frame = FrameOf(Pixels(form_.InsideWidth()), Pixels(form_.InsideHeight()));
    const RECT area = NativeModule::WorkArea(Window());
    const LONG width = std::min(frame.right - frame.left, area.right - area.left);
    const LONG height = std::min(frame.bottom - frame.top, area.bottom - area.top);
    ::SetWindowPos(Window(), nullptr, std::max(area.left, std::min(now.left, area.right - width)),
                   std::max(area.top, std::min(now.top, area.bottom - height)), width, height,
                   SWP_NOZORDER | SWP_NOACTIVATE);
  }
  // On a screen without room for all of it, and where it fills the screen, it has another inside than it
  // wants.
  RECT inside;
  if (!life->peer || !::GetClientRect(Window(), &inside)) return;
  OnSize(::IsZoomed(Window()) ? SIZE_MAXIMIZED : SIZE_RESTORED, inside.right, inside.bottom);
}

void NativeForm::SmallestSize(MINMAXINFO& info) const {
  const RECT frame = FrameOf(Pixels(form_.DesignWidth()), Pixels(form_.DesignHeight()));
  const RECT area = NativeModule::WorkArea(Window());
  info.ptMinTrackSize = {std::min(frame.right - frame.left, area.right - area.left),
                         std::min(frame.bottom - frame.top, area.bottom - area.top)};
}

void NativeForm::SetToolTip(HWND tool, const std::wstring& text) {
  if (!tips_ && text.empty()) return;
  if (!tips_) {
    WindowPlan plan;
    plan.window_class = TOOLTIPS_CLASSW;
    plan.style = WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX;
    plan.parent = Window();
    tips_ = Module().Create(plan);
    ::SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, Pixels(kTipWidth));
  }
  TTTOOLINFOW info{};
  info.cbSize = TTTOOLINFOW_V1_SIZE;
  info.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  info.hwnd = Window();
  info.uId = reinterpret_cast<UINT_PTR>(tool);
  std::wstring writable = text;
  info.lpszText = writable.data();
  ::SendMessageW(tips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&info));
  if (!text.empty()) ::SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&info));
}

void NativeForm::SetTimer(const void* id, std::int32_t milliseconds, std::function<void()> tick) {
  if (milliseconds <= 0) {
    timers_.erase(id);
    ::KillTimer(Window(), reinterpret_cast<UINT_PTR>(id));
    return;
  }
  auto& timer = timers_[id];
  if (!timer) timer = std::make_shared<NativeTimer>();
  timer->tick = std::move(tick);
  ::SetTimer(Window(), reinterpret_cast<UINT_PTR>(id), static_cast<UINT>(milliseconds), nullptr);
}

void NativeForm::Dismiss() {
  if (DropDown* const list = std::exchange(dropped_, nullptr)) list->Dismiss();
}

void NativeForm::SetModal(std::shared_ptr<ModalBlock> block, HWND owner, Form* opener) {
  modal_ = std::move(block);
  life_->modal = form_.Keep();
  if (opener && opener->NativeSide()) life_->opener = static_cast<NativeForm*>(opener->NativeSide())->Life();
  ::SetWindowLongPtrW(Window(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
}

void NativeForm::OnModalEnded() {
  const auto life = life_;
  for (const auto& over : std::exchange(life->ended_over, {})) {
    const auto form = over->modal.lock();
    // Mostly whoever opened it has gone on by now.
    if (!form) continue;
    over->modal.reset();
    if (life->peer && ::IsWindowVisible(Window()) && ::IsWindowEnabled(Window())) ::SetActiveWindow(Window());
    form->EndModal();
  }
}

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
      if (const auto found = timers_.find(reinterpret_cast<const void*>(m.w)); found != timers_.end()) {
        const auto timer = found->second;
        // A timer does not interrupt itself.
        if (!timer->ticking) {
          timer->ticking = true;
          const auto tick = timer->tick;
          tick();
          timer->ticking = false;
        }
        return 0;
      }
      return std::nullopt;
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
      if (texts_ && !texts_->Is(Module().MessageFont(dpi_), dpi_)) Rescale();
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
