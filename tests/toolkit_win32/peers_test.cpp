// What a user does with native controls, and what the model makes of it.
#include <gtest/gtest.h>

#include "tests/toolkit_win32/pantalla.h"
#include "toolkit/win32/native_module.h"

namespace zuvi::sample {
namespace {

class Loops : public testing::TestWithParam<Loop> {
 protected:
  Pantalla screen{GetParam()};
  std::shared_ptr<SampleForm> form = screen.Open();
};
INSTANTIATE_TEST_SUITE_P(, Loops, testing::Values(Loop::Plain, Loop::Dialog),
                         [](const auto& kind) { return kind.param == Loop::Plain ? "Plain" : "Dialog"; });

TEST_P(Loops, KeysRaiseTheirEventsInOrder) {
  screen.Type("a");
  EXPECT_EQ(form->log, (Log{"nombre 65", "nombre 'a'", "nombre=a", "nombre ^65"}));
  screen.Type("bcdefghijklm");
  EXPECT_EQ(form->nombre->Text(), "abcdefghij");
  form->log.clear();
  screen.Press(VK_TAB);
  EXPECT_EQ(form->log, (Log{"nombre 9", "nombre-", "importe+", "importe ^9"}));
  screen.Press(VK_TAB);  // past the locked box
  EXPECT_TRUE(form->articulo->HasFocus());
  screen.Press(VK_TAB, VK_SHIFT);
  EXPECT_TRUE(form->importe->HasFocus());
  EXPECT_EQ(form->importe->Text(), "");
}

TEST_P(Loops, DialogKeysReachTheModel) {
  screen.Press('T', VK_MENU);
  EXPECT_TRUE(form->turno->HasFocus());
  screen.Press('P', VK_MENU);
  EXPECT_TRUE(form->activo->HasFocus());
  EXPECT_EQ(form->activo->Value(), 1);
  EXPECT_EQ(::SendMessageW(Pantalla::HandleOf(*form->activo), BM_GETCHECK, 0, 0), 1);
  screen.Press(VK_SPACE);
  EXPECT_EQ(form->activo->Value(), 0);
  form->log.clear();
  screen.Press(VK_F2);
  EXPECT_EQ(form->log, (Log{"F2", "activo ^113"}));
  screen.Press('N', VK_MENU);
  screen.Press(VK_RETURN);
  EXPECT_TRUE(Has(form->log, "aceptar clic"));
  screen.Press(VK_ESCAPE);
  EXPECT_TRUE(Has(form->log, "cancelar clic"));
  EXPECT_EQ(form->nombre->Text(), "");
}

TEST_P(Loops, HandlersChangeOrUseUpKeys) {
  form->nombre->OnKeyPress = [](std::int16_t& c) { c = static_cast<std::int16_t>(c == 'x' ? 0 : c - 32); };
  screen.Type("axb");
  EXPECT_EQ(form->nombre->Text(), "AB");
  form->nombre->OnKeyDown = [](std::int16_t& key, std::int16_t) {
    if (key == 'C') key = 0;
  };
  screen.Type("cd");
  EXPECT_EQ(form->nombre->Text(), "ABD");
  // Its character waits until the handler is through, whatever the handler lets happen.
  form->nombre->OnKeyDown = [&](std::int16_t&, std::int16_t) {
    screen.desktop.PumpEvents();
    EXPECT_EQ(form->nombre->Text(), "ABD");
  };
  screen.Type("e");
  EXPECT_EQ(form->nombre->Text(), "ABDE");
  // Who moves the focus on a key has used it up.
  form->nombre->OnKeyDown = [&](std::int16_t&, std::int16_t) { form->importe->SetFocus(); };
  screen.Type("f");
  EXPECT_TRUE(form->importe->HasFocus());
  EXPECT_EQ(form->nombre->Text() + form->importe->Text(), "ABDE");
}

TEST_P(Loops, SeveralLines) {
  form->notas->SetFocus();
  screen.Type("a");
  screen.Press(VK_RETURN);
  screen.Type("bc");
  EXPECT_EQ(form->notas->Text(), "a\r\nbc");
  EXPECT_EQ(form->notas->SelStart(), 5);
  screen.Press(VK_BACK);
  EXPECT_EQ(form->notas->Text(), "a\r\nb");
  form->notas->OnKeyPress = [](std::int16_t& c) { c = 0; };
  screen.Press(VK_RETURN);
  screen.Press(VK_BACK);
  EXPECT_EQ(form->notas->Text(), "a\r\nb");
  form->notas->SetSelStart(1);
  form->notas->SetSelLength(3);
  EXPECT_EQ(form->notas->SelText(), "\r\nb");
  form->notas->SetText("otra\r\nvez");
  EXPECT_EQ(NativeText(*form->notas), "otra\r\nvez");
}

TEST(Text, CodeAndUserSeeTheSame) {
  Pantalla screen;
  const auto form = screen.Open();
  form->nombre->SetText("más largo que diez");
  EXPECT_EQ(NativeText(*form->nombre), form->nombre->Text());
  form->nombre->SetSelStart(0);
  form->nombre->SetSelLength(form->nombre->Length());
  screen.Type("z");
  EXPECT_EQ(form->nombre->Text(), "z");
  EXPECT_EQ(form->nombre->SelStart(), 1);
  form->nombre->OnChange = [&] {
    if (form->nombre->Text() == "zz") form->nombre->SetText("cambiado");
  };
  screen.Type("z");
  EXPECT_EQ(NativeText(*form->nombre), "cambiado");
  form->bloqueada->SetFocus();
  screen.Type("1");
  EXPECT_EQ(form->bloqueada->Text(), "000123");
  // The screen shows what the handler disabled, and the focus goes on.
  form->importe->SetFocus();
  form->importe->SetEnabled(false);
  EXPECT_FALSE(::IsWindowEnabled(Pantalla::HandleOf(*form->importe)));
  EXPECT_EQ(::GetFocus(), Pantalla::HandleOf(*form->ActiveControl()));
}

TEST(Grid, KeysMouseAndEditorOverACell) {
  Pantalla screen;
  const auto form = screen.Open();
  FlexGrid& grid = *form->rejilla;
  grid.SetFocus();
  for (const int key : {VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_DOWN})
    screen.Press(static_cast<WORD>(key));
  EXPECT_EQ(grid.Row(), 2);
  EXPECT_EQ(grid.Col(), 3);  // the hidden column is passed over
  screen.Press(VK_END, VK_CONTROL);
  EXPECT_EQ(grid.Row(), 40);
  EXPECT_GT(grid.TopRow(), 1);
  SCROLLINFO bar{};
  bar.cbSize = sizeof bar;
  bar.fMask = SIF_ALL;
  ::GetScrollInfo(Pantalla::HandleOf(grid), SB_VERT, &bar);
  EXPECT_EQ(bar.nPos, grid.TopRow() - 1);
  EXPECT_EQ(bar.nMax, 39);
  ::SendMessageW(Pantalla::HandleOf(grid), WM_VSCROLL, SB_TOP, 0);
  EXPECT_EQ(grid.TopRow(), 1);
  screen.Click(grid, 100, 22 * 3 + 5);
  EXPECT_EQ(grid.Row(), 3);
  EXPECT_EQ(grid.Col(), 1);
  const Rect cell = grid.CellBounds();
  form->editor->Move({grid.Left() + cell.left, grid.Top() + cell.top, cell.width, cell.height});
  form->editor->SetVisible(true);
  form->editor->SetFocus();
  screen.Type("y");
  EXPECT_EQ(form->editor->Text(), "y");
  const RECT place = [&] {
    RECT r;
    ::GetWindowRect(Pantalla::HandleOf(*form->editor), &r);
    return r;
  }();
  EXPECT_EQ(::WindowFromPoint({place.left + 5, place.top + 5}), Pantalla::HandleOf(*form->editor));
  form->editor->SetVisible(false);
  grid.SetFocus();
  EXPECT_EQ(::GetFocus(), Pantalla::HandleOf(grid));
}

TEST(Lists, RowsComeAndAreChosen) {
  Pantalla screen;
  const auto form = screen.Open();
  ListView& list = *form->lista;
  list.Items().Clear();
  for (int i = 0; i < 10'000; ++i) {
    list.Items().Add(Numbered("f", i), "fila").SetSubItems(1, "texto");
    screen.desktop.Breathe();
  }
  list.SetFocus();
  screen.Press(VK_DOWN);
  screen.Press(VK_DOWN);
  ASSERT_TRUE(list.SelectedItem());
  const HWND native = Pantalla::HandleOf(list);
  EXPECT_EQ(::SendMessageW(native, LVM_GETITEMCOUNT, 0, 0), 10'000);
  EXPECT_EQ(::SendMessageW(native, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED),
            list.SelectedItem()->Index() - 1);
  EXPECT_TRUE(Has(form->log, "lista=" + list.SelectedItem()->Key()));
  list.Items().Remove(list.SelectedItem()->Key());
  screen.Settle();
  EXPECT_EQ(::SendMessageW(native, LVM_GETITEMCOUNT, 0, 0), 9'999);
  EXPECT_EQ(::SendMessageW(native, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED), -1);
}

TEST(Lists, APressMovesTheFocusFirst) {
  Pantalla screen;
  const auto form = screen.Open();
  screen.Click(*form->lista, 20, 40);
  EXPECT_EQ(form->log.size() > 3 ? Log(form->log.begin(), form->log.begin() + 2) : form->log,
            (Log{"nombre-", "lista+"}));
  ASSERT_TRUE(form->lista->SelectedItem());
  // Who is not let go is not left, and nothing was pressed.
  form->lista->OnLostFocus = [&] { form->lista->SetFocus(); };
  form->log.clear();
  screen.Click(*form->cancelar, 5, 5);
  EXPECT_TRUE(form->lista->HasFocus());
  EXPECT_EQ(::GetFocus(), Pantalla::HandleOf(*form->lista));
  EXPECT_FALSE(Has(form->log, "cancelar clic"));
}

TEST(Lists, Combos) {
  Pantalla screen;
  const auto form = screen.Open();
  form->turno->SetFocus();
  screen.Press(VK_DOWN);
  screen.Press(VK_DOWN);
  EXPECT_EQ(form->turno->Text(), "Vespertino");
  form->turno->SetListIndex(2);
  EXPECT_EQ(NativeText(*form->turno), "Nocturno");
  // An open list takes Enter and Escape for itself.
  for (const WORD closes : {static_cast<WORD>(VK_RETURN), static_cast<WORD>(VK_ESCAPE)}) {
    screen.Press(VK_F4);
    EXPECT_TRUE(::SendMessageW(Pantalla::HandleOf(*form->turno), CB_GETDROPPEDSTATE, 0, 0));
    screen.Press(closes);
    EXPECT_FALSE(::SendMessageW(Pantalla::HandleOf(*form->turno), CB_GETDROPPEDSTATE, 0, 0));
  }
  EXPECT_FALSE(Has(form->log, "aceptar clic") || Has(form->log, "cancelar clic"));
  form->unidad->SetFocus();
  screen.Type("kg");
  EXPECT_EQ(form->unidad->Text(), "kg");
  EXPECT_TRUE(Has(form->log, "unidad 'k'"));
  screen.Press(VK_TAB);
  EXPECT_TRUE(form->fecha->HasFocus());
}

TEST(Lists, RowsDropDownFromABox) {
  Pantalla screen;
  const auto form = screen.Open();
  screen.Click(*form->articulos, 5, 5);
  EXPECT_TRUE(form->articulos->DroppedDown());
  EXPECT_TRUE(form->articulo->HasFocus());
  screen.Press(VK_DOWN);
  screen.Press(VK_DOWN);
  screen.Press(VK_RETURN);
  EXPECT_FALSE(form->articulos->DroppedDown());
  EXPECT_EQ(form->articulo->Text(), "ART-2");
  EXPECT_FALSE(Has(form->log, "articulo 40") || Has(form->log, "articulo ^40"));
  EXPECT_FALSE(Has(form->log, "aceptar clic"));
  screen.Press(VK_F4);
  EXPECT_TRUE(form->articulos->DroppedDown());
  screen.Press(VK_ESCAPE);
  EXPECT_FALSE(form->articulos->DroppedDown());
  EXPECT_FALSE(Has(form->log, "cancelar clic"));
  screen.Press(VK_F4);
  screen.Press(VK_TAB);  // leaving the box closes the list
  EXPECT_FALSE(form->articulos->DroppedDown());
  form->articulos->SetRowSource("");
  EXPECT_FALSE(::IsWindowVisible(Pantalla::HandleOf(*form->articulos)));
}

TEST(Dates, KeysMoveAndTellTheModel) {
  Pantalla screen;
  const auto form = screen.Open();
  form->fecha->SetFocus();
  screen.Press(VK_UP);
  EXPECT_NE(form->fecha->Value().Texto(), "2024-05-17");
  EXPECT_TRUE(Has(form->log, "fecha=" + form->fecha->Value().Texto()));
  form->mes->SetFocus();
  screen.Press(VK_DOWN);
  EXPECT_TRUE(Has(form->log, "mes=2024-05-24"));
  SYSTEMTIME day{};
  ::SendMessageW(Pantalla::HandleOf(*form->mes), MCM_GETCURSEL, 0, reinterpret_cast<LPARAM>(&day));
  EXPECT_EQ(day.wDay, 24);
}

TEST(Windows, SizeStateAndTitleBar) {
  Pantalla screen;
  const auto form = screen.Open();
  const HWND native = Pantalla::HandleOf(*form);
  EXPECT_EQ(form->paintings, 1);
  const auto right_of = [](HWND window) {
    RECT r;
    ::GetWindowRect(window, &r);
    return r.right;
  };
  const HWND button = Pantalla::HandleOf(*form->cancelar);
  RECT before;
  ::GetWindowRect(native, &before);
  const LONG margin = before.right - right_of(button);
  ::SetWindowPos(native, nullptr, 0, 0, before.right - before.left + 90, before.bottom - before.top + 30,
                 SWP_NOMOVE | SWP_NOZORDER);
  screen.Settle();
  EXPECT_EQ(form->InsideWidth(), Dip(850));
  EXPECT_EQ(form->resizes, 1);
  EXPECT_EQ(right_of(native) - right_of(button), margin);
  ::SetWindowPos(native, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER);
  screen.Settle();
  EXPECT_EQ(form->InsideWidth(), Dip(760));
  form->SetState(WindowState::Minimized);
  screen.Settle();
  EXPECT_TRUE(::IsIconic(native));
  form->SetState(WindowState::Normal);
  screen.Settle();
  form->SetCaption("Año nuevo");
  EXPECT_EQ(native::TextOf(native), L"A\u00f1o nuevo");
  form->log.clear();
  form->refuses = true;
  ::PostMessageW(native, WM_CLOSE, 0, 0);
  screen.Settle();
  EXPECT_EQ(form->log, (Log{"query 0"}));
  EXPECT_TRUE(::IsWindowVisible(native));
  form->refuses = false;
  ::PostMessageW(native, WM_SYSCOMMAND, SC_CLOSE, 0);
  screen.Settle();
  EXPECT_TRUE(form->Closed());
  EXPECT_EQ(Windows(), 0);
}

TEST(Windows, AnotherScaleEnlargesEverything) {
  Pantalla screen;
  const auto form = screen.Open();
  const HWND native = Pantalla::HandleOf(*form);
  RECT place;
  ::GetWindowRect(native, &place);
  ::SendMessageW(native, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
  screen.Settle();
  RECT box;
  ::GetClientRect(Pantalla::HandleOf(*form->activo), &box);
  EXPECT_EQ(box.right, 180);
  EXPECT_EQ(box.bottom, 30);
  EXPECT_EQ(form->nombre->Width(), Dip(180));
}

TEST(Windows, ModalBlocksItsOwnerAndGivesTheFocusBack) {
  Pantalla screen;
  const auto owner = screen.Open();
  owner->importe->SetFocus();
  for (const bool named : {true, false}) {
    const auto form = std::make_shared<SampleForm>(screen.desktop);
    form->reloj->SetInterval(60);
    int ticks = 0;
    form->reloj->OnTimer = [&] {
      EXPECT_FALSE(owner->Enabled());
      EXPECT_FALSE(::IsWindowEnabled(Pantalla::HandleOf(*owner)));
      EXPECT_EQ(::GetActiveWindow(), Pantalla::HandleOf(*form));
      if (++ticks == 2) ::PostMessageW(Pantalla::HandleOf(*form), WM_CLOSE, 0, 0);
    };
    form->ShowModal(named ? owner.get() : nullptr);
    EXPECT_TRUE(form->Closed());
    EXPECT_TRUE(owner->Enabled());
    screen.Settle();
    EXPECT_EQ(::GetFocus(), Pantalla::HandleOf(*owner->importe));
  }
  // The end of the program reaches the loop outside.
  const auto form = std::make_shared<SampleForm>(screen.desktop);
  form->reloj->SetInterval(30);
  form->reloj->OnTimer = [] { ::PostQuitMessage(7); };
  form->ShowModal(owner.get());
  EXPECT_TRUE(form->Closed());
  MSG message{};
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) {
  }
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7u);
}

/// Comes onto the screen before it is loaded.
class Slow final : public SampleForm {
 public:
  using SampleForm::SampleForm;
  std::function<void()> while_loading;
  void Form_Load() override {
    SampleForm::Form_Load();
    ShowWhileLoading();
    while_loading();
  }
};

TEST(Windows, ALongLoadIsSeenButTakesNoInput) {
  Pantalla screen;
  const auto owner = screen.Open();
  const auto form = std::make_shared<Slow>(screen.desktop);
  form->while_loading = [&] {
    EXPECT_TRUE(::IsWindowVisible(Pantalla::HandleOf(*form)));
    EXPECT_FALSE(::IsWindowEnabled(Pantalla::HandleOf(*form)));
    EXPECT_FALSE(::IsWindowEnabled(Pantalla::HandleOf(*owner)));
    screen.Settle();
    form->reloj->SetInterval(60);
  };
  form->reloj->OnTimer = [&] {
    EXPECT_TRUE(form->Enabled());
    EXPECT_EQ(::GetActiveWindow(), Pantalla::HandleOf(*form));
    EXPECT_EQ(::GetFocus(), Pantalla::HandleOf(*form->ActiveControl()));
    ::PostMessageW(Pantalla::HandleOf(*form), WM_CLOSE, 0, 0);
  };
  form->ShowModal(owner.get());
  EXPECT_TRUE(form->Closed());
  EXPECT_TRUE(owner->Enabled());
  screen.Settle();
  EXPECT_EQ(::GetActiveWindow(), Pantalla::HandleOf(*owner));
}

}  // namespace
}  // namespace zuvi::sample

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
