// A screen for tests: input as a user gives it, through the system's queue, and a message loop of either of
// the two kinds that hosts have.
#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "tests/toolkit/ventana.h"
#include "toolkit/win32/win32_desktop.h"
#include "toolkit/win32/windows_ui.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace zuvi::pruebas {

/// The window with what only matters on a screen besides; with keys of its own for Enter and Escape.
class Muestra final : public Ventana {
 public:
  Muestra(Desktop& desktop, Diario& diario) : Ventana(desktop, diario) {
    DesignClientSize(Dip(800), Dip(520));
    a->SetMaxLength(10);
    b->SetRightAligned(true);
    bloqueada = Pon<TextBox>("bloqueada");
    bloqueada->SetLocked(true);
    bloqueada->SetTabStop(false);
    bloqueada->SetText("000123");
    turno = Pon<ComboBox>("turno");
    turno->SetKind(ComboBox::Style::DropDownList);
    for (const char* texto : {"Matutino", "Vespertino", "Nocturno"}) turno->AddItem(texto);
    notas = Pon<RichTextBox>("notas");
    for (auto* const caja : std::initializer_list<TextBox*>{b.get(), notas.get()})
      caja->OnChange = [d = &diario, nombre = caja->Name()] { d->Anota(nombre + ".Change"); };
    barra = Add<ProgressBar>("barra");
    barra->SetValue(40);
    pagina = Add<WebBrowser>("pagina");
    cancelar = Pon<Button>("cancelar");
    cancelar->SetCaption("&Cancelar");
    std::int32_t arriba = 370;
    for (auto* const control :
         std::initializer_list<zuvi::Control*>{bloqueada.get(), turno.get(), barra.get(), cancelar.get()}) {
      control->Design({Dip(620), Dip(arriba), Dip(90), Dip(24)}, anchor::kRight | anchor::kBottom);
      arriba += 30;
    }
    notas->Design({Dip(420), Dip(372), Dip(180), Dip(60)});
    pagina->Design({0, Dip(372), Dip(360), Dip(60)});
    rejilla->SetColWidth(3, 0);
    multi->SetBox(b);
    multi->SetConnection(std::make_shared<Conexion>(diario, 40));
    multi->SetRowSource("SELECT articulo, descrip FROM prods");
    SetDefaultButton(boton.get());
    SetCancelButton(cancelar.get());
    Add<AutoResizer>("ajuste");
  }

  std::shared_ptr<TextBox> bloqueada;
  std::shared_ptr<ComboBox> turno;
  std::shared_ptr<RichTextBox> notas;
  std::shared_ptr<ProgressBar> barra;
  std::shared_ptr<WebBrowser> pagina;
  std::shared_ptr<Button> cancelar;
};

enum class Loop { Plain, Dialog };

class Pantalla {
 public:
  explicit Pantalla(Loop loop = Loop::Plain) : loop_(loop) {}

  Diario diario;
  Win32Desktop desktop{::GetModuleHandleW(nullptr)};

  /// A window that is shown and has the keyboard; what was heard until then is forgotten.
  std::shared_ptr<Muestra> Open() {
    auto form = std::make_shared<Muestra>(desktop, diario);
    form->Show();
    Settle();
    diario.sucesos.clear();
    return form;
  }
  Sucesos Take() { return std::exchange(diario.sucesos, {}); }
  /// Whether it was heard since the last look.
  bool Heard(const std::string& event) {
    const Sucesos heard = Take();
    return std::ranges::find(heard, event) != heard.end();
  }

