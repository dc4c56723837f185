// A window that is closed by a handler of whatever event: nothing of it is used afterwards, and nothing is
// left.
#include <gtest/gtest.h>

#include "tests/toolkit_win32/pantalla.h"

namespace zuvi::sample {
namespace {

/// Ways to get at an event, each with a handler that closes the window.
struct Closing {
  const char* name;
  void (*act)(Pantalla&, SampleForm&, const std::function<void()>& close);
};
class Closings : public testing::TestWithParam<Closing> {};

TEST_P(Closings, FromAHandler) {
  std::weak_ptr<SampleForm> gone;
  {
    Pantalla screen;
    auto form = screen.Open();
    gone = form;
    SampleForm& window = *form;
    form.reset();  // it lives in its desktop alone
    const auto close = [&window] { EXPECT_TRUE(window.Unload()); };
    GetParam().act(screen, window, close);
    screen.Settle(150);
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(Windows(), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(, Closings,
                         testing::Values(
                             Closing{"KeyDown",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.nombre->OnKeyDown = [close](std::int16_t&, std::int16_t) {
                                         close();
                                       };
                                       s.Type("abc");
                                     }},
                             Closing{"KeyPress",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.notas->OnKeyPress = [close](std::int16_t&) { close(); };
                                       f.notas->SetFocus();
                                       s.Press(VK_RETURN);
                                     }},
                             Closing{"KeyUp",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.nombre->OnKeyUp = [close](std::int16_t&, std::int16_t) { close(); };
                                       s.Type("a");
                                     }},
                             Closing{"Change",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.nombre->OnChange = close;
                                       s.Type("a");
                                     }},
                             Closing{"RichChange",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.notas->OnChange = close;
                                       f.notas->SetFocus();
                                       s.Type("a");
                                     }},
                             Closing{"LostFocus",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.nombre->OnLostFocus = close;
                                       s.Click(*f.importe, 5, 5);
                                     }},
                             Closing{"GotFocus",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.importe->OnGotFocus = close;
                                       s.Press(VK_TAB);
                                     }},
                             Closing{"ButtonClick",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.cancelar->OnClick = close;
                                       s.Click(*f.cancelar, 5, 5);
                                     }},
                             Closing{"ButtonSpace",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.cancelar->OnClick = close;
                                       f.cancelar->SetFocus();
                                       s.Press(VK_SPACE);
                                     }},
                             Closing{"Mnemonic",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.cancelar->OnClick = close;
                                       s.Press('C', VK_MENU);
                                     }},
                             Closing{"CheckClick",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.activo->OnClick = close;
                                       s.Click(*f.activo, 5, 5);
                                     }},
                             Closing{"LabelClick",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.titulo->OnClick = close;
                                       s.Click(*f.titulo, 5, 5);
                                     }},
                             Closing{"ComboChoice",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.turno->OnClick = close;
                                       f.turno->SetFocus();
                                       s.Press(VK_DOWN);
                                     }},
                             Closing{"ComboTyped",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.unidad->OnChange = close;
                                       f.unidad->SetFocus();
                                       s.Type("a");
                                     }},
                             Closing{"DropDownChoice",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.articulo->OnChange = close;
                                       s.Click(*f.articulos, 5, 5);
                                       s.Press(VK_DOWN);
                                       s.Press(VK_RETURN);
                                     }},
                             Closing{"CellChange",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.rejilla->OnRowColChange = close;
                                       s.Click(*f.rejilla, 100, 22 * 3 + 5);
                                     }},
                             Closing{"CellLeft",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.rejilla->OnLeaveCell = close;
                                       f.rejilla->SetFocus();
                                       s.Press(VK_DOWN);
                                     }},
                             Closing{"GridScroll",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.rejilla->OnScroll = close;
                                       ::PostMessageW(Pantalla::HandleOf(*f.rejilla), WM_VSCROLL, SB_PAGEDOWN,
                                                      0);
                                       s.Settle();
                                     }},
                             Closing{"RowChosen",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.lista->OnItemClick = [close](ListItem&) { close(); };
                                       s.Click(*f.lista, 20, 40);
                                     }},
                             Closing{"DatePicked",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.fecha->OnChange = close;
                                       f.fecha->SetFocus();
                                       s.Press(VK_UP);
                                     }},
                             Closing{"DayClicked",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.mes->OnDateClick = [close](const Fecha&) { close(); };
                                       s.Click(*f.mes, 90, 80);
                                     }},
                             Closing{"Timer",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>& close) {
                                       f.reloj->OnTimer = close;
                                       f.reloj->SetInterval(20);
                                       s.Settle(200);
                                     }},
                             Closing{"PumpInAFill",
                                     [](Pantalla& s, SampleForm& f, const std::function<void()>&) {
                                       const auto keep = f.Keep();
                                       for (int i = 0; i < 50 && !f.Closed(); ++i) {
                                         f.lista->Items().Add(Numbered("n", i), "nueva");
                                         if (i == 20) ::PostMessageW(Pantalla::HandleOf(f), WM_CLOSE, 0, 0);
                                         s.desktop.PumpEvents();
                                       }
                                       EXPECT_TRUE(f.Closed());
                                     }},
                             Closing{"FormKey",
                                     [](Pantalla& s, SampleForm&,
                                        const std::function<void()>&) { s.Press(VK_F4, VK_CONTROL); }},
                             Closing{"AltF4", [](Pantalla& s, SampleForm&,
                                                 const std::function<void()>&) { s.Press(VK_F4, VK_MENU); }},
                             Closing{"DestroyedByOthers",
                                     [](Pantalla&, SampleForm& f, const std::function<void()>&) {
                                       ::DestroyWindow(Pantalla::HandleOf(f));
                                     }}),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace zuvi::sample
