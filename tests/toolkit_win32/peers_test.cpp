// What a user does with native controls, and what the model makes of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "tests/toolkit_win32/pantalla.h"
#include "toolkit/win32/window_factory.h"

namespace zuvi::pruebas {
namespace {

/// In both kinds of message loop.
class Bucles : public testing::TestWithParam<Loop> {
 protected:
  Pantalla screen{GetParam()};
  std::shared_ptr<Muestra> form = screen.Open();
};
INSTANTIATE_TEST_SUITE_P(, Bucles, testing::Values(Loop::Plain, Loop::Dialog),
                         [](const auto& kind) { return kind.param == Loop::Plain ? "Plain" : "Dialog"; });

using Nativos = EnPantalla;

TEST_P(Bucles, KeysRaiseTheirEventsInOrder) {
  screen.Type("a");
  EXPECT_EQ(screen.Take(),
            (Sucesos{"KeyDown 65", "a.KeyDown 65", "a.KeyPress 97", "a.Change a", "a.KeyUp 65"}));
  screen.Type("bcdefghijklm");
  EXPECT_EQ(form->a->Text(), "abcdefghij");
  screen.Take();
  screen.Press(VK_TAB);
  EXPECT_EQ(screen.Take(), (Sucesos{"KeyDown 9", "a.KeyDown 9", "a.LostFocus", "b.GotFocus", "b.KeyUp 9"}));
  screen.PressIn(*form->rejilla, VK_TAB);  // past the locked box
  EXPECT_TRUE(form->turno->HasFocus());
  screen.Press(VK_TAB, VK_SHIFT);
  EXPECT_TRUE(form->rejilla->HasFocus());

  // What dialogs use reaches the model.
  screen.Press('P', VK_MENU);
  EXPECT_TRUE(form->a->HasFocus());
  form->casilla->SetCaption("&En proceso");
  screen.Press('E', VK_MENU);
  EXPECT_EQ(form->casilla->Value(), 1);
  EXPECT_EQ(screen.Ask(*form->casilla, BM_GETCHECK), 1);
  screen.Press(VK_SPACE);
  EXPECT_EQ(form->casilla->Value(), 0);
  form->a->SetFocus();
  screen.Take();
  screen.Press(VK_RETURN);
  EXPECT_TRUE(screen.Heard("boton.Click"));
  screen.Press(VK_ESCAPE);
  EXPECT_TRUE(screen.Heard("cancelar.Click"));
  EXPECT_EQ(form->a->Text(), "abcdefghij");
  form->a->SetFocus();
  screen.Take();
  screen.diario.filtro = [](const std::string&, std::int16_t& code) { code = 0; };
  screen.Press(VK_F2);
  EXPECT_EQ(screen.Take(), (Sucesos{"KeyDown 113", "a.KeyUp 113"}));
}

TEST_P(Bucles, HandlersChangeOrUseUpKeys) {
  form->a->OnKeyPress = [](KeyPressEvent& event) {
    event.character = static_cast<std::int16_t>(event.character == 'x' ? 0 : event.character - 32);
  };
  screen.Type("axb");
  EXPECT_EQ(form->a->Text(), "AB");
  form->a->OnKeyDown = [](KeyEvent& event) {
    if (event.key == 'C') event.Use();
  };
  screen.Type("cd");
  EXPECT_EQ(form->a->Text(), "ABD");
  // Its character waits until the handler is through, whatever the handler lets happen.
  form->a->OnKeyDown = [&](KeyEvent&) {
    screen.desktop.PumpEvents();
    EXPECT_EQ(form->a->Text(), "ABD");
  };
  screen.Type("e");
  EXPECT_EQ(form->a->Text(), "ABDE");
  // Who moves the focus on a key has used it up.
  form->a->OnKeyDown = [&](KeyEvent&) { form->b->SetFocus(); };
  screen.Type("f");
  EXPECT_TRUE(form->b->HasFocus());
  EXPECT_EQ(form->a->Text() + form->b->Text(), "ABDE");
}

TEST_P(Bucles, SeveralLines) {
  form->notas->SetFocus();
  screen.Type("a");
  screen.Press(VK_RETURN);
  screen.Type("bc");
  EXPECT_EQ(form->notas->Text(), "a\r\nbc");
  EXPECT_EQ(form->notas->SelStart(), 5);
  screen.Press(VK_BACK);
  form->notas->OnKeyPress = [](KeyPressEvent& event) { event.Drop(); };
  screen.Press(VK_RETURN);
  screen.Press(VK_BACK);
  EXPECT_EQ(form->notas->Text(), "a\r\nb");
  form->notas->SetText("otra\r\nvez");
  EXPECT_EQ(screen.TextOf(*form->notas), "otra\r\nvez");
}

TEST_F(Nativos, CodeAndUserSeeTheSame) {
  form->a->SetText("más largo que diez");
  EXPECT_EQ(screen.TextOf(*form->a), form->a->Text());
  form->a->SetSelStart(0);
  form->a->SetSelLength(form->a->Length());
  screen.Type("z");
  EXPECT_EQ(form->a->Text(), "z");
  EXPECT_EQ(form->a->SelStart(), 1);
  form->a->OnChange = [&] {
    if (form->a->Text() == "zz") form->a->SetText("cambiado");
  };
  screen.Type("z");
  EXPECT_EQ(screen.TextOf(*form->a), "cambiado");
  screen.PressIn(*form->bloqueada, '1');
  EXPECT_EQ(form->bloqueada->Text(), "000123");
  // The screen shows what a handler disabled, and the focus goes on.
  form->b->SetFocus();
  form->b->SetEnabled(false);
  EXPECT_FALSE(::IsWindowEnabled(screen.HandleOf(*form->b)));
  EXPECT_EQ(::GetFocus(), screen.HandleOf(*form->ActiveControl()));
}

TEST_F(Nativos, DisabledTheyAreStillRead) {
  FlexGrid& grid = *form->rejilla;
  screen.Click(grid, 100, 22 * 3 + 5);
  EXPECT_EQ(form->Celda(), "3,1");
  std::string lines;
  for (int i = 0; i < 40; ++i) lines += "uno\r\n";
  form->notas->SetText(lines);
  form->boton->SetFocus();
  grid.SetEnabled(false);
  form->notas->SetEnabled(false);
  screen.Settle();
  const RECT place = screen.PlaceOf(grid);
  screen.Ask(*form->boton, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA),
             MAKELPARAM(place.left + 20, place.top + 20));
  EXPECT_EQ(grid.TopRow(), 4);
  screen.Press(VK_NEXT);
  EXPECT_EQ(grid.TopRow(), 4 + grid.VisibleRows());
  EXPECT_EQ(::GetScrollPos(screen.HandleOf(grid), SB_VERT), grid.TopRow() - 1);
  screen.Ask(grid, WM_VSCROLL, SB_TOP);
  EXPECT_EQ(grid.TopRow(), 1);
  screen.Ask(*form->notas, WM_VSCROLL, SB_PAGEDOWN);
  EXPECT_GT(screen.Ask(*form->notas, EM_GETFIRSTVISIBLELINE), 0);
  // Nothing else reaches them.
  screen.Click(grid, 100, 22 * 2 + 5);
  screen.Click(*form->notas, 10, 10);
  EXPECT_EQ(form->Celda(), "3,1");
  EXPECT_EQ(::GetFocus(), screen.HandleOf(*form->boton));
  ::SetFocus(screen.HandleOf(*form->notas));
  screen.Type("x");
  EXPECT_EQ(form->notas->Text(), lines);
  EXPECT_TRUE(form->boton->HasFocus());
  // The ink stands out from the paper.
  grid.SetTextMatrix(1, 0, "MMMM");
  screen.Settle();
  EXPECT_LT(screen.InkOf(grid, {2, 24, 60, 42}).darkest, 64);
}

TEST_F(Nativos, PastingIsFilteredAsTypingIs) {
  form->a->OnKeyPress = [](KeyPressEvent& event) {
    if (event.character >= 'a') event.Drop();
  };
  const auto paste = [&](std::wstring_view text) {
    ASSERT_TRUE(::OpenClipboard(screen.HandleOf(*form)));
    ::EmptyClipboard();
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
    auto* const units = static_cast<wchar_t*>(::GlobalLock(memory));
    *std::ranges::copy(text, units).out = L'\0';
    ::GlobalUnlock(memory);
    ::SetClipboardData(CF_UNICODETEXT, memory);
    ::CloseClipboard();
    form->a->SetFocus();
    screen.Press('V', VK_CONTROL);
  };
  paste(L"1,690.50\r\n");
  EXPECT_EQ(form->a->Text(), "1,690.50");
  EXPECT_TRUE(screen.Heard("a.Change 1,690.50"));
  paste(L"12abc");
  EXPECT_EQ(form->a->Text(), "1,690.50");
  paste(L"12345");  // no longer than the box takes
  EXPECT_EQ(screen.TextOf(*form->a), "1,690.5012");
}

TEST_F(Nativos, RowsComeAndAreChosen) {
  ListView& list = *form->lista;
  // A press moves the focus first.
  screen.Click(list, 20, 40);
  const Sucesos heard = screen.Take();
  ASSERT_GT(heard.size(), 2u);
  EXPECT_EQ(heard[0] + heard[1], "a.LostFocuslista.GotFocus");
  ASSERT_TRUE(list.SelectedItem());
  // Who is not let go is not left, and nothing was pressed.
  list.OnLostFocus = [&] { list.SetFocus(); };
  screen.Click(*form->cancelar, 5, 5);
  EXPECT_EQ(::GetFocus(), screen.HandleOf(list));
  EXPECT_FALSE(screen.Heard("cancelar.Click"));

  list.Items().Clear();
  for (int i = 0; i < 10'000; ++i) {
    list.Items().Add("f" + std::to_string(i), "fila").SetSubItems(1, "texto");
    screen.desktop.PumpIfDue();
  }
  screen.Press(VK_DOWN);
  screen.Press(VK_DOWN);
  ASSERT_TRUE(list.SelectedItem());
  constexpr auto kNone = static_cast<WPARAM>(-1);
  EXPECT_EQ(screen.Ask(list, LVM_GETITEMCOUNT), 10'000);
  EXPECT_EQ(screen.Ask(list, LVM_GETNEXTITEM, kNone, LVNI_SELECTED), list.SelectedItem()->Index() - 1);
  EXPECT_TRUE(screen.Heard("lista.ItemClick " + list.SelectedItem()->Key()));
  list.Items().Remove(list.SelectedItem()->Key());
  screen.Settle(500);
  EXPECT_EQ(screen.Ask(list, LVM_GETITEMCOUNT), 9'999);
  EXPECT_EQ(screen.Ask(list, LVM_GETNEXTITEM, kNone, LVNI_SELECTED), -1);
}

TEST_F(Nativos, CombosAndRowsThatDropDown) {
  ComboBox& turno = *form->turno;
  turno.SetFocus();
  screen.Press(VK_DOWN);
  screen.Press(VK_DOWN);
  EXPECT_EQ(turno.Text(), "Vespertino");
  turno.SetListIndex(2);
  EXPECT_EQ(screen.TextOf(turno), "Nocturno");
  // An open list takes Enter and Escape for itself.
  for (const int closes : {VK_RETURN, VK_ESCAPE}) {
    screen.Press(VK_F4);
    EXPECT_TRUE(screen.Ask(turno, CB_GETDROPPEDSTATE));
    screen.Press(closes);
    EXPECT_FALSE(screen.Ask(turno, CB_GETDROPPEDSTATE));
  }
  form->combo->SetFocus();
  screen.Take();
  screen.Type("kg");
  EXPECT_TRUE(screen.Heard("combo.KeyPress 107"));
  EXPECT_EQ(form->combo->Text(), "kg");

  MultiCombo& multi = *form->multi;
  screen.Click(multi, 5, 5);
  EXPECT_TRUE(multi.DroppedDown());
  EXPECT_TRUE(form->b->HasFocus());
  screen.Take();
  for (const int key : {VK_DOWN, VK_DOWN, VK_RETURN}) screen.Press(key);
  EXPECT_FALSE(multi.DroppedDown());
  EXPECT_EQ(form->b->Text(), "A1");
  EXPECT_EQ(screen.Take(), Sucesos{"b.Change"});  // the list's keys are not the box's
  for (const int closes : {VK_ESCAPE, VK_TAB}) {
    screen.Press(VK_F4);
    EXPECT_TRUE(multi.DroppedDown());
    screen.Press(closes);
    EXPECT_FALSE(multi.DroppedDown());
  }
  EXPECT_FALSE(screen.Heard("boton.Click") || screen.Heard("cancelar.Click"));
  multi.SetRowSource("");
  EXPECT_FALSE(::IsWindowVisible(screen.HandleOf(multi)));
}

// It belongs to the controls themselves, and to hosts and tools that keep something of theirs there.
TEST_F(Nativos, TheUserDataOfControlsIsFree) {
  const std::array<zuvi::Control*, 6> controls{form->a.get(),     form->turno.get(),   form->casilla.get(),
                                               form->notas.get(), form->rejilla.get(), form->lista.get()};
  for (const auto* control : controls)
    EXPECT_EQ(::SetWindowLongPtrW(screen.HandleOf(*control), GWLP_USERDATA, 0x51), 0) << control->Name();
  screen.Type("ab");
  EXPECT_EQ(form->a->Text(), "ab");
  screen.PressIn(*form->turno, VK_DOWN);
  screen.PressIn(*form->casilla, VK_SPACE);
  EXPECT_EQ(form->turno->ListIndex() + form->casilla->Value(), 1);
  for (const auto* control : controls)
    EXPECT_EQ(::GetWindowLongPtrW(screen.HandleOf(*control), GWLP_USERDATA), 0x51) << control->Name();
  form->Unload();
  screen.Settle();
  EXPECT_EQ(screen.Windows(), 0);
}

TEST(BibliotecasDelSistema, ComeOutOfTheSystemsFolderAlone) {
  // Beside the program lies a file of that name, where the loader looks first.
  std::array<wchar_t, MAX_PATH> program{}, system{}, found{};
  ::GetModuleFileNameW(nullptr, program.data(), MAX_PATH);
  ::GetSystemDirectoryW(system.data(), MAX_PATH);
  std::wstring planted(program.data());
  planted.replace(planted.rfind(L'\\') + 1, std::wstring::npos, L"msftedit.dll");
  ASSERT_TRUE(::CopyFileW(program.data(), planted.c_str(), TRUE));
  // Taken away last, whatever happens.
  const auto remove = [](const std::wstring* file) { ::DeleteFileW(file->c_str()); };
  const std::unique_ptr<const std::wstring, decltype(remove)> planting(&planted, remove);
  Pantalla screen;
  const auto form = screen.Open();
  ::GetModuleFileNameW(::GetModuleHandleW(L"msftedit.dll"), found.data(), MAX_PATH);
  const std::wstring expected = std::wstring(system.data()) + L"\\msftedit.dll";
  EXPECT_EQ(::lstrcmpiW(found.data(), expected.c_str()), 0) << Narrow(found.data());
}

TEST_F(Nativos, SizeStateScaleAndTitleBar) {
  const HWND native = screen.HandleOf(*form), button = screen.HandleOf(*form->cancelar);
  const auto resize = [&](LONG width, LONG height) {
    ::SetWindowPos(native, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
    screen.Settle();
  };
  const RECT before = screen.PlaceOf(native);
  const LONG margin = before.right - screen.PlaceOf(button).right;
  resize(before.right - before.left + 90, before.bottom - before.top + 30);
  EXPECT_EQ(form->ClientWidth(), form->DesignWidth() + Dip(90));
  EXPECT_EQ(std::ranges::count(screen.Take(), "Resize"), 1);
  EXPECT_EQ(screen.PlaceOf(native).right - screen.PlaceOf(button).right, margin);
  resize(50, 50);
  EXPECT_EQ(form->ClientWidth(), form->DesignWidth());
  form->SetState(WindowState::Minimized);
  screen.Settle();
  EXPECT_TRUE(::IsIconic(native));
  form->SetState(WindowState::Normal);
  screen.Settle();
  // Another scale enlarges everything.
  screen.Rescale(*form, 144);
  RECT box;
  ::GetClientRect(screen.HandleOf(*form->casilla), &box);
  EXPECT_EQ(box.right, 270);
  EXPECT_EQ(box.bottom, 33);
  form->cancela = true;
  screen.Take();
  ::PostMessageW(native, WM_CLOSE, 0, 0);
  screen.Settle();
  EXPECT_EQ(screen.Take(), (Sucesos{"QueryUnload 0"}));
  EXPECT_TRUE(::IsWindowVisible(native));
  form->cancela = false;
  ::PostMessageW(native, WM_SYSCOMMAND, SC_CLOSE, 0);
  screen.Settle();
  EXPECT_TRUE(form->Closed());
  EXPECT_EQ(screen.Windows(), 0);
}

}  // namespace
}  // namespace zuvi::pruebas

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
