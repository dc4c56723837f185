// The list of rows: SysListView32 that asks the model for the texts it draws.
#include <algorithm>

#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

class ListPeer final : public NativeControl {
 public:
  ListPeer(NativeForm& form, ListView& list) : NativeControl(form, list), list_(list) {}

  void Create() override {
    CreateWindowOf(WC_LISTVIEWW, LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | ViewStyle(),
                   WS_EX_CLIENTEDGE, Wide(list_.AccessibleName()));
    constexpr LPARAM kStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, kStyle);
    const Echo echo(*this);
    MakeColumns();
    Flush();
  }

  void Update(Aspect aspect) override {
    switch (aspect) {
      case Aspect::Items:
      case Aspect::Selection:
        FlushLater();
        break;
      case Aspect::Columns: {
        const Echo echo(*this);
        MakeColumns();
        break;
      }
      case Aspect::State: {
        const LONG_PTR style = ::GetWindowLongPtrW(Window(), GWL_STYLE);
        ::SetWindowLongPtrW(
            Window(), GWL_STYLE,
            (style & ~static_cast<LONG_PTR>(LVS_TYPEMASK)) | static_cast<LONG_PTR>(ViewStyle()));
        NativeControl::Update(aspect);
        break;
      }
      default:
        NativeControl::Update(aspect);
    }
  }

  void Restyle() override {
    NativeControl::Restyle();
    MakeColumns();
  }

  void Flush() override {
    Send(LVM_SETITEMCOUNT, static_cast<WPARAM>(list_.Items().Count()),
         LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    ::InvalidateRect(Window(), nullptr, FALSE);
    ShareWidth();
    const int wanted = list_.SelectedItem() ? list_.SelectedItem()->Index() - 1 : -1;
    if (wanted == Selected()) return;
    SetState(-1, 0);
    if (wanted < 0) return;
    SetState(wanted, LVIS_SELECTED | LVIS_FOCUSED);
    Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(wanted), FALSE);
  }

  LRESULT OnNotify(const NMHDR& n) override {
    switch (n.code) {
      case LVN_GETDISPINFOW:
        GiveText(reinterpret_cast<NMLVDISPINFOW&>(const_cast<NMHDR&>(n)).item);
        return 0;
      case LVN_ITEMCHANGED:
        if (!Updating()) Moved(reinterpret_cast<const NMLISTVIEW&>(n));
        return 0;
      case LVN_ODFINDITEMW:
        return FindText(reinterpret_cast<const NMLVFINDITEMW&>(n));
      case static_cast<UINT>(NM_CLICK):
        // A click beside the rows takes the native selection away, not the model's.
        FlushLater();
        list_.Click();
        return 0;
      case static_cast<UINT>(NM_DBLCLK):
        list_.DblClick();
        return 0;
      default:
        return 0;
    }
  }

 protected:
  std::optional<LRESULT> OnMessage(const Message& message) override {
    if (message.id == WM_SIZE) {
      const Life alive = Alive();
      const LRESULT result = Native(message);
      if (alive && !Updating()) ShareWidth();
      return result;
    }
    return NativeControl::OnMessage(message);
  }

 private:
  DWORD ViewStyle() const {
    constexpr DWORD kStyles[] = {LVS_ICON, LVS_SMALLICON, LVS_LIST, LVS_REPORT};
    return kStyles[std::clamp<std::int16_t>(list_.View(), 0, 3)];
  }
  int Selected() const {
    return static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
  }
  void SetState(int item, UINT state) {
    LVITEMW what{};
    what.state = state;
    what.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendPtr(LVM_SETITEMSTATE, static_cast<WPARAM>(item), &what);
  }

  void MakeColumns() {
    while (Send(LVM_DELETECOLUMN, 0)) {
    }
    std::vector<ListColumn> columns = list_.Columns().All();
    if (columns.empty()) columns.emplace_back();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      std::wstring caption = Wide(columns[i].caption);
      LVCOLUMNW column{};
      column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM | LVCF_FMT;
      column.fmt = columns[i].right_aligned ? LVCFMT_RIGHT : LVCFMT_LEFT;
      column.pszText = caption.data();
      column.cx = Parent().Pixels(columns[i].width);
      column.iSubItem = static_cast<int>(i);
      SendPtr(LVM_INSERTCOLUMNW, i, &column);
    }
    shared_ = -1;
    ShareWidth();
  }

  /// Columns without a width of their own share what the others leave.
  void ShareWidth() {
    RECT inside;
    ::GetClientRect(Window(), &inside);
    if (inside.right == shared_) return;
    shared_ = inside.right;
    const Echo echo(*this);
    if (list_.Columns().Count() == 0) {
      Send(LVM_SETCOLUMNWIDTH, 0, inside.right);
      return;
    }
    std::int32_t right = 0;
    for (std::size_t i = 0; const std::int32_t width : list_.ColumnWidths(Parent().Twips(inside.right))) {
      const int left = Parent().Pixels(right);
      Send(LVM_SETCOLUMNWIDTH, i++, Parent().Pixels(right += width) - left);
    }
  }

  void GiveText(LVITEMW& item) const {
    if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0) return;
    const std::wstring text = Wide(list_.Cell(item.iItem + 1, static_cast<std::size_t>(item.iSubItem)));
    ::lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
  }

  void Moved(const NMLISTVIEW& change) {
    const bool selected = (change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED);
    if (selected && change.iItem >= 0)
      list_.UserSelected(change.iItem + 1);
    else
      FlushLater();
  }

  LRESULT FindText(const NMLVFINDITEMW& find) const {
    if (!(find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !find.lvfi.psz) return -1;
    const std::wstring typed = find.lvfi.psz;
    const std::int32_t count = list_.Items().Count();
    for (std::int32_t i = 0; i < count; ++i) {
      const std::int32_t at = (find.iStart + i) % count;
      const std::wstring text = Wide(list_.Cell(at + 1, 0)).substr(0, typed.size());
      if (::CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text.c_str(), -1, typed.c_str(), -1) ==
          CSTR_EQUAL)
        return at;
    }
    return -1;
  }

  ListView& list_;
  LONG shared_ = -1;  // width of the inside that the columns were made for
};

}  // namespace

std::unique_ptr<NativeControl> ListPeerFor(NativeForm& form, ListView& list) {
  return std::make_unique<ListPeer>(form, list);
}

}  // namespace zuvi::native
