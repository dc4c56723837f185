// The list of rows: SysListView32 that asks the model for the texts it draws.
#include <algorithm>
#include <utility>

#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

class ListPeer final : public NativeControl {
 public:
  ListPeer(NativeForm& form, ListView& list) : NativeControl(form, list), list_(list) {}

  void Create() override {
    CreateWindowOf(WC_LISTVIEWW, LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | ViewStyle(),
                   WS_EX_CLIENTEDGE, Wide(list_.AccessibleName()));
    constexpr LPARAM kStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, kStyle);
    const UpdateGuard echo(*this);
    MakeColumns();
    Flush();
  }

  void Update(Aspect aspect) override {
    switch (aspect) {
      case Aspect::Items:
        refilled_ = true;
        FlushLater();
        break;
      case Aspect::Selection:
        // What the user has selected is shown already.
        if (shown_ != Wanted()) FlushLater();
        break;
      case Aspect::Columns: {
        const UpdateGuard echo(*this);
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
    const UpdateGuard echo(*this);
    MakeColumns();
  }

  void Flush() override {
    refilled_ = false;
    Send(LVM_SETITEMCOUNT, static_cast<WPARAM>(list_.Items().Count()),
         LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    ::InvalidateRect(Window(), nullptr, FALSE);
    ShareWidth();
    const int wanted = shown_ = Wanted();
    if (wanted == Next(LVNI_SELECTED)) return;
    SetState(-1, LVIS_SELECTED, 0);
    // All at once there is none that keeps the mark of the keyboard in every version of the control.
    if (const int marked = Next(LVNI_FOCUSED); marked >= 0) SetState(marked, LVIS_FOCUSED, 0);
    if (wanted < 0) return;
    SetState(wanted, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(wanted), FALSE);
  }

  LRESULT OnNotify(const NMHDR& n) override {
    switch (n.code) {
      case LVN_GETDISPINFOW:
        GiveText(reinterpret_cast<NMLVDISPINFOW&>(const_cast<NMHDR&>(n)).item);
        return 0;
      case LVN_ITEMCHANGED:
      case LVN_ODSTATECHANGED:
        return Noted(moved_);
      case LVN_ODFINDITEMW:
        return FindText(reinterpret_cast<const NMLVFINDITEMW&>(n));
      case static_cast<UINT>(NM_CLICK):
        return Noted(clicked_);
      case static_cast<UINT>(NM_DBLCLK):
        return Noted(double_clicked_);
      default:
        return 0;
    }
  }

 protected:
  std::optional<LRESULT> OnMessage(const Message& message) override {
    if (message.id == WM_SIZE) {
      const Life alive = Alive();
      const LRESULT result = CallNative(message);
      if (alive && !Updating()) InNative() ? FlushLater() : ShareWidth();
      return result;
    }
    if (message.id == WM_NOTIFY && OpensFirst(*reinterpret_cast<const NMHDR*>(message.l))) return TRUE;
    const bool press = Watch(message);
    const Life alive = Alive();
    const auto result = NativeControl::OnMessage(message);
    if (!result && alive && press) FlushNow();
    return result;
  }
  // Handlers that came first may have changed rows: the control acts on what there is now.
  void OwnKey(const Message& message, std::int16_t shift) override {
    FlushNow();
    NativeControl::OwnKey(message, shift);
  }
  void OwnChar(const Message& message) override {
    FlushNow();
    NativeControl::OwnChar(message);
  }
  bool Busy() const override {
    return pressed_ && (::GetKeyState(VK_LBUTTON) < 0 || ::GetKeyState(VK_RBUTTON) < 0);
  }
  /// In which order, how often and in the middle of what the control tells of one and the same click differs
  /// with its version; what is selected in the end does not.
  void AfterMessage() override {
    const Life alive = Alive();
    // All together, because asking the control is a message to it.
    const bool moved = std::exchange(moved_, false), clicked = std::exchange(clicked_, false),
               double_clicked = std::exchange(double_clicked_, false);
    // The row may have gone while the control was at work: then nobody acts on the one in its place, nor on
    // the one before.
    if (moved) lost_ = refilled_;
    const bool lost = lost_;
    if (moved && !lost) Follow();
    if (alive && clicked && !lost) list_.Click();
    if (alive && double_clicked && !lost) list_.DblClick();
  }

 private:
  DWORD ViewStyle() const {
    constexpr DWORD kStyles[] = {LVS_ICON, LVS_SMALLICON, LVS_LIST, LVS_REPORT};
    return kStyles[std::clamp<std::int16_t>(list_.View(), 0, 3)];
  }
  /// Notes something that the control tells, until it has finished.
  LRESULT Noted(bool& what) {
    if (Updating()) return 0;
    what = true;
    if (!InNative()) ::PostMessageW(Window(), WM_NULL, 0, 0);
    return 0;
  }
  void Follow() {
    const int now = Next(LVNI_SELECTED);
    // Told once more of the same, what a handler has decided since stands.
    if (now == std::exchange(shown_, now)) return;
    if (now >= 0)
      list_.UserSelected(now + 1);
    else if (list_.SelectedItem())
      FlushLater();  // a click beside the rows takes the native selection away, not the model's
  }
  /// The row that the model has selected; -1 for none.
  int Wanted() const { return list_.SelectedItem() ? list_.SelectedItem()->Index() - 1 : -1; }
  /// Follows whether a button that went down here is still held: the control may wait for it to come up. True
  /// when it goes down now.
  bool Watch(const Message& message) {
    switch (message.id) {
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
      case WM_RBUTTONDOWN:
      case WM_RBUTTONDBLCLK:
        lost_ = false;
        return pressed_ = true;
      case WM_MOUSEMOVE:
        if (!(message.w & (MK_LBUTTON | MK_RBUTTON))) pressed_ = false;
        return false;
      case WM_LBUTTONUP:
      case WM_RBUTTONUP:
      case WM_CANCELMODE:
      case WM_KILLFOCUS:
        pressed_ = false;
        return false;
      default:
        return false;
    }
  }
  /// The first row in a state; -1 for none.
  int Next(LPARAM state) const {
    return static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), state));
  }
  void SetState(int item, UINT mask, UINT state) {
    LVITEMW what{};
    what.state = state;
    what.stateMask = mask;
    SendPtr(LVM_SETITEMSTATE, static_cast<WPARAM>(item), &what);
  }

  /// What the heading asks before the column without width gets one, by mouse or by keyboard.
  bool OpensFirst(const NMHDR& n) const {
    const bool asks =
        n.code == static_cast<UINT>(HDN_ITEMCHANGINGW) || n.code == static_cast<UINT>(HDN_ITEMCHANGINGA) ||
        n.code == static_cast<UINT>(HDN_BEGINTRACKW) || n.code == static_cast<UINT>(HDN_BEGINTRACKA);
    return asks && !Updating() && reinterpret_cast<const NMHEADERW&>(n).iItem < first_;
  }
  int ColumnCount() const { return Header_GetItemCount(reinterpret_cast<HWND>(Send(LVM_GETHEADER))); }
  void InsertColumn(int at, std::wstring caption, int format, int width) {
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM | LVCF_FMT;
    column.fmt = format;
    column.pszText = caption.data();
    column.cx = width;
    column.iSubItem = at;
    SendPtr(LVM_INSERTCOLUMNW, static_cast<WPARAM>(at), &column);
  }
  void MakeColumns() {
    for (int last = ColumnCount() - 1; last >= 0; --last) Send(LVM_DELETECOLUMN, static_cast<WPARAM>(last));
    std::vector<ListColumn> columns = list_.Columns().All();
    if (columns.empty()) columns.emplace_back();
    // The first place is aligned to the left, whatever one asks for. There stands a column without width
    // then; and where the control does not part with its last one.
    if (ColumnCount() == 0 && columns.front().right_aligned) InsertColumn(0, {}, LVCFMT_LEFT, 0);
    first_ = ColumnCount();
    if (first_ > 0) Send(LVM_SETCOLUMNWIDTH, 0, 0);
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_LABELTIP, first_ > 0 ? 0 : LVS_EX_LABELTIP);
    for (std::size_t i = 0; i < columns.size(); ++i)
      InsertColumn(first_ + static_cast<int>(i), Wide(columns[i].caption),
                   columns[i].right_aligned ? LVCFMT_RIGHT : LVCFMT_LEFT, Parent().Pixels(columns[i].width));
    shared_ = -1;
    ShareWidth();
  }

  /// Columns without a width of their own share what the others leave. Those that the user has dragged stay
  /// as they are until the columns are made anew.
  void ShareWidth() {
    RECT client;
    ::GetClientRect(Window(), &client);
    if (client.right == shared_) return;
    const bool anew = std::exchange(shared_, client.right) < 0;
    const UpdateGuard echo(*this);
    const auto count = static_cast<std::size_t>(std::max(1, list_.Columns().Count()));
    if (anew) given_.assign(count, 0);
    int dragged = 0;
    for (std::size_t i = 0; i < count && !anew; ++i) dragged += ColumnWidth(i) - given_[i];
    const std::int32_t room = Parent().Twips(client.right - dragged);
    const std::vector<std::int32_t> widths =
        list_.Columns().Count() > 0 ? list_.ColumnWidths(room) : std::vector{room};
    std::int32_t right = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const int left = Parent().Pixels(right), width = Parent().Pixels(right += widths[i]) - left;
      if (!anew && ColumnWidth(i) != given_[i]) continue;
      Send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(first_) + i, width);
      given_[i] = ColumnWidth(i);
    }
  }
  int ColumnWidth(std::size_t i) const {
    return static_cast<int>(Send(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(first_) + i));
  }

  void GiveText(LVITEMW& item) const {
    if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0) return;
    // What is in no column, though nobody sees it, is what the row is called.
    const auto column = static_cast<std::size_t>(std::max(0, item.iSubItem - first_));
    const std::wstring text = Wide(list_.Cell(item.iItem + 1, column));
    ::lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
  }

  LRESULT FindText(const NMLVFINDITEMW& find) const {
    if (!(find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !find.lvfi.psz) return -1;
    const std::wstring typed = find.lvfi.psz;
    const bool whole = (find.lvfi.flags & LVFI_PARTIAL) == 0;
    const std::int32_t count = list_.Items().Count(), start = std::max(0, find.iStart);
    for (std::int32_t i = 0; i < count; ++i) {
      const std::int32_t at = (start + i) % count;
      std::wstring text = Wide(list_.Cell(at + 1, 0));
      if (!whole) text.resize(std::min(text.size(), typed.size()));
      if (::CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, text.c_str(), -1, typed.c_str(), -1) ==
          CSTR_EQUAL)
        return at;
    }
    return -1;
  }

  ListView& list_;
  int first_ = 0;  // place of the first column in the native control
  bool moved_ = false, clicked_ = false,
       double_clicked_ = false;  // told, and not subclassed by the model yet
  int shown_ = -1;               // row selected in the control, as far as it has told
  bool refilled_ = false;        // the control does not have the model's rows yet
  bool lost_ = false;            // what was selected last was a row that had gone
  bool pressed_ = false;
  LONG shared_ = -1;        // client width that the columns were made for
  std::vector<int> given_;  // width of each column, unless the user drags it
};

}  // namespace

std::unique_ptr<NativeControl> ListPeerFor(NativeForm& form, ListView& list) {
  return std::make_unique<ListPeer>(form, list);
}

}  // namespace zuvi::native
