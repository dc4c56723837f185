// A window that is closed by a handler of whatever event: nothing of it is used afterwards, and nothing is
// left. Modal ones give back what they kept from input.
#include <gtest/gtest.h>

#include "tests/toolkit_win32/pantalla.h"

namespace zuvi::pruebas {
namespace {

/// How a user or another program gets at an event; without a name it closes the window by itself.
struct Closing {
  const char* event;
  void (*act)(Pantalla& screen, Muestra& form);
};

const Closing kClosings[] = {
    {"KeyDown", [](Pantalla& s, Muestra&) { s.Type("abc"); }},
    {"a.Change", [](Pantalla& s, Muestra&) { s.Type("a"); }},
    {"a.LostFocus", [](Pantalla& s, Muestra& f) { s.Click(*f.b, 5, 5); }},
    {"b.GotFocus", [](Pantalla& s, Muestra&) { s.Press(VK_TAB); }},
    {"notas.KeyPress", [](Pantalla& s, Muestra& f) { s.PressIn(*f.notas, VK_RETURN); }},
    {"cancelar.Click", [](Pantalla& s, Muestra& f) { s.Click(*f.cancelar, 5, 5); }},
    {"cancelar.Click", [](Pantalla& s, Muestra&) { s.Press('C', VK_MENU); }},
    {"casilla.Click", [](Pantalla& s, Muestra& f) { s.Click(*f.casilla, 5, 5); }},
    {"turno.Click", [](Pantalla& s, Muestra& f) { s.PressIn(*f.turno, VK_DOWN); }},
    {"b.Change",
     [](Pantalla& s, Muestra& f) {
       s.Click(*f.multi, 5, 5);
       s.Press(VK_DOWN);
       s.Press(VK_RETURN);
     }},
    {"rejilla.RowColChange", [](Pantalla& s, Muestra& f) { s.Click(*f.rejilla, 100, 22 * 3 + 5); }},
    {"rejilla.Scroll", [](Pantalla& s, Muestra& f) { s.Ask(*f.rejilla, WM_VSCROLL, SB_PAGEDOWN); }},
    {"lista.ItemClick", [](Pantalla& s, Muestra& f) { s.Click(*f.lista, 20, 40); }},
    {"fecha.Change", [](Pantalla& s, Muestra& f) { s.PressIn(*f.fecha, VK_UP); }},
    {"mes.DateClick", [](Pantalla& s, Muestra& f) { s.Click(*f.mes, 90, 80); }},
    {"reloj.Timer",
     [](Pantalla& s, Muestra& f) {
       f.reloj->SetInterval(20);
       s.Settle(200);
     }},
    {"",
     [](Pantalla& s, Muestra& f) {
       // The pump lets the user close the window that is being filled.
       const auto keep = f.Keep();
       for (int i = 0; i < 50 && !f.Closed(); ++i) {
         f.lista->Items().Add("n" + std::to_string(i), "nueva");
         if (i == 20) ::PostMessageW(Pantalla::HandleOf(f), WM_CLOSE, 0, 0);
         s.desktop.PumpEvents();
       }
       EXPECT_TRUE(f.Closed());
     }},
    {"", [](Pantalla& s, Muestra&) { s.Press(VK_F4, VK_MENU); }},
    {"", [](Pantalla&, Muestra& f) { ::DestroyWindow(Pantalla::HandleOf(f)); }}};

TEST(Cierres, FromAHandler) {
  for (const auto& [event, act] : kClosings) {
    SCOPED_TRACE(event);
    Pantalla screen;
    std::weak_ptr<Muestra> gone;
    Muestra& form = [&]() -> Muestra& {
      const auto opened = screen.Open();
      gone = opened;
      return *opened;  // it lives in its desktop alone
    }();
    screen.diario.al_suceder = [&, wanted = std::string(event)](const std::string& heard) {
      if (heard != wanted) return;
      screen.diario.al_suceder = nullptr;
      EXPECT_TRUE(form.Unload());
    };
    act(screen, form);
    screen.Settle(150);
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(Pantalla::Windows(), 0);
  }
}

using Modales = EnPantalla;
TEST_F(Modales, BlocksItsOwnerAndGivesTheFocusBack) {
  form->b->SetFocus();
  const auto make = [&](const std::function<void(Muestra&)>& on_tick) {
    const auto dialog = std::make_shared<Muestra>(screen.desktop, screen.diario);
    dialog->reloj->OnTimer = [&dialog = *dialog, on_tick] { on_tick(dialog); };
    dialog->reloj->SetInterval(60);
    return dialog;
  };
  const auto ends = [&](Muestra& dialog) {
    EXPECT_FALSE(form->Enabled() || ::IsWindowEnabled(screen.HandleOf(*form)));
    EXPECT_EQ(::GetActiveWindow(), screen.HandleOf(dialog));
    EXPECT_EQ(::GetFocus(), screen.HandleOf(*dialog.ActiveControl()));
    ::PostMessageW(screen.HandleOf(dialog), WM_CLOSE, 0, 0);
  };
  for (const bool named : {true, false}) {
    const auto dialog = make(ends);
    screen.diario.al_suceder = [&](const std::string& event) {
      if (event != "Load" || !named) return;
      // It comes onto the screen before it is loaded, and takes no input yet.
      dialog->ShowWhileLoading();
      EXPECT_TRUE(::IsWindowVisible(screen.HandleOf(*dialog)));
      EXPECT_FALSE(::IsWindowEnabled(screen.HandleOf(*dialog)) || ::IsWindowEnabled(screen.HandleOf(*form)));
    };
    dialog->ShowModal(named ? form.get() : nullptr);
    screen.diario.al_suceder = nullptr;
    EXPECT_TRUE(dialog->Closed() && form->Enabled());
    screen.Settle();
    EXPECT_EQ(::GetFocus(), screen.HandleOf(*form->b));
  }
  // One that ends while a later one keeps it from returning has its opener go on at once.
  const auto other = screen.Open();
  const auto early = make([](Muestra&) {}), late = make([&](Muestra&dialog) {
                                              if (!early->Closed()) {
                                                ::PostMessageW(screen.HandleOf(*early), WM_CLOSE, 0, 0);
                                                return;
                                              }
                                              EXPECT_EQ(screen.Take().back(), "early");
                                              EXPECT_TRUE(form->Enabled() && !other->Enabled());
                                              EXPECT_EQ(::GetActiveWindow(), screen.HandleOf(*form));
                                              ::PostMessageW(screen.HandleOf(dialog), WM_CLOSE, 0, 0);
                                            });
  other->reloj->OnTimer = [&] {
    other->reloj->SetInterval(0);
    late->ShowModal(other.get(), [&] { screen.diario.Anota("late"); });
  };
  other->reloj->SetInterval(60);
  early->ShowModal(form.get(), [&] { screen.diario.Anota("early"); });
  screen.Settle();
  const Sucesos heard = screen.Take();
  EXPECT_EQ(std::ranges::count(heard, "early"), 0);
  EXPECT_EQ(std::ranges::count(heard, "late"), 1);
  EXPECT_TRUE(other->Enabled());
  EXPECT_EQ(::GetActiveWindow(), screen.HandleOf(*other));
  // The end of the program reaches the loop outside.
  const auto dialog = make([](Muestra&) { ::PostQuitMessage(7); });
  dialog->ShowModal(form.get());
  EXPECT_TRUE(dialog->Closed());
  EXPECT_EQ(screen.EndOfProgram(), 7);
}

}  // namespace
}  // namespace zuvi::pruebas
