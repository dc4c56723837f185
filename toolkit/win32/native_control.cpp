#include "toolkit/win32/native_control.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/error.h"
#include "toolkit/win32/message_loop.h"

namespace zuvi::native {
namespace {

constexpr UINT_PTR kFlushTimer = 0x7A75;  // told apart from the timers native controls set on themselves
// Milliseconds between a change and its showing, so many times what a painting takes at least: filling a list
// is to cost little more when it can be watched.
constexpr UINT kFlushDelay = 25, kLongestDelay = 400, kPaintings = 6;

/// By this property a window is known to be subclassed. Its user data stays free: it belongs to the control
/// itself, and to whoever else finds the window.
constexpr const wchar_t* kProperty = L"Zuvi.Control";

/// What was found last for the windows of this thread. Every message asks, and the system may have to ask
/// another process for a property.
struct Found {
  HWND window;
  void* subclassed;
};
Found& LastFound(HWND window) {
  constexpr std::size_t kPlaces = 128;
  thread_local std::array<Found, kPlaces> places{};
  return places[reinterpret_cast<std::uintptr_t>(window) / 2 % kPlaces];  // handles are even
}

bool IsKey(UINT id) { return id >= WM_KEYFIRST && id <= WM_KEYLAST; }
bool IsPress(UINT id) { return id > WM_MOUSEMOVE && id <= WM_XBUTTONDBLCLK && id != WM_MOUSEWHEEL; }

bool IsRelease(UINT id) {
  return id == WM_LBUTTONUP || id == WM_RBUTTONUP || id == WM_MBUTTONUP || id == WM_XBUTTONUP;
}

/// Counts up while it stands.
class Counted {
 public:
  explicit Counted(int& count) : count_(count) { ++count_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --count_; }

