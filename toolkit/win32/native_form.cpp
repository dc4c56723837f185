#include "toolkit/win32/native_form.h"

#include <algorithm>
#include <utility>

#include "toolkit/win32/drawing.h"
#include "toolkit/win32/native_control.h"
#include "toolkit/win32/peers.h"

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

NativeForm::NativeForm(std::shared_ptr<WindowFactory> factory, Form& form)
    : form_(form), life_(std::make_shared<WindowLife>()) {
  life_->factory = std::move(factory);
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

void NativeForm::MakeFonts() { texts_ = std::make_shared<NativeTexts>(Factory().MessageFont(dpi_), dpi_); }

void NativeForm::Create(int nth) {
  style_ = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  if (form_.Sizable()) style_ |= WS_THICKFRAME | WS_MAXIMIZEBOX;
  if (!form_.Enabled()) style_ |= WS_DISABLED;
  extended_ = WS_EX_CONTROLPARENT;
  dpi_ = Factory().DpiOf(nullptr);
  WindowPlan plan;
  plan.window_class = kFormClass;
  plan.style = style_;
  plan.extended = extended_;
  plan.text = Wide(form_.Caption());
  plan.place = FirstPlace(nth);
  plan.param = life_.get();
  Factory().Create(plan);
  dpi_ = Factory().DpiOf(Window());
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
  RECT client;
  ::GetClientRect(Window(), &client);
  OnSize(::IsZoomed(Window()) ? SIZE_MAXIMIZED : SIZE_RESTORED, client.right, client.bottom);
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
        const RECT frame = FrameOf(Pixels(form_.ClientWidth()), Pixels(form_.ClientHeight()));
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

void NativeForm::OnPaint(HWND window) {
  { const Painting nothing_of_its_own(window); }
  if (painting_ || showing_) return;
  const auto life = life_;
  painting_ = true;
  form_.Paint();
  if (life->peer) painting_ = false;
}

void NativeForm::ScaleToolTips() {
  if (tips_) ::SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, Pixels(kTipWidth));
}

void NativeForm::SetToolTip(HWND tool, const std::wstring& text) {
  if (!tips_ && text.empty()) return;
  if (!tips_) {
    WindowPlan plan;
    plan.window_class = TOOLTIPS_CLASSW;
    plan.style = WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX;
    plan.parent = Window();
    tips_ = Factory().Create(plan);
    ScaleToolTips();
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

}  // namespace zuvi::native
