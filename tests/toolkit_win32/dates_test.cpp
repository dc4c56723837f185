// Dates picked and typed: whatever the user does next finds them in the model, also digits that the native
// control has not told of.
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

TEST(FechasTecleadas, AreInTheModelBeforeAnyCommand) {
  for (const bool told : {true, false}) {
    for (std::size_t i = 0; i < std::size(kCommands); ++i) {
      const auto& [event, act] = kCommands[i];
      SCOPED_TRACE(testing::Message() << i << " " << event << (told ? "" : " held back"));
      Pantalla screen;
      const auto form = screen.Open();
      form->cancela = true;
      form->fecha->SetFocus();
      screen.Settle();
      const std::unique_ptr<HeldBack> held =
          told ? nullptr : std::make_unique<HeldBack>(screen.HandleOf(*form));
      const Date before = form->fecha->Value();
      screen.Type("3");  // the third of January or the end of March, as the system's dates go
      EXPECT_EQ(form->fecha->Value(), before);  // more digits may follow
      screen.Take();
      Date stored;
      screen.diario.al_suceder = [&, wanted = std::string(event)](const std::string& heard) {
        if (heard == wanted) stored = form->fecha->Value();
      };
      act(screen, *form);
      screen.Settle();
      const std::string day = stored.Texto().substr(0, 10);
      EXPECT_TRUE(day == "2024-01-03" || day == "2024-03-31") << day;
      EXPECT_EQ(stored, form->fecha->Value());
      EXPECT_EQ(std::ranges::count(screen.Take(), "fecha.Change"), 1);
      form->cancela = false;
      form->Unload();
    }
  }
}

using FechasNativas = EnPantalla;
TEST_F(FechasNativas, KeysThatGoOnTypingAreNotCommands) {
  form->fecha->SetFocus();
  screen.Type("1");
  std::ignore = form->Call("a");  // a host that looks at something else
  // Twice, so that the next window finds the keyboard as it was.
  for (const int key : {VK_NUMLOCK, VK_CAPITAL, VK_SCROLL, VK_INSERT, VK_DELETE})
    for (int i = 0; i < 2; ++i) screen.Press(key);
  screen.Type("2");
  screen.Press(VK_RIGHT);
  screen.Type("1");
  screen.Type("1");
  screen.Press(VK_F5);
  const std::string day = form->fecha->Value().Texto().substr(5, 5);
  EXPECT_TRUE(day == "12-11" || day == "11-12") << day;
}

TEST_F(FechasNativas, MoveAndTellTheModel) {
  screen.PressIn(*form->fecha, VK_UP);
  EXPECT_NE(form->fecha->Value().Texto(), "2024-01-31 10:30:00");
  EXPECT_TRUE(screen.Heard("fecha.Change"));
  screen.PressIn(*form->mes, VK_DOWN);
  EXPECT_TRUE(screen.Heard("mes.DateClick 2024-02-07"));
  const auto marked = [&] {
    SYSTEMTIME day{};
    screen.Ask(*form->mes, MCM_GETCURSEL, 0, reinterpret_cast<LPARAM>(&day));
    return Date::FromCivil({day.wYear, day.wMonth, day.wDay, 0, 0, 0});
  };
  EXPECT_EQ(marked().Texto(), "2024-02-07");
  // A place where the calendar shows a kind of thing; of days that of the middle.
  const auto place_of = [&](UINT kind) {
    RECT inside;
    ::GetClientRect(screen.HandleOf(*form->mes), &inside);
    for (LONG y = kind == MCHT_CALENDARDATE ? inside.bottom / 2 : 2; y < inside.bottom; y += 3)
      for (LONG x = 2; x < inside.right; x += 3) {
        MCHITTESTINFO hit{};
        hit.cbSize = MCHITTESTINFO_V1_SIZE;
        hit.pt = {x, y};
        screen.Ask(*form->mes, MCM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        if (hit.uHit == kind) return hit.pt;
      }
    ADD_FAILURE() << kind;
    return POINT{};
  };
  // What is marked is the value, and each way there tells the model once.
  for (const UINT kind : {MCHT_TITLEBTNNEXT, MCHT_CALENDARDATE, MCHT_TITLEBTNPREV}) {
    const Date before = form->mes->Value();
    const POINT at = place_of(kind);
    screen.Take();
    screen.Click(*form->mes, at.x, at.y);
    EXPECT_NE(marked(), before) << kind;
    EXPECT_EQ(form->mes->Value(), marked()) << kind;
    EXPECT_EQ(std::ranges::count(screen.Take(), "mes.DateClick " + marked().Texto()), 1) << kind;
  }
}

/// A calendar in a place too small for it, with neighbours.
class Estrecha final : public Form {
 public:
  explicit Estrecha(Desktop& desktop) : Form(desktop, "estrecha", nullptr) {
    DesignClientSize(Dip(300), Dip(240));
    arriba = Add<TextBox>("arriba");
    arriba->Design({Dip(10), Dip(10), Dip(280), Dip(24)}, anchor::kAcross);
    mes = Add<MonthView>("mes");
    mes->Design({Dip(10), Dip(40), Dip(80), Dip(60)});
    abajo = Add<Button>("abajo");
    abajo->Design({Dip(10), Dip(104), Dip(80), Dip(24)});
    lado = Add<ListView>("lado");
    lado->Design({Dip(94), Dip(40), Dip(196), Dip(190)}, anchor::kAll);
  }
  std::shared_ptr<TextBox> arriba;
  std::shared_ptr<MonthView> mes;
  std::shared_ptr<Button> abajo;
  std::shared_ptr<ListView> lado;
};

TEST(Calendarios, HaveRoomForAWholeMonth) {
  Pantalla screen;
  const auto form = std::make_shared<Estrecha>(screen.desktop);
  form->Show();
  screen.Settle();
  for (const int dpi : {96, 144}) {
    screen.Rescale(*form, dpi);
    RECT needed{}, month, whole;
    screen.Ask(*form->mes, MCM_GETMINREQRECT, 0, reinterpret_cast<LPARAM>(&needed));
    ASSERT_GT(needed.right, 100);
    ::GetClientRect(screen.HandleOf(*form->mes), &month);
    EXPECT_TRUE(month.right >= needed.right && month.bottom >= needed.bottom);
    ::GetClientRect(screen.HandleOf(*form), &whole);
    ::MapWindowPoints(screen.HandleOf(*form), nullptr, reinterpret_cast<POINT*>(&whole), 2);
    // Nobody is covered, and nobody lies outside.
    const RECT place = screen.PlaceOf(*form->mes), side = screen.PlaceOf(*form->lado),
               below = screen.PlaceOf(*form->abajo);
    EXPECT_TRUE(side.left >= place.right && below.top >= place.bottom && below.bottom <= side.bottom);
    EXPECT_TRUE(side.right <= whole.right && side.bottom <= whole.bottom);
    EXPECT_EQ(screen.PlaceOf(*form->arriba).right, side.right);
  }
  form->Unload();
}

}  // namespace
}  // namespace zuvi::pruebas
