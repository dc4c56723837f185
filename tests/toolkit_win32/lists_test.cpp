// Rows clicked and walked through in a native list that tells of it as Windows does: of all rows losing the
// mark first, of the keyboard's mark before the selection's, of the click before the button's message
// returns, and asked by others in between.
#include <gtest/gtest.h>

#include <array>

#include "tests/toolkit_win32/pantalla.h"

namespace zuvi::pruebas {
namespace {

constexpr int kTop = 20, kHigh = 16, kPage = 4;

/// Stands in for the system's list in the windows that are opened while it lives.
class FakeList {
 public:
  explicit FakeList(HWND real) : real_(real) {
    current_ = this;
    before_ = reinterpret_cast<WNDPROC>(
        ::SetClassLongPtrW(real, GCLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  }
  FakeList(const FakeList&) = delete;
  FakeList& operator=(const FakeList&) = delete;
  ~FakeList() {
    ::SetClassLongPtrW(real_, GCLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
    current_ = nullptr;
  }
  int count = 0, selected = -1, focused = -1;
  int meddled = 0;                 // changes that came while it was at work
  std::function<void()> on_press;  // what happens while it waits for a drag

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM w, LPARAM l) {
    FakeList& self = *current_;
    switch (id) {
      case LVM_SETITEMCOUNT:
        self.meddled += self.working_;
        self.count = static_cast<int>(w);
        return TRUE;
      case LVM_GETITEMCOUNT:
        return self.count;
      case LVM_SETITEMSTATE:
        return self.SetState(static_cast<int>(w), *reinterpret_cast<const LVITEMW*>(l));
      case LVM_GETNEXTITEM:
        return l & LVNI_SELECTED ? self.selected : self.focused;
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
        self.Press(window, (GET_Y_LPARAM(l) - kTop) / kHigh, id == WM_LBUTTONDBLCLK);
        return 0;
      case WM_LBUTTONUP:
        // Some tell of the same again.
        if (self.selected >= 0) self.Changed(window, self.selected, 0, LVIS_FOCUSED | LVIS_SELECTED);
        return 0;
      case WM_KEYDOWN:
        self.Key(window, w);
        return 0;
      case WM_CHAR:
        self.Letter(window, static_cast<wchar_t>(w));
        return 0;
      case WM_PAINT:
        ::ValidateRect(window, nullptr);
        return 0;
      default:
        return ::DefWindowProcW(window, id, w, l);
    }
  }
  LRESULT SetState(int item, const LVITEMW& what) {
    meddled += working_;
    const bool marks = (what.state & what.stateMask & LVIS_SELECTED) != 0;
    if (what.stateMask & LVIS_SELECTED && (marks || item < 0 || item == selected))
      selected = marks ? item : -1;
    if (item >= 0 && what.stateMask & LVIS_FOCUSED) focused = what.state & LVIS_FOCUSED ? item : -1;
    return TRUE;
  }
  static LRESULT Tell(HWND window, UINT code, void* what) {
    auto& header = *static_cast<NMHDR*>(what);
    header = {window, 0, code};
    const LRESULT result = ::SendMessageW(::GetParent(window), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(what));
    // A screen reader hears of it and asks; the window is painted, timers run out.
    for (const UINT question : std::array<UINT, 2>{LVM_GETITEMCOUNT, LVM_GETHEADER})
      ::SendMessageW(window, question, 0, 0);
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    ::Sleep(30);
    MSG message;
    while (::PeekMessageW(&message, window, WM_TIMER, WM_TIMER, PM_REMOVE)) ::DispatchMessageW(&message);
    return result;
  }
  void Changed(HWND window, int item, UINT before, UINT after) {
    NMLISTVIEW what{};
    what.iItem = item;
    what.uOldState = before;
    what.uNewState = after;
    what.uChanged = LVIF_STATE;
    Tell(window, static_cast<UINT>(LVN_ITEMCHANGED), &what);
  }
  void MoveTo(HWND window, int row) {
    if (selected >= 0) {
      selected = -1;
      Changed(window, -1, LVIS_SELECTED, 0);
    }
    if (row < 0 || row >= count) return;
    if (const int old = std::exchange(focused, row); old >= 0 && old != row)
      Changed(window, old, LVIS_FOCUSED, 0);
    Changed(window, row, 0, LVIS_FOCUSED);
    selected = row;
    Changed(window, row, LVIS_FOCUSED, LVIS_FOCUSED | LVIS_SELECTED);
  }
  void Press(HWND window, int row, bool twice) {
    working_ = 1;
    if (on_press) on_press();
    MoveTo(window, row);
    NMITEMACTIVATE what{};
    what.iItem = row;
    Tell(window, static_cast<UINT>(twice ? NM_DBLCLK : NM_CLICK), &what);
    working_ = 0;
  }
  void Key(HWND window, WPARAM key) {
    const int to = key == VK_UP     ? focused - 1
                   : key == VK_DOWN ? focused + 1
                   : key == VK_NEXT ? focused + kPage
                   : key == VK_HOME ? 0
                   : key == VK_END  ? count - 1
                                    : -2;
    if (to == -2 || count == 0) return;
    working_ = 1;
    MoveTo(window, std::clamp(to, 0, count - 1));
    working_ = 0;
  }
  void Letter(HWND window, wchar_t letter) {
    std::array<wchar_t, 2> typed{letter, 0};
    NMLVFINDITEMW what{};
    what.iStart = focused;  // -1 when there is none
    what.lvfi.flags = LVFI_STRING | LVFI_PARTIAL | LVFI_WRAP;
    what.lvfi.psz = typed.data();
    working_ = 1;
    if (const auto row = static_cast<int>(Tell(window, static_cast<UINT>(LVN_ODFINDITEMW), &what)); row >= 0)
      MoveTo(window, row);
    working_ = 0;
  }

  static inline FakeList* current_ = nullptr;
  HWND real_;
  WNDPROC before_ = nullptr;
  int working_ = 0;
};

class FakedLists : public testing::Test {
 protected:
  FakedLists() {
    list.Items().Clear();
    for (int i = 0; i < 20; ++i)
      list.Items().Add("k" + std::to_string(i), std::string(1, static_cast<char>('a' + i)));
    list.SetFocus();
    screen.Settle(100);
    screen.Take();
  }
  ~FakedLists() override { form->Unload(); }
  void Click(int row) { screen.Click(list, 5, kTop + row * kHigh + 3); }

  Pantalla screen;
  std::shared_ptr<Muestra> first = screen.Open();
  FakeList native{screen.HandleOf(*first->lista)};
  std::shared_ptr<Muestra> form = screen.Open();
  ListView& list = *form->lista;
};

TEST_F(FakedLists, ClickedAndWalkedThrough) {
  list.OnClick = [&] { screen.diario.Anota("Click"); };
  list.OnDblClick = [&] { screen.diario.Anota("DblClick"); };
  /// What a list's user does, the row that is selected then, and what was heard of it.
  struct Step {
    std::function<void()> act;
    const char* key;
    Sucesos heard;
  };
  const auto key = [&](int which) { return [this, which] { screen.Press(which); }; };
  const Step steps[] = {{[&] { Click(3); }, "k3", {"lista.ItemClick k3", "Click"}},
                        {[&] { Click(3); }, "k3", {"Click"}},
                        {[&] { Click(1); }, "k1", {"lista.ItemClick k1", "Click"}},
                        {[&] { Click(90); }, "k1", {"Click"}},  // beside the rows
                        {key(VK_DOWN), "k2", {"lista.ItemClick k2"}},
                        {key(VK_NEXT), "k6", {"lista.ItemClick k6"}},
                        {key(VK_UP), "k5", {"lista.ItemClick k5"}},
                        {key(VK_HOME), "k0", {"lista.ItemClick k0"}},
                        {key(VK_END), "k19", {"lista.ItemClick k19"}},
                        {key('D'), "k3", {"lista.ItemClick k3"}},
                        {[&] {
                           ::PostMessageW(screen.HandleOf(list), WM_LBUTTONDBLCLK, MK_LBUTTON,
                                          MAKELPARAM(5, kTop + 3));
                           screen.Settle();
                         },
                         "k0",
                         {"lista.ItemClick k0", "DblClick"}}};
  for (const Step& step : steps) {
    SCOPED_TRACE(&step - steps);
    screen.Take();
    step.act();
    screen.Settle(100);
    Sucesos heard = screen.Take();
    std::erase_if(heard, [](const std::string& event) { return event.find("Key") != event.npos; });
    EXPECT_EQ(heard, step.heard);
    ASSERT_TRUE(list.SelectedItem());
    EXPECT_EQ(list.SelectedItem()->Key(), step.key);
    EXPECT_EQ(native.selected, list.SelectedItem()->Index() - 1);
  }
  EXPECT_EQ(native.meddled, 0);
}

TEST_F(FakedLists, ChangedByTheirHandlers) {
  Click(0);
  // Rows that change on the way to what a key does.
  form->lista->OnKeyDown = [&](KeyEvent&) { list.Items()(1).SetText("otro"); };
  screen.Press(VK_DOWN);
  EXPECT_EQ(list.SelectedItem()->Key(), "k1");
  // A handler that has another row selected.
  list.OnItemClick = [&](ListItem& item) {
    screen.diario.Anota(item.Key());
    list.Select(list.Items().ByKey("k0"));
  };
  screen.Take();
  Click(3);
  screen.Settle(100);
  EXPECT_EQ(screen.Take(), (Sucesos{"k3", "lista.Click"}));
  EXPECT_EQ(native.selected, 0);
  // A handler that fills the list anew, as a catalogue's does.
  list.OnItemClick = [&](ListItem&) {
    list.Items().Clear();
    for (const char* key : {"n0", "n1", "n2"}) list.Items().Add(key, key);
    list.Select(list.Items().ByKey("n2"));
    screen.desktop.PumpEvents();
  };
  Click(5);
  screen.Settle(100);
  EXPECT_EQ(native.count, 3);
  EXPECT_EQ(native.selected, 2);
  EXPECT_EQ(native.meddled, 0);
}

TEST_F(FakedLists, FilledAnewWhileAButtonGoesDown) {
  list.OnClick = [&] { screen.diario.Anota("Click"); };
  Click(2);
  native.on_press = [&] {
    list.Items().Clear();
    for (const char* key : {"n0", "n1", "n2", "n3"}) list.Items().Add(key, key);
    list.Select(list.Items().ByKey("n1"));
  };
  screen.Take();
  Click(3);
  screen.Settle(100);
  EXPECT_EQ(screen.Take(), Sucesos{});  // the row that was pressed is gone: nobody acts on another
  EXPECT_EQ(native.selected, 1);
  native.on_press = nullptr;
  Click(3);
  EXPECT_EQ(screen.Take(), (Sucesos{"lista.ItemClick n3", "Click"}));
  EXPECT_EQ(native.meddled, 0);
}

TEST_F(FakedLists, AreLeftAloneWhileTheButtonIsHeld) {
  std::array<BYTE, 256> keys{};
  ::GetKeyboardState(keys.data());
  keys[VK_LBUTTON] = 0x80;
  ::SetKeyboardState(keys.data());
  ::SendMessageW(screen.HandleOf(list), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, kTop + 3));
  list.Items().Add("k20", "u");
  screen.Settle(100);
  EXPECT_EQ(native.count, 20);
  keys[VK_LBUTTON] = 0;
  ::SetKeyboardState(keys.data());
  screen.Settle(100);
  EXPECT_EQ(native.count, 21);
}

TEST(Lists, FollowASelectionThatNoKeyOrPressMade) {
  Pantalla screen;
  const auto form = screen.Open();
  ListView& list = *form->lista;
  list.Select(list.Items().ByKey("z"));  // and is still to be shown
  LVITEMW selected{};
  selected.state = selected.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  for (const WPARAM row : {0, 1})
    screen.Ask(list, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&selected));
  screen.Settle(100);
  ASSERT_TRUE(list.SelectedItem());
  EXPECT_EQ(list.SelectedItem()->Key(), "y");
  EXPECT_EQ(screen.Ask(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED), 1);
  EXPECT_EQ(screen.Take(), (Sucesos{"lista.ItemClick x", "lista.ItemClick y"}));
}

TEST(Lists, AColumnThatWasDraggedStays) {
  Pantalla screen;
  const auto form = screen.Open();
  ListView& list = *form->lista;
  list.Columns().Add("a", "Uno", Dip(90));
  list.Columns().Add("b", "Dos");
  list.Columns().Add("c", "Tres", Dip(70));
  screen.Settle(200);
  const auto width = [&](WPARAM i) { return screen.Ask(list, LVM_GETCOLUMNWIDTH, i); };
  const LRESULT last = width(2);
  HDITEMW wanted{};
  wanted.mask = HDI_WIDTH;
  wanted.cxy = 110;
  const auto header = reinterpret_cast<HWND>(screen.Ask(list, LVM_GETHEADER));
  ::SendMessageW(header, HDM_SETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
  for (int i = 0; i < 40; ++i) list.Items().Add("", "fila");
  screen.Settle(200);
  ASSERT_TRUE(::GetWindowLongPtrW(screen.HandleOf(list), GWL_STYLE) & WS_VSCROLL);
  EXPECT_EQ(width(0), 110);
  EXPECT_EQ(width(2), last);
  RECT inside;
  ::GetClientRect(screen.HandleOf(list), &inside);
  EXPECT_EQ(width(0) + width(1) + width(2), inside.right);
}

TEST(Lists, AFirstColumnOnTheRight) {
  Pantalla screen;
  const auto form = screen.Open();
  ListView& list = *form->lista;
  list.Columns().Add("n", "Número", Dip(200), true);
  list.Columns().Add("t", "Texto", Dip(100));
  (*list.Items().ByKey("x")).SetText("MM");
  (*list.Items().ByKey("x")).SetSubItems(1, "dos");
  screen.Settle(200);
  const HWND native = screen.HandleOf(list);
  const auto header = reinterpret_cast<HWND>(screen.Ask(list, LVM_GETHEADER));
  const auto shown = static_cast<WPARAM>(Header_GetItemCount(header) - 2);
  HDITEMW title{};
  title.mask = HDI_FORMAT;
  ::SendMessageW(header, HDM_GETITEMW, shown, reinterpret_cast<LPARAM>(&title));
  EXPECT_EQ(title.fmt & HDF_JUSTIFYMASK, HDF_RIGHT);
  const auto text = [&](int column) {
    std::array<wchar_t, 20> found{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = found.data();
    item.cchTextMax = 20;
    screen.Ask(list, LVM_GETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&item));
    return native::Narrow(found.data());
  };
  EXPECT_EQ(text(0), "MM");  // what the row is called
  EXPECT_EQ(text(static_cast<int>(shown) + 1), "dos");
  // Nobody opens what is not to be seen.
  title.mask = HDI_WIDTH;
  title.cxy = 50;
  if (shown > 0) ::SendMessageW(header, HDM_SETITEMW, 0, reinterpret_cast<LPARAM>(&title));
  // Its ink is at the end of the column.
  RECT row{LVIR_BOUNDS, 0, 0, 0};
  screen.Ask(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
  ::UpdateWindow(native);
  const HDC dc = ::GetDC(native);
  LONG leftmost = 200, rightmost = 0;
  for (LONG x = 0; x < 200; ++x)
    for (LONG y = row.top + 2; y < row.bottom - 2; ++y)
      if (GetGValue(::GetPixel(dc, x, y)) < 100) leftmost = std::min(leftmost, x), rightmost = x;
  ::ReleaseDC(native, dc);
  EXPECT_GT(leftmost, 100);
  EXPECT_GT(rightmost, 180);
}

}  // namespace
}  // namespace zuvi::pruebas
