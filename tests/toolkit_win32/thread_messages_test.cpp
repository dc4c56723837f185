// Messages that a host posts to its thread while a loop of ours serves it: none is lost, and their order
// stays.
#include <gtest/gtest.h>

#include <vector>

#include "tests/toolkit_win32/pantalla.h"
#include "toolkit/win32/message_loop.h"

namespace zuvi::pruebas {
namespace {

constexpr UINT kOwn = WM_APP + 100;
constexpr WPARAM kCount = 12;

/// The host: posts so many messages to its thread, one with each tick of a timer that has no window either,
/// and may have a filter that takes them.
class Host {
 public:
  explicit Host(bool filters) {
    current_ = this;
    if (filters) hook_ = ::SetWindowsHookExW(WH_MSGFILTER, &Filter, nullptr, ::GetCurrentThreadId());
    Post();
    timer_ = ::SetTimer(nullptr, 0, 10, &Tick);
  }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host() {
    ::KillTimer(nullptr, timer_);
    if (hook_) ::UnhookWindowsHookEx(hook_);
    current_ = nullptr;
  }
  bool Done() const { return posted_ == kCount; }
  std::vector<WPARAM> filtered;
  /// What its own loop finds.
  static std::vector<WPARAM> Waiting() {
    std::vector<WPARAM> found;
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (!message.hwnd && message.message == kOwn) found.push_back(message.wParam);
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
    return found;
  }
  static std::vector<WPARAM> All() {
    std::vector<WPARAM> all(kCount);
    for (WPARAM i = 0; i < kCount; ++i) all[i] = i;
    return all;
  }

 private:
  void Post() {
    if (!Done()) ::PostThreadMessageW(::GetCurrentThreadId(), kOwn, posted_++, 0);
  }
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) { current_->Post(); }
  static LRESULT CALLBACK Filter(int code, WPARAM w, LPARAM l) {
    const auto& message = *reinterpret_cast<const MSG*>(l);
    if (code < 0 || message.hwnd || message.message != kOwn) return ::CallNextHookEx(nullptr, code, w, l);
    current_->filtered.push_back(message.wParam);
    return 1;
  }

  static inline Host* current_ = nullptr;
  HHOOK hook_ = nullptr;
  UINT_PTR timer_ = 0;
  WPARAM posted_ = 0;
};

BOOL CALLBACK AnswerBox(HWND window, LPARAM) {
  wchar_t name[16] = L"";
  ::GetClassNameW(window, name, 16);
  if (std::wstring_view(name) == L"#32770") ::PostMessageW(window, WM_COMMAND, IDOK, 0);
  return TRUE;
}

/// Serves the thread in one of our loops until the host has posted all.
struct Serving {
  const char* name;
  void (*run)(Pantalla& screen, Muestra& form, Host& host);
};
const Serving kLoops[] = {{"pump",
                           [](Pantalla& s, Muestra&, Host& host) {
                             while (!host.Done()) s.desktop.PumpEvents();
                           }},
                          {"modal",
                           [](Pantalla& s, Muestra& form, Host& host) {
                             const auto dialog = std::make_shared<Muestra>(s.desktop, s.diario);
                             dialog->reloj->OnTimer = [&, window = dialog.get()] {
                               s.desktop.PumpEvents();
                               if (host.Done()) window->Unload();
                             };
                             dialog->reloj->SetInterval(15);
                             dialog->ShowModal(&form);
                           }},
                          {"box", [](Pantalla& s, Muestra& form, Host& host) {
                             form.reloj->OnTimer = [&] {
                               s.desktop.PumpEvents();
                               if (host.Done()) ::EnumThreadWindows(::GetCurrentThreadId(), &AnswerBox, 0);
                             };
                             form.reloj->SetInterval(15);
                             s.desktop.Box("¿Seguir?", L"Zuvi", MB_OK);
                             form.reloj->SetInterval(0);
                           }}};

TEST(MensajesDelHilo, ReachTheHostWhileOurLoopsServeIt) {
  for (const auto& [name, run] : kLoops) {
    for (const bool filters : {false, true}) {
      SCOPED_TRACE(testing::Message() << name << (filters ? ", filtered" : ""));
      Pantalla screen;
      const auto form = screen.Open();
      Host host(filters);
      run(screen, *form, host);
      EXPECT_EQ(Host::Waiting(), filters ? std::vector<WPARAM>{} : Host::All());
      EXPECT_EQ(host.filtered, filters ? Host::All() : std::vector<WPARAM>{});
      form->Unload();
    }
  }
}

TEST(MensajesDelHilo, AClockThatWentOffIsLeftToTheHost) {
  const std::vector<UINT> waiting{kOwn, WM_COMMAND, WM_TIMER, kOwn + 1};
  {
    native::NestedLoop loop;
    MSG first{};
    first.message = waiting.front();
    loop.Serve(first);
    // They come while the loop is ending.
    for (std::size_t i = 1; i < waiting.size(); ++i)
      ::PostThreadMessageW(::GetCurrentThreadId(), waiting[i], 0, 0);
  }
  std::vector<UINT> found;
  for (MSG message; ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) found.push_back(message.message);
  EXPECT_EQ(found, waiting);
}

using FinDelPrograma = EnPantalla;
TEST_F(FinDelPrograma, TheEndOfTheProgramComesAfterThem) {
  ::PostThreadMessageW(::GetCurrentThreadId(), kOwn, 1, 0);
  ::PostQuitMessage(7);
  screen.desktop.PumpEvents();
  // Characters of a key are looked for in the queue, where the end is found whatever one looks for.
  ::SendMessageW(screen.HandleOf(*form->a), WM_KEYDOWN, 'A', 1);
  MSG message;
  ASSERT_TRUE(::PeekMessageW(&message, nullptr, kOwn, kOwn, PM_REMOVE));
  EXPECT_EQ(message.message, kOwn);
  EXPECT_EQ(screen.EndOfProgram(), 7);
}

}  // namespace
}  // namespace zuvi::pruebas