 private:
  int& count_;
};

}  // namespace

std::int16_t ShiftState() {
  const auto bit = [](int key, std::int16_t value) {
    return ::GetKeyState(key) < 0 ? value : std::int16_t{0};
  };
  return static_cast<std::int16_t>(bit(VK_SHIFT, shift::kShift) | bit(VK_CONTROL, shift::kCtrl) |
                                   bit(VK_MENU, shift::kAlt));
}

NativeControl::NativeControl(NativeForm& form, Control& control)
    : form_(form), control_(control), link_(std::make_shared<Link>()) {
  link_->peer = this;
  link_->life = form.Life();
}

// The native window goes with the form's.
NativeControl::~NativeControl() { link_->peer = nullptr; }

void NativeControl::CreateWindowOf(const wchar_t* window_class, DWORD style, DWORD extended,
                                   const std::wstring& text) {
  WindowPlan plan;
  plan.window_class = window_class;
  plan.style = style | WS_CHILD | WS_CLIPSIBLINGS | (control_.Visible() ? WS_VISIBLE : 0) |
               (NativeEnabled() ? 0 : WS_DISABLED) |
               (control_.TakesFocus() && control_.TabStop() ? WS_TABSTOP : 0);
  plan.extended = extended | WS_EX_NOPARENTNOTIFY;
  plan.text = text;
  plan.place = Place();
  plan.parent = form_.Window();
  window_ = form_.Factory().Create(plan);
  Adopt(window_);
  Send(WM_SETFONT, reinterpret_cast<WPARAM>(form_.Font()), FALSE);
  ShowToolTip();
}

void NativeControl::Adopt(HWND inner) {
  if (!inner) return;
  const auto native = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(inner, GWLP_WNDPROC));
  auto& subclassed = *link_->windows.emplace_back(std::make_unique<Subclassed>(*link_, native));
  if (!::SetPropW(inner, kProperty, &subclassed)) {
    link_->windows.pop_back();
    throw HostError("Windows could not create a window", ErrorNumber::OutOfMemory);
  }
  LastFound(inner) = {inner, &subclassed};
  link_->while_native = link_;
  ::SetWindowLongPtrW(inner, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
}

RECT NativeControl::Place() const {
  const Rect& b = control_.Bounds();
  const POINT& scrolled = form_.Scroll().At();
  return {form_.Pixels(b.left) - scrolled.x, form_.Pixels(b.top) - scrolled.y,
          form_.Pixels(b.left + b.width) - scrolled.x, form_.Pixels(b.top + b.height) - scrolled.y};
}

void NativeControl::Restyle() {
  Send(WM_SETFONT, reinterpret_cast<WPARAM>(form_.Font()), TRUE);
  form_.Place(*this);
}

void NativeControl::Update(Aspect aspect) {
  switch (aspect) {
    case Aspect::Enabled:
      ::EnableWindow(window_, NativeEnabled());
      break;
    case Aspect::Visible:
      // What appears later lies over what was there, as an editor over its grid does.
      if (control_.Visible())
        ::SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0,
                       SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
      else
        ::ShowWindow(window_, SW_HIDE);
      break;
    case Aspect::Bounds:
      form_.Place(*this);
      break;
    case Aspect::State:
      ShowToolTip();
      break;
    default:
      break;
  }
}

void NativeControl::TakeFocus() {
  // A window that is not in front gets the focus with its activation.
  if (form_.Active() && window_)
    ::SetFocus(FocusTarget());
  else
    form_.Model().FocusMoved(&control_);
}

void NativeControl::ShowToolTip() { form_.SetToolTip(window_, Wide(control_.ToolTipText())); }

void NativeControl::FlushLater() {
  if (dirty_ || !window_) return;
  dirty_ = true;
  ::SetTimer(window_, kFlushTimer, std::clamp(kPaintings * paint_cost_, kFlushDelay, kLongestDelay), nullptr);
}

NativeControl::Subclassed* NativeControl::SubclassedIn(HWND window) {
  Found& last = LastFound(window);
  if (last.window != window) last = {window, ::GetPropW(window, kProperty)};
  return static_cast<Subclassed*>(last.subclassed);
}

LRESULT NativeControl::CallNative(const Message& message) {
  const Subclassed* const subclassed = SubclassedIn(message.window);
  if (!subclassed) return ::DefWindowProcW(message.window, message.id, message.w, message.l);
  const std::shared_ptr<Link> link = subclassed->link.shared_from_this();
  const Counted on_stack(link->natives);
  return ::CallWindowProcW(subclassed->native, message.window, message.id, message.w, message.l);
}

void NativeControl::FlushNow() {
  if (!dirty_ || InNative()) return;
  dirty_ = false;
  ::KillTimer(window_, kFlushTimer);
  const UpdateGuard echo(*this);
  Flush();
}

bool NativeControl::FlushesBefore(const Message& message) const {
  if (!dirty_ || message.window != window_ || InNative() || Busy()) return false;
  return IsKey(message.id) || (IsPress(message.id) && !IsRelease(message.id)) ||
         (message.id == WM_PAINT && FlushesToPaint()) || (message.id == WM_TIMER && message.w == kFlushTimer);
}

LRESULT NativeControl::Destroyed(Subclassed& subclassed, const Message& message) {
  const std::shared_ptr<Link> link = subclassed.link.shared_from_this();
  const LRESULT result = CallNative(message);
  ::RemovePropW(message.window, kProperty);
  if (Found& last = LastFound(message.window); last.window == message.window) last = {};
  if (link->peer && link->peer->window_ == message.window) link->peer->window_ = nullptr;
  std::erase_if(link->windows, [&](const auto& one) { return one.get() == &subclassed; });
  if (link->windows.empty()) link->while_native.reset();
  return result;
}

LRESULT CALLBACK NativeControl::Procedure(HWND window, UINT id, WPARAM w, LPARAM l) {
  const Message message{window, id, w, l};
  Subclassed* const subclassed = SubclassedIn(window);
  if (!subclassed) return CallNative(message);
  if (id == WM_NCDESTROY) return Destroyed(*subclassed, message);
  const std::shared_ptr<Link> link = subclassed->link.shared_from_this();
  if (!link->peer) return CallNative(message);
  const Entry entry(*link->life);
  try {
    NativeControl& peer = *link->peer;
    if (peer.FlushesBefore(message)) peer.FlushNow();
    const ULONGLONG start = ::GetTickCount64();
    if (peer.OnlyReads() && IsPress(id)) return 0;
    const auto own = peer.OnMessage(message);
    const LRESULT result = own ? *own : CallNative(message);
    if (link->peer && link->natives == 0) link->peer->AfterMessage();
    if (id == WM_PAINT && link->peer) link->peer->paint_cost_ = static_cast<UINT>(::GetTickCount64() - start);
    return result;
  } catch (...) {
    // Handlers trap their own errors; out of memory is left, and Windows is owed an answer.
    return 0;
  }
}

std::optional<LRESULT> NativeControl::OnMessage(const Message& message) {
  switch (message.id) {
    case WM_TIMER:
      if (message.w == kFlushTimer && message.window == window_) {
        if (!dirty_) ::KillTimer(window_, kFlushTimer);
        return 0;
      }
      return std::nullopt;
    case WM_GETDLGCODE:
      // A host that offers our messages to its dialog functions leaves all keys to us.
      return DLGC_WANTALLKEYS | DLGC_WANTARROWS | DLGC_WANTTAB | DLGC_WANTCHARS;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      KeyDown(message);
      return 0;
    case WM_CHAR:
    case WM_SYSCHAR:
      Character(message);
      return 0;
    case WM_KEYUP:
    case WM_SYSKEYUP:
      return KeyUp(message);
    case WM_SETFOCUS:
      return GainedFocus(message);
    case WM_KILLFOCUS: {
      const Life alive = Alive();
      const LRESULT result = CallNative(message);
      if (alive) form_.Dismiss();
      return result;
    }
    case WM_LBUTTONDOWN:
      if (Pressed()) return std::nullopt;
      return 0;
    default:
      return std::nullopt;
  }
}

LRESULT NativeControl::KeyUp(const Message& message) {
  const Life alive = Alive();
  const LRESULT result = CallNative(message);
  if (alive && std::exchange(listed_key_, 0) != message.w)
    form_.Model().KeyUp(control_, static_cast<std::int16_t>(message.w), ShiftState());
  return result;
}

LRESULT NativeControl::GainedFocus(const Message& message) {
  const Life alive = Alive();
  const LRESULT result = CallNative(message);
  if (!alive) return result;
  if (OnlyReads()) {
    ::SetFocus(form_.Window());  // which passes it on to where it belongs
  } else {
    // Not from under a button that is being pressed: that would mark text, or drag.
    if (::GetKeyState(VK_LBUTTON) >= 0) form_.Scroll().Reveal(NativeControl::Place());
    form_.Model().FocusMoved(&control_);
  }
  return result;
}

bool NativeControl::Pressed() {
  // The focus comes first, then what the press does; a handler that keeps the focus elsewhere keeps the press
  // from having an effect.
  const Life alive = Alive();
  form_.Dismiss();
  if (!alive || !control_.CanFocus() || control_.HasFocus()) return true;
  TakeFocus();
  return alive && control_.HasFocus();
}

void NativeControl::OwnKey(const Message& message, std::int16_t) { CallNative(message); }
void NativeControl::OwnChar(const Message& message) { CallNative(message); }

void NativeControl::KeyDown(const Message& message) {
  const Life alive = Alive();
  // The key's characters are waiting already. They are taken out before any handler runs: one that opens a
  // message box or pumps events would let them in ahead of its own end.
  const UINT kind = message.id == WM_KEYDOWN ? WM_CHAR : WM_SYSCHAR;
  std::array<Message, 4> characters{};
  std::size_t count = 0;
  MSG waiting;
  while (count < characters.size() &&
         ::PeekMessageW(&waiting, message.window, kind, kind, PM_REMOVE | PM_NOYIELD | PM_QS_POSTMESSAGE)) {
    if (waiting.message == WM_QUIT) {
      // It comes whatever was asked for.
      ::PostQuitMessage(static_cast<int>(waiting.wParam));
      break;
    }
    if (NestedLoop::Standing() && Filtered(waiting)) continue;
    characters[count++] = {message.window, kind, waiting.wParam, waiting.lParam};
  }

  const auto key = static_cast<std::int16_t>(message.w);
  const std::int16_t shift = ShiftState();
  BeforeKey(message, shift);
  if (!alive) return;
  if (form_.Dropped()) {
    listed_key_ = message.w;
    if (form_.Dropped()->Key(key, shift)) return;
    if (!alive) return;
  }
  listed_key_ = 0;
  if (!alive || form_.Model().KeyDown(control_, key, shift) || !alive) return;
  if (count == 0 || !ActsOnChar(message.w)) OwnKey(message, shift);
  for (std::size_t i = 0; i < count && alive; ++i) Character(characters[i]);
}

void NativeControl::Character(const Message& message) {
  const Life alive = Alive();
  const auto character = static_cast<char16_t>(message.w);
  Form& form = form_.Model();
  if (message.id == WM_SYSCHAR) {
    if (!form.Mnemonic(character) && alive) CallNative(message);
    return;
  }
  const char16_t kept = form.KeyPress(control_, character);
  // What is typed after a handler moved the focus belongs to nobody.
  if (!alive || kept == 0 || form.ActiveControl() != &control_) return;
  OwnChar({message.window, message.id, kept, message.l});
}

}  // namespace zuvi::native
