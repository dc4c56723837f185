// A date of which digits were typed that the native control has not told of: whatever the user does next
// finds it in the model.
#include <gtest/gtest.h>

#include "tests/toolkit_win32/pantalla.h"

namespace zuvi::pruebas {
namespace {

/// Keeps what the control tells of a new date from the window, as long as it lives.
class HeldBack {
 public:
  explicit HeldBack(HWND form) : form_(form) {
    before_ = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(form, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  }
  HeldBack(const HeldBack&) = delete;
  HeldBack& operator=(const HeldBack&) = delete;
  ~HeldBack() {
    if (::IsWindow(form_)) ::SetWindowLongPtrW(form_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
  }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM w, LPARAM l) {
    if (id == WM_NOTIFY && reinterpret_cast<const NMHDR*>(l)->code == static_cast<UINT>(DTN_DATETIMECHANGE))
      return 0;
    return ::CallWindowProcW(before_, window, id, w, l);
  }
  static inline WNDPROC before_ = nullptr;
  HWND form_;
};

/// Something a user does with a half typed date, and the event in which a window would store it.
struct Command {
  const char* event;
  void (*act)(Pantalla& screen, Muestra& form);
};
const Command kCommands[] = {{"boton.Click", [](Pantalla& s, Muestra&) { s.Press('H', VK_MENU); }},
                             {"boton.Click", [](Pantalla& s, Muestra&) { s.Press(VK_RETURN); }},
                             {"cancelar.Click", [](Pantalla& s, Muestra&) { s.Press(VK_ESCAPE); }},
                             {"KeyDown", [](Pantalla& s, Muestra&) { s.Press(VK_F5); }},
                             {"KeyDown", [](Pantalla& s, Muestra&) { s.Press('G', VK_CONTROL); }},
                             {"fecha.LostFocus", [](Pantalla& s, Muestra&) { s.Press(VK_TAB); }},
                             {"boton.Click", [](Pantalla& s, Muestra& f) { s.Click(*f.boton, 5, 5); }},
                             {"etiqueta.Click", [](Pantalla& s, Muestra& f) { s.Click(*f.etiqueta, 5, 5); }},
                             {"boton.Click", [](Pantalla&, Muestra& f) { f.boton->Click(); }},
                             {"QueryUnload",
                              [](Pantalla& s, Muestra& f) {
                                ::PostMessageW(s.HandleOf(f), WM_CLOSE, 0, 0);
                                s.Settle();
                              }},
                             {"read",
                              [](Pantalla& s, Muestra& f) {
                                std::ignore = f.Call("fecha");
                                s.diario.Anota("read");
                              }},
                             {"b.GotFocus", [](Pantalla&, Muestra& f) { f.b->SetFocus(); }}};

TEST(TypedDates, AreInTheModelBeforeAnyCommand) {
  for (const bool told : {true, false}) {
    for (std::size_t i = 0; i < std::size(kCommands); ++i) {
      const auto& [event, act] = kCommands[i];
      SCOPED_TRACE(testing::Message() << i << " " << event << (told ? "" : " held back"));
      Pantalla screen;
      const auto form = screen.Open();
      form->cancela = 1;
      form->fecha->SetFocus();
      screen.Settle();
      const std::unique_ptr<HeldBack> held =
          told ? nullptr : std::make_unique<HeldBack>(screen.HandleOf(*form));
      const Fecha before = form->fecha->Value();
      screen.Type("3");  // the third of January or the end of March, as the system's dates go
      EXPECT_EQ(form->fecha->Value(), before);  // more digits may follow
      screen.Take();
      Fecha stored;
      screen.diario.al_suceder = [&, wanted = std::string(event)](const std::string& heard) {
        if (heard == wanted) stored = form->fecha->Value();
      };
      act(screen, *form);
      screen.Settle();
      const std::string day = stored.Texto().substr(0, 10);
      EXPECT_TRUE(day == "2024-01-03" || day == "2024-03-31") << day;
      EXPECT_EQ(stored, form->fecha->Value());
      EXPECT_EQ(std::ranges::count(screen.Take(), "fecha.Change"), 1);
      form->cancela = 0;
      form->Unload();
    }
  }
}

TEST(TypedDates, KeysThatGoOnTypingAreNotCommands) {
  Pantalla screen;
  const auto form = screen.Open();
  form->fecha->SetFocus();
  screen.Type("1");
  screen.Type("2");
  screen.Press(VK_RIGHT);
  screen.Type("1");
  screen.Type("1");
  screen.Press(VK_F5);
  const std::string day = form->fecha->Value().Texto().substr(5, 5);
  EXPECT_TRUE(day == "12-11" || day == "11-12") << day;
}

}  // namespace
}  // namespace zuvi::pruebas
