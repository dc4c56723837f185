#include "toolkit/win32/message_box.h"

#include <algorithm>
#include <array>
#include <utility>

#include "toolkit/win32/message_loop.h"
#include "win32/image.h"

namespace zuvi::native {
namespace {

constexpr UINT kLook = 60;           // milliseconds between two looks for the moment to type
constexpr int kPatience = 333;       // looks: twenty seconds
constexpr UINT kSingleLetter = 150;  // after which a letter stands for itself

void KillThreadTimer(UINT_PTR timer) { ::KillTimer(nullptr, timer); }
using ThreadTimer = UniqueHandle<UINT_PTR, &KillThreadTimer>;

bool IsDown(int key) { return ::GetKeyState(key) < 0; }

/// Whether a key ends what was typed before it.
bool EndsEntry(WPARAM key) {
  constexpr std::array<WPARAM, 4> kEnds{VK_RETURN, VK_TAB, VK_DOWN, VK_UP};
  return std::ranges::find(kEnds, key) != kEnds.end();
}
/// Whether a key can be the beginning of a text.
bool Types(WPARAM key) { return key == VK_SPACE || key >= '0'; }

/// What a hook of this thread is to reach: the system hands it nothing of ours.
template <class T>
T*& OfThisThread() {
  thread_local T* current = nullptr;
  return current;
}

struct Button {
  wchar_t letter;
  HWND found = nullptr;
};

BOOL CALLBACK HasLetter(HWND child, LPARAM param) {
  auto& wanted = *reinterpret_cast<Button*>(param);
  const std::wstring text = TextOf(child);
  const std::size_t mark = text.find(L'&');
  const auto upper = [](wchar_t c) {
    return reinterpret_cast<ULONG_PTR>(::CharUpperW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(c))));
  };
  if (mark == std::wstring::npos || mark + 1 == text.size() || upper(text[mark + 1]) != upper(wanted.letter))
    return TRUE;
  wanted.found = child;
  return FALSE;
}

}  // namespace

/// Hears the keys of one box before the box does.
class MessageBoxes::Guard {
 public:
  explicit Guard(HWND owner) : owner_(owner), outer_(std::exchange(OfThisThread<Guard>(), this)) {
    PinImage();
    hook_ = UniqueHook(::SetWindowsHookExW(WH_MSGFILTER, &Filter, nullptr, ::GetCurrentThreadId()));
  }
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;
  ~Guard() { OfThisThread<Guard>() = outer_; }

  static bool Standing() { return OfThisThread<Guard>() != nullptr; }
  std::vector<Entry> Take() {
    if (!open_.text.empty()) entries_.push_back(std::exchange(open_, {}));
    for (Entry& entry : entries_) entry.window = owner_;
    return std::move(entries_);
  }

 private:
  static LRESULT CALLBACK Filter(int code, WPARAM w, LPARAM l) {
    try {
      Guard* const guard = OfThisThread<Guard>();
      const MSG& message = *reinterpret_cast<const MSG*>(l);
      if ((code == MSGF_DIALOGBOX || code == MSGF_MESSAGEBOX) && guard) {
        // The box would drop what has no window.
        if (!message.hwnd) return ::CallNextHookEx(nullptr, code, w, l) || guard->loop_.Keep(message);
        if (guard->Takes(message)) return 1;
      }
    } catch (...) {
      // Out of memory: the key goes where it would have gone.
    }
    return ::CallNextHookEx(nullptr, code, w, l);
  }
  static void CALLBACK Single(HWND, UINT, UINT_PTR timer, DWORD) {
    Guard* const guard = OfThisThread<Guard>();
    if (guard && guard->timer_.get() == timer)
      guard->Answer();
    else
      ::KillTimer(nullptr, timer);  // of an outer box
  }

  /// The windows of the thread that the box does not block are nobody's business here.
  bool IsInBox(HWND window) {
    const HWND root = ::GetAncestor(window, GA_ROOT);
    if (root == box_) return root != nullptr;
    wchar_t name[8] = L"";
    ::GetClassNameW(root, name, static_cast<int>(std::size(name)));
    if (std::wstring_view(name) != L"#32770" || ::GetWindow(root, GW_OWNER) != owner_) return false;
    box_ = root;
    return true;
  }
  bool Takes(const MSG& message) {
    if ((message.message != WM_KEYDOWN && message.message != WM_CHAR) || !IsInBox(message.hwnd)) return false;
    if (message.message == WM_KEYDOWN) return TakesKey(message);
    const auto character = static_cast<wchar_t>(message.wParam);
    if (character == L'\b' && !open_.text.empty()) open_.text.pop_back();
    if (character < L' ' || character == 0x7F) return true;
    open_.text += character;
    if (open_.text.size() == 1 && entries_.empty())
      timer_ = ThreadTimer(::SetTimer(nullptr, 0, kSingleLetter, &Single));
    return true;
  }
  bool TakesKey(const MSG& message) {
    if (EndsEntry(message.wParam)) {
      if (open_.text.empty()) return false;
      open_.end = message.wParam;
      entries_.push_back(std::exchange(open_, {}));
      ::MessageBeep(MB_ICONWARNING);
      return true;
    }
    // Who leaves by Escape gives up what he was in the middle of.
    if (message.wParam == VK_ESCAPE) open_.text.clear();
    const bool shortcut = IsDown(VK_CONTROL) && !IsDown(VK_MENU);
    if (shortcut || message.wParam == VK_ESCAPE || (message.wParam == VK_SPACE && open_.text.empty()))
      return false;
    // Whether it is a character is the keyboard's to say; then that comes here as well.
    ::TranslateMessage(&message);
    return message.wParam == VK_BACK || Types(message.wParam);
  }
  /// A letter alone presses its button.
  void Answer() {
    timer_ = {};
    if (open_.text.size() != 1 || !entries_.empty()) return;
    Button button{open_.text[0]};
    ::EnumChildWindows(box_, &HasLetter, reinterpret_cast<LPARAM>(&button));
    if (!button.found) return;
    open_.text.clear();
    ::PostMessageW(button.found, BM_CLICK, 0, 0);
  }