  /// Runs the host's loop until nothing has come for `quiet` milliseconds.
  void Settle(int quiet = 40) const {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(5);
    auto last = Clock::now();
    while (Clock::now() < end && Clock::now() - last < std::chrono::milliseconds(quiet)) {
      MSG message;
      if (!::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        continue;
      }
      const bool counts = message.message != WM_TIMER && message.message != WM_MOUSEMOVE;
      if (loop_ == Loop::Plain || !::IsDialogMessageW(::GetActiveWindow(), &message)) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
      }
      if (counts) last = Clock::now();
    }
  }

  /// A key that nobody waits for.
  static void Stroke(WORD key) {
    Send(key, false);
    Send(key, true);
  }
  /// A key with the given modifiers (VK_SHIFT, VK_CONTROL, VK_MENU; 0 for none).
  void Press(int key, WORD modifier = 0) const {
    if (modifier) Send(modifier, false);
    Stroke(static_cast<WORD>(key));
    if (modifier) Send(modifier, true);
    Settle();
  }
  void PressIn(zuvi::Control& control, int key) const {
    control.SetFocus();
    Press(key);
  }
  /// Lower case letters, digits and blanks.
  void Type(std::string_view text) const {
    for (const char c : text) Stroke(static_cast<WORD>(c >= 'a' && c <= 'z' ? c - 32 : c));
    Settle();
  }
  /// A press of the left button on a control, in pixels of its inside.
  void Click(const zuvi::Control& control, int x, int y) const {
    ::PostMessageW(HandleOf(control), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    ::PostMessageW(HandleOf(control), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    Settle();
  }
  template <class Model>
  static HWND HandleOf(const Model& model) {
    return model.NativeSide() ? reinterpret_cast<HWND>(model.NativeSide()->Handle()) : nullptr;
  }
  static LRESULT Ask(const zuvi::Control& control, UINT message, WPARAM w = 0, LPARAM l = 0) {
    return ::SendMessageW(HandleOf(control), message, w, l);
  }
  static std::string TextOf(const zuvi::Control& control) {
    return Narrow(native::TextOf(HandleOf(control)));
  }
  static RECT PlaceOf(HWND window) {
    RECT place;
    ::GetWindowRect(window, &place);
    return place;
  }
  static RECT PlaceOf(const zuvi::Control& control) { return PlaceOf(HandleOf(control)); }
  /// The window comes to a screen of another scale, in that place or where it is.
  void Rescale(const Form& form, int dpi, const RECT* place = nullptr) const {
    const RECT here = PlaceOf(HandleOf(form));
    ::SendMessageW(HandleOf(form), WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                   reinterpret_cast<LPARAM>(place ? place : &here));
    Settle();
  }
  struct Ink {
    LONG left, right;
    int darkest;
  };
  /// What is written in a part of a control.
  static Ink InkOf(const zuvi::Control& control, const RECT& part) {
    const HWND window = HandleOf(control);
    ::UpdateWindow(window);
    const HDC dc = ::GetDC(window);
    Ink ink{part.right, part.left, 255};
    for (LONG x = part.left; x < part.right; ++x)
      for (LONG y = part.top; y < part.bottom; ++y) {
        const int shade = GetGValue(::GetPixel(dc, x, y));
        ink.darkest = std::min(ink.darkest, shade);
        if (shade < 100) ink.left = std::min(ink.left, x), ink.right = x;
      }
    ::ReleaseDC(window, dc);
    return ink;
  }
  /// The code that the program is to end with, after all other messages; -1 when it is not.
  static int EndOfProgram() {
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
      if (message.message == WM_QUIT) return static_cast<int>(message.wParam);
    return -1;
  }
  /// Native windows of ours that are left.
  static int Windows() {
    int found = 0;
    ::EnumThreadWindows(::GetCurrentThreadId(), &CountOurs, reinterpret_cast<LPARAM>(&found));
    return found;
  }

 private:
  static BOOL CALLBACK CountOurs(HWND window, LPARAM found) {
    wchar_t name[64];
    ::GetClassNameW(window, name, 64);
    *reinterpret_cast<int*>(found) += std::wstring_view(name).starts_with(L"Zuvi");
    return TRUE;
  }
  static void Send(WORD key, bool up) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    ::SendInput(1, &input, sizeof input);
  }

  Loop loop_;
};

/// An open window on a screen.
class EnPantalla : public testing::Test {
 protected:
  Pantalla screen;
  std::shared_ptr<Muestra> form = screen.Open();
};

}  // namespace zuvi::pruebas
