#include "toolkit/win32/message_box.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace zuvi::native {
namespace {

constexpr UINT kLook = 60;           // milliseconds between two looks for the moment to type
constexpr DWORD kQuiet = 200;        // a reader that is sending leaves shorter gaps
constexpr UINT kSingleLetter = 150;  // after which a letter stands for itself
constexpr auto kPatience = std::chrono::seconds(20);

bool IsDown(int key) { return ::GetKeyState(key) < 0; }

/// Time since the user last touched keyboard or mouse.
DWORD Quiet() {
  LASTINPUTINFO last{sizeof last, 0};
  return ::GetLastInputInfo(&last) ? ::GetTickCount() - last.dwTime : kQuiet;
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
  Guard() : outer_(std::exchange(Current(), this)) {
    hook_ = ::SetWindowsHookExW(WH_MSGFILTER, &Filter, nullptr, ::GetCurrentThreadId());
  }
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;
  ~Guard() {
    if (hook_) ::UnhookWindowsHookEx(hook_);
    if (timer_) ::KillTimer(nullptr, timer_);
    Current() = outer_;
  }

  static bool Standing() { return Current() != nullptr; }
  std::vector<Entry> Take() {
    if (!open_.text.empty()) entries_.push_back(std::exchange(open_, {}));
    return std::move(entries_);
  }

 private:
  // The system hands a hook nothing of ours: the box that stands on this thread is found here.
  static Guard*& Current() {
    thread_local Guard* current = nullptr;
    return current;
  }

  static LRESULT CALLBACK Filter(int code, WPARAM w, LPARAM l) {
    try {
      if (code >= 0 && Current() && Current()->Takes(*reinterpret_cast<const MSG*>(l))) return 1;
    } catch (...) {
      // Out of memory: the key goes where it would have gone.
    }
    return ::CallNextHookEx(nullptr, code, w, l);
  }
  static void CALLBACK Single(HWND, UINT, UINT_PTR timer, DWORD) {
    ::KillTimer(nullptr, timer);
    if (Current() && Current()->timer_ == timer) Current()->Answer();
  }

  bool Takes(const MSG& message) {
    if (message.message == WM_KEYDOWN) return TakesKey(message);
    if (message.message != WM_CHAR) return false;
    const auto character = static_cast<wchar_t>(message.wParam);
    if (character == L'\b' && !open_.text.empty()) open_.text.pop_back();
    if (character < L' ' || character == 0x7F) return true;
    open_.text += character;
    if (open_.text.size() == 1 && entries_.empty()) {
      box_ = ::GetAncestor(message.hwnd, GA_ROOT);
      timer_ = ::SetTimer(nullptr, 0, kSingleLetter, &Single);
    }
    return true;
  }
  bool TakesKey(const MSG& message) {
    constexpr std::array<WPARAM, 4> kEnds{VK_RETURN, VK_TAB, VK_DOWN, VK_UP};
    if (std::ranges::find(kEnds, message.wParam) != kEnds.end()) {
      if (open_.text.empty()) return false;
      open_.end = message.wParam;
      entries_.push_back(std::exchange(open_, {}));
      ::MessageBeep(MB_ICONWARNING);
      return true;
    }
    const bool shortcut = IsDown(VK_CONTROL) && !IsDown(VK_MENU);
    if (shortcut || message.wParam == VK_ESCAPE || (message.wParam == VK_SPACE && open_.text.empty()))
      return false;
    // Whether it is a character is the keyboard's to say; then that comes here as well.
    ::TranslateMessage(&message);
    return message.wParam == VK_BACK || message.wParam == VK_SPACE || message.wParam >= '0';
  }
  /// A letter alone presses its button.
  void Answer() {
    timer_ = 0;
    if (open_.text.size() != 1 || !entries_.empty()) return;
    Button button{open_.text[0]};
    ::EnumChildWindows(box_, &HasLetter, reinterpret_cast<LPARAM>(&button));
    if (!button.found) return;
    open_.text.clear();
    ::PostMessageW(button.found, BM_CLICK, 0, 0);
  }

  Guard* outer_;
  HHOOK hook_ = nullptr;
  HWND box_ = nullptr;
  UINT_PTR timer_ = 0;
  Entry open_;
  std::vector<Entry> entries_;
};

int MessageBoxes::Show(const std::wstring& text, const wchar_t* title, UINT style) noexcept {
  const HWND owner = ::GetActiveWindow();
  std::vector<Entry> entries;
  int answer = 0;
  {
    Guard guard;
    ::MessageBeep(style & MB_ICONMASK);
    answer = ::MessageBoxW(owner, text.c_str(), title, style);
    try {
      entries = guard.Take();
    } catch (...) {
      // Out of memory.
    }
  }
  try {
    if (!entries.empty()) Keep(std::move(entries), owner);
  } catch (...) {
    ::MessageBeep(MB_ICONERROR);
  }
  return answer;
}

void MessageBoxes::Keep(std::vector<Entry> entries, HWND window) {
  // What still waits was read before these.
  for (Entry& entry : entries) waiting_.push_back(std::move(entry));
  destination_ = window;
  since_ = std::chrono::steady_clock::now();
  if (!clock_.Start(kLook)) GiveUp();
}

void MessageBoxes::Deliver() {
  if (Guard::Standing()) return;
  const HWND focus = ::GetFocus();
  const bool there =
      focus && ::GetAncestor(focus, GA_ROOT) == destination_ && ::IsWindowEnabled(destination_);
  if (there && Quiet() >= kQuiet) return TypeNext(focus);
  if (!::IsWindowVisible(destination_) || std::chrono::steady_clock::now() - since_ > kPatience) GiveUp();
}

void MessageBoxes::TypeNext(HWND focus) {
  const Entry entry = std::move(waiting_.front());
  waiting_.pop_front();
  if (waiting_.empty()) clock_.Stop();
  since_ = std::chrono::steady_clock::now();
  for (const wchar_t character : entry.text) ::SendMessageW(focus, WM_CHAR, character, 1);
  // Posted: what it sets off may open a box of its own, and belongs to the loop.
  if (entry.end != 0) ::PostMessageW(focus, WM_KEYDOWN, entry.end, 1);
}

void MessageBoxes::GiveUp() {
  std::wstring text = L"Mientras había un mensaje en pantalla se leyó lo siguiente, que no se usó:\r\n";
  for (const Entry& entry : std::exchange(waiting_, {})) text += L"\r\n" + entry.text;
  clock_.Stop();
  Show(text, L"Zuvi", MB_OK | MB_ICONWARNING);
}

}  // namespace zuvi::native