  NestedLoop loop_;
  HWND owner_;
  Guard* outer_;
  UniqueHook hook_;
  HWND box_ = nullptr;
  ThreadTimer timer_;
  Entry open_;
  std::vector<Entry> entries_;
};

MessageBoxes::~MessageBoxes() { Stop(); }

int MessageBoxes::Show(const std::wstring& text, const wchar_t* title, UINT style) noexcept {
  const HWND owner = ::GetActiveWindow();
  std::vector<Entry> entries;
  int answer = 0;
  {
    Guard guard(owner);
    ::MessageBeep(style & MB_ICONMASK);
    answer = ::MessageBoxW(owner, text.c_str(), title, style);
    try {
      entries = guard.Take();
    } catch (...) {
      // Out of memory.
    }
  }
  try {
    if (!entries.empty()) Keep(std::move(entries));
  } catch (...) {
    ::MessageBeep(MB_ICONERROR);
  }
  return answer;
}

void MessageBoxes::Keep(std::vector<Entry> entries) {
  // What still waits was read before these.
  for (Entry& entry : entries) waiting_.push_back(std::move(entry));
  in_entry_ = false;
  elsewhere_ = 0;
  if (!Start()) GiveUp();
}

bool MessageBoxes::Start() {
  OfThisThread<MessageBoxes>() = this;
  if (!hook_)
    hook_ = UniqueHook(::SetWindowsHookExW(WH_KEYBOARD, &KeyboardHook, nullptr, ::GetCurrentThreadId()));
  return clock_.Start(kLook);
}

LRESULT CALLBACK MessageBoxes::KeyboardHook(int code, WPARAM key, LPARAM flags) {
  MessageBoxes* const self = OfThisThread<MessageBoxes>();
  const bool pressed = (static_cast<DWORD>(flags) & 0x80000000u) == 0;
  if (code == HC_ACTION && self && pressed && !Guard::Standing()) {
    if (EndsEntry(key) || key == VK_ESCAPE)
      self->in_entry_ = false;
    else if (Types(key))
      self->in_entry_ = true;
  }
  return ::CallNextHookEx(nullptr, code, key, flags);
}

void MessageBoxes::Deliver() {
  const HWND window = waiting_.front().window;
  if (!::IsWindowVisible(window)) return GiveUp();
  if (Guard::Standing() || !::IsWindowEnabled(window)) {
    elsewhere_ = 0;
    return;
  }
  const HWND focus = ::GetFocus();
  if (!focus || ::GetAncestor(focus, GA_ROOT) != window) {
    if (++elsewhere_ > kPatience) GiveUp();
    return;
  }
  elsewhere_ = 0;
  if (in_entry_) return;
  Entry entry = std::move(waiting_.front());
  waiting_.pop_front();
  if (waiting_.empty()) Stop();
  Type(std::move(entry));
}

void MessageBoxes::Type(Entry entry) {
  // The first character may open an editor that takes the keyboard.
  const auto there = [&entry] {
    const HWND focus = ::GetFocus();
    return !Guard::Standing() && focus && ::GetAncestor(focus, GA_ROOT) == entry.window ? focus : nullptr;
  };
  while (!entry.text.empty()) {
    const HWND focus = there();
    if (!focus) break;
    const wchar_t character = entry.text.front();
    entry.text.erase(0, 1);
    ::SendMessageW(focus, WM_CHAR, character, 1);
  }
  const HWND focus = there();
  if (entry.text.empty() && entry.end == 0) return;
  if (entry.text.empty() && focus) {
    // Posted: what it sets off may open a box of its own, and belongs to the loop.
    ::PostMessageW(focus, WM_KEYDOWN, entry.end, 1);
    return;
  }
  waiting_.push_front(std::move(entry));
  Start();
}

void MessageBoxes::GiveUp() {
  std::wstring text = L"Mientras había un mensaje en pantalla se leyó lo siguiente, que no se usó:\r\n";
  for (const Entry& entry : std::exchange(waiting_, {})) text += L"\r\n" + entry.text;
  Stop();
  Show(text, L"Zuvi", MB_OK | MB_ICONWARNING);
}

void MessageBoxes::Stop() {
  clock_.Stop();
  hook_ = {};
  if (OfThisThread<MessageBoxes>() == this) OfThisThread<MessageBoxes>() = nullptr;
}

}  // namespace zuvi::native
