// The arrow at the end of a text box, and the list of rows that drops down from it. The keyboard stays in the
// box all the time: the list is never activated.
#include <algorithm>
#include <array>
#include <utility>

#include "toolkit/win32/drawing.h"
#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

constexpr std::int32_t kMostWidth = Dip(640);
constexpr int kRowsShown = 12, kRowsMeasured = 200;

class MultiComboPeer final : public NativeControl, private DropDown {
 public:
  MultiComboPeer(NativeForm& form, MultiCombo& combo) : NativeControl(form, combo), combo_(combo) {}
  ~MultiComboPeer() override {
    if (Parent().Dropped() == this) Parent().SetDropped(nullptr);
  }

  void Create() override {
    CreateWindowOf(WC_BUTTONW, BS_OWNERDRAW, 0, Wide(combo_.AccessibleName()));
    ShowArrow();
  }

  void Update(Aspect aspect) override {
    if (aspect == Aspect::State || aspect == Aspect::Items) {
      ShowArrow();
      combo_.DroppedDown() ? Open() : Close();
    }
    NativeControl::Update(aspect);
    if (aspect == Aspect::Visible) ShowArrow();
  }

  RECT Place() const override {
    RECT place = NativeControl::Place();
    place.left = std::max(place.left, place.right - Parent().Pixels(MultiCombo::kArrowWidth));
    return place;
  }
  void Restyle() override {
    NativeControl::Restyle();
    if (list_) ::SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(Parent().Font()), TRUE);
  }

  void OnDraw(const DRAWITEMSTRUCT& item) override {
    const bool enabled = combo_.Enabled() && (!combo_.Box() || combo_.Box()->Enabled());
    RECT place = item.rcItem;
    ::FillRect(item.hDC, &place, ::GetSysColorBrush(COLOR_3DFACE));
    ::DrawEdge(item.hDC, &place, combo_.DroppedDown() ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
    const int half = Parent().Pixels(Dip(3)), x = (place.left + place.right) / 2,
              y = (place.top + place.bottom) / 2 - half / 2;
    const std::array<POINT, 3> triangle{{{x - half, y}, {x + half, y}, {x, y + half}}};
    const COLORREF ink = ::GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
    const UniqueGdi<HBRUSH> brush(::CreateSolidBrush(ink));
    const UniqueGdi<HPEN> pen(::CreatePen(PS_SOLID, 1, ink));
    const Selected filled(item.hDC, brush.get()), edged(item.hDC, pen.get());
    ::Polygon(item.hDC, triangle.data(), static_cast<int>(triangle.size()));
  }

 protected:
  std::optional<LRESULT> OnMessage(const Message& m) override {
    if (m.window == list_) return OnListMessage(m);
    if (m.window == popup_) {
      if (m.id == WM_MOUSEACTIVATE) return MA_NOACTIVATE;
      if (m.id == WM_NOTIFY) return OnListNotify(*reinterpret_cast<const NMHDR*>(m.l));
      return std::nullopt;
    }
    if (m.id == WM_LBUTTONDOWN || m.id == WM_LBUTTONDBLCLK) {
      // A press on the arrow of an open list closes it.
      if (combo_.DroppedDown())
        Parent().Dismiss();
      else
        combo_.Click();
      return 0;
    }
    return NativeControl::OnMessage(m);
  }

 private:
  // DropDown: keys that arrive in the box.
  bool Key(std::int16_t key, std::int16_t shift) override {
    const int last = static_cast<int>(combo_.Rows().size()) - 1;
    const int now = highlighted_;
    const bool toggles = key == key::kF4 || ((shift & shift::kAlt) && (key == key::kUp || key == key::kDown));
    if (key == key::kEscape || toggles) {
      Parent().Dismiss();
      return true;
    }
    if (shift & (shift::kCtrl | shift::kAlt)) return false;
    switch (key) {
      case key::kUp:
        Highlight(std::max(now - 1, 0));
        return true;
      case key::kDown:
        Highlight(std::min(now + 1, last));
        return true;
      case key::kPageUp:
        Highlight(std::max(now - kRowsShown, 0));
        return true;
      case key::kPageDown:
        Highlight(std::min(now + kRowsShown, last));
        return true;
      case key::kEnter:
        if (now >= 0)
          combo_.Choose(static_cast<std::size_t>(now));
        else
          Parent().Dismiss();
        return true;
      case VK_SHIFT:
      case VK_CONTROL:
      case VK_MENU:
        return false;
      default:
        Parent().Dismiss();
        return false;
    }
  }
  void Dismiss() override { combo_.CloseUp(); }

  void ShowArrow() {
    ::ShowWindow(Window(), combo_.Visible() && !combo_.RowSource().empty() ? SW_SHOWNA : SW_HIDE);
    ::InvalidateRect(Window(), nullptr, FALSE);
  }

  LRESULT AskList(UINT id, WPARAM w = 0, LPARAM l = 0) const { return ::SendMessageW(list_, id, w, l); }
  /// The row that a choice would take. The list is without the keyboard, where a native selection would be
  /// pale: the row is marked in the drawing.
  void Highlight(int row) {
    const int before = std::exchange(highlighted_, row);
    for (const int changed : {before, row})
      if (changed >= 0) AskList(LVM_REDRAWITEMS, static_cast<WPARAM>(changed), changed);
    if (row >= 0) AskList(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
  }
  int RowUnder(LPARAM point) const {
    LVHITTESTINFO hit{};
    hit.pt = {GET_X_LPARAM(point), GET_Y_LPARAM(point)};
    return static_cast<int>(AskList(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
  }

  std::optional<LRESULT> OnListMessage(const Message& m) {
    switch (m.id) {
      case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
        return 0;
      case WM_MOUSEMOVE:
        if (const int row = RowUnder(m.l); row >= 0 && row != highlighted_) Highlight(row);
        return std::nullopt;
      case WM_LBUTTONUP:
        if (const int row = RowUnder(m.l); row >= 0) combo_.Choose(static_cast<std::size_t>(row));
        return 0;
      default:
        return std::nullopt;
    }
  }

  std::optional<LRESULT> OnListNotify(const NMHDR& n) const {
    if (n.hwndFrom != list_) return std::nullopt;
    if (n.code == static_cast<UINT>(NM_CUSTOMDRAW)) {
      auto& draw = reinterpret_cast<NMLVCUSTOMDRAW&>(const_cast<NMHDR&>(n));
      if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
      if (static_cast<int>(draw.nmcd.dwItemSpec) == highlighted_) {
        draw.clrText = ::GetSysColor(COLOR_HIGHLIGHTTEXT);
        draw.clrTextBk = ::GetSysColor(COLOR_HIGHLIGHT);
      }
      return CDRF_NEWFONT;
    }
    if (n.code != static_cast<UINT>(LVN_GETDISPINFOW)) return std::nullopt;
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(const_cast<NMHDR&>(n)).item;
    if ((item.mask & LVIF_TEXT) && item.cchTextMax > 0)
      ::lstrcpynW(item.pszText, Wide(Cell(item.iItem, item.iSubItem)).c_str(), item.cchTextMax);
    return 0;
  }
  std::string Cell(int row, int column) const {
    const auto& rows = combo_.Rows();
    if (row < 0 || static_cast<std::size_t>(row) >= rows.size()) return {};
    const auto& cells = rows[static_cast<std::size_t>(row)];
    return column >= 0 && static_cast<std::size_t>(column) < cells.size()
               ? cells[static_cast<std::size_t>(column)]
               : std::string();
  }

  void MakePopup() {
    if (popup_) return;
    WindowPlan plan;
    plan.window_class = kPopupClass;
    plan.style = WS_POPUP | WS_BORDER | WS_CLIPCHILDREN;
    plan.extended = WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE;
    plan.parent = Parent().Window();
    popup_ = Parent().Factory().Create(plan);
    Adopt(popup_);
    WindowPlan inner;
    inner.window_class = WC_LISTVIEWW;
    inner.style = WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS |
                  LVS_NOSORTHEADER;
    inner.parent = popup_;
    list_ = Parent().Factory().Create(inner);
    Adopt(list_);
    AskList(WM_SETFONT, reinterpret_cast<WPARAM>(Parent().Font()), FALSE);
    AskList(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  }

  int ColumnWidth(std::size_t column) const {
    const auto measured = [&](const std::string& text) {
      return static_cast<int>(AskList(LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(Wide(text).c_str())));
    };
    int width = measured(combo_.Columns()[column]);
    const int rows = std::min(kRowsMeasured, static_cast<int>(combo_.Rows().size()));
    for (int row = 0; row < rows; ++row)
      width = std::max(width, measured(Cell(row, static_cast<int>(column))));
    return width + Parent().Pixels(Dip(16));
  }

  void Open() {
    MakePopup();
    while (AskList(LVM_DELETECOLUMN)) {
    }
    int width = Parent().Metric(SM_CXVSCROLL) + Parent().Pixels(Dip(4));
    for (std::size_t i = 0; i < combo_.Columns().size(); ++i) {
      std::wstring caption = Wide(combo_.Columns()[i]);
      LVCOLUMNW column{};
      column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
      column.pszText = caption.data();
      column.cx = ColumnWidth(i);
      column.iSubItem = static_cast<int>(i);
      width += column.cx;
      AskList(LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
    highlighted_ = -1;
    AskList(LVM_SETITEMCOUNT, combo_.Rows().size());
    PlacePopup(width);
    const auto& rows = combo_.Rows();
    const auto now = std::ranges::find_if(rows, [&](const std::vector<std::string>& row) {
      return combo_.Box() && !row.empty() && row.front() == combo_.Box()->Text();
    });
    Highlight(now == rows.end() ? -1 : static_cast<int>(now - rows.begin()));
    ::ShowWindow(popup_, SW_SHOWNA);
    Parent().SetDropped(this);
  }

  void PlacePopup(int width) {
    RECT field = NativeControl::Place();
    ::MapWindowPoints(Parent().Window(), nullptr, reinterpret_cast<POINT*>(&field), 2);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(::MonitorFromWindow(Parent().Window(), MONITOR_DEFAULTTONEAREST), &monitor);
    const int shown = std::clamp(static_cast<int>(combo_.Rows().size()), 1, kRowsShown);
    RECT header{}, row{};
    ::GetWindowRect(reinterpret_cast<HWND>(AskList(LVM_GETHEADER)), &header);
    row.left = LVIR_BOUNDS;
    AskList(LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
    const int height = static_cast<int>(header.bottom - header.top + shown * (row.bottom - row.top)) +
                       2 * Parent().Metric(SM_CYBORDER);
    width = std::clamp(width, static_cast<int>(field.right - field.left), Parent().Pixels(kMostWidth));
    const int left =
        std::max<int>(monitor.rcWork.left, std::min<int>(field.left, monitor.rcWork.right - width));
    const int top = field.bottom + height <= monitor.rcWork.bottom ? field.bottom : field.top - height;
    ::SetWindowPos(popup_, HWND_TOP, left, top, width, height, SWP_NOACTIVATE);
    RECT client;
    ::GetClientRect(popup_, &client);
    ::SetWindowPos(list_, nullptr, 0, 0, client.right, client.bottom, SWP_NOZORDER | SWP_NOACTIVATE);
  }

  void Close() {
    if (Parent().Dropped() == this) Parent().SetDropped(nullptr);
    if (popup_) ::ShowWindow(popup_, SW_HIDE);
  }

  MultiCombo& combo_;
  HWND popup_ = nullptr, list_ = nullptr;
  int highlighted_ = -1;
};

}  // namespace

std::unique_ptr<NativeControl> MultiComboPeerFor(NativeForm& form, MultiCombo& combo) {
  return std::make_unique<MultiComboPeer>(form, combo);
}

}  // namespace zuvi::native
