// The grid: a window of our own that draws what of the cells can be seen.
#include <algorithm>

#include "toolkit/win32/drawing.h"
#include "toolkit/win32/grid_paint.h"
#include "toolkit/win32/peers.h"

namespace zuvi::native {
namespace {

bool HighContrast() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof contrast;
  return ::SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON);
}

class GridPeer final : public NativeControl {
 public:
  GridPeer(NativeForm& form, FlexGrid& grid) : NativeControl(form, grid), grid_(grid) {}

  void Create() override {
    CreateWindowOf(kGridClass, WS_VSCROLL | WS_HSCROLL, 0, Wide(grid_.AccessibleName()));
    high_contrast_ = HighContrast();
    const UpdateGuard echo(*this);
    Flush();
  }

  void Update(Aspect aspect) override {
    switch (aspect) {
      case Aspect::Cell:
        Redraw();
        FlushLater();
        break;
      case Aspect::Items:
      case Aspect::Columns:
        FlushLater();
        break;
      case Aspect::State:
      case Aspect::Enabled:
        NativeControl::Update(aspect);
        Redraw();
        break;
      default:
        NativeControl::Update(aspect);
    }
  }

  void Restyle() override {
    NativeControl::Restyle();
    const UpdateGuard echo(*this);
    Flush();
  }

  /// Scroll bars as needed; the cells are drawn with the next painting.
  void Flush() override {
    // Setting a bar sends a size message, which asks for the same again.
    if (settling_ || !Window()) return;
    settling_ = true;
    const RECT place = Place();
    const int bar_width = Parent().Metric(SM_CXVSCROLL), bar_height = Parent().Metric(SM_CYHSCROLL);
    bool vertical = false, horizontal = false;
    for (int pass = 0; pass < 3; ++pass) {
      grid_.SetChrome(Parent().Twips(vertical ? bar_width : 0), Parent().Twips(horizontal ? bar_height : 0));
      const int room = place.right - place.left - (vertical ? bar_width : 0);
      vertical = vertical || grid_.Rows() - grid_.FixedRows() > grid_.VisibleRows();
      horizontal = horizontal || Parent().Pixels(WidthOf(0)) > room;
    }
    SetBar(SB_VERT, vertical, grid_.Rows() - grid_.FixedRows(), grid_.VisibleRows(),
           grid_.TopRow() - grid_.FixedRows());
    SetBar(SB_HORZ, horizontal, grid_.Cols() - grid_.FixedCols(), LastColumnsThatFit(),
           grid_.LeftCol() - grid_.FixedCols());
    settling_ = false;
    Redraw();
    TellCell();
  }

 protected:
  bool NativeEnabled() const override { return true; }
  bool FlushesToPaint() const override { return true; }
  void OwnKey(const Message& message, std::int16_t shift) override {
    grid_.DefaultKey(static_cast<std::int16_t>(message.w), shift);
    if (message.id == WM_SYSKEYDOWN) CallNative(message);
  }
  void OwnChar(const Message&) override {}

  std::optional<LRESULT> OnMessage(const Message& m) override {
    const Life alive = Alive();
    switch (m.id) {
      case WM_PAINT:
        Paint();
        return 0;
      case WM_ERASEBKGND:
        return 1;
      case WM_SIZE: {
        const UpdateGuard echo(*this);
        Flush();
        return 0;
      }
      case WM_SETFOCUS:
      case WM_KILLFOCUS:
        focused_ = m.id == WM_SETFOCUS;
        Redraw();
        return NativeControl::OnMessage(m);
      case WM_VSCROLL:
        grid_.SetTopRow(grid_.FixedRows() + Scrolled(SB_VERT, LOWORD(m.w)));
        return 0;
      case WM_HSCROLL:
        grid_.SetLeftCol(grid_.FixedCols() + Scrolled(SB_HORZ, LOWORD(m.w)));
        return 0;
      case WM_MOUSEWHEEL:
        Wheel(GET_WHEEL_DELTA_WPARAM(m.w));
        return 0;
      case WM_LBUTTONDOWN: {
        if (NativeControl::OnMessage(m) || !alive) return 0;
        const GridCell cell = Under(m.l);
        grid_.UserClicked(cell.row, cell.col);
        return 0;
      }
      case WM_LBUTTONUP:
        grid_.Click();
        return 0;
      case WM_LBUTTONDBLCLK:
        grid_.DblClick();
        return 0;
      case WM_SYSCOLORCHANGE:
      case WM_THEMECHANGED:
        high_contrast_ = HighContrast();
        Redraw();
        return 0;
      default:
        return NativeControl::OnMessage(m);
    }
  }

 private:
  void Redraw() { ::InvalidateRect(Window(), nullptr, FALSE); }

  GridCell Under(LPARAM point) const {
    return CellAt(grid_, Parent().Twips(GET_X_LPARAM(point)), Parent().Twips(GET_Y_LPARAM(point)));
  }

  /// Width the columns need, from `first` on.
  std::int32_t WidthOf(std::int32_t first) const {
    std::int32_t width = 0;
    for (std::int32_t col = first; col < grid_.Cols(); ++col) width += grid_.MinimumWidth(col);
    return width;
  }

  std::int32_t LastColumnsThatFit() const {
    RECT client;
    ::GetClientRect(Window(), &client);
    std::int32_t room = Parent().Twips(client.right);
    for (std::int32_t col = 0; col < grid_.FixedCols(); ++col) room -= grid_.MinimumWidth(col);
    std::int32_t count = 0;
    for (std::int32_t col = grid_.Cols() - 1; col >= grid_.FixedCols(); --col, ++count) {
      room -= grid_.MinimumWidth(col);
      if (room < 0) break;
    }
    return std::max(count, 1);
  }

  void SetBar(int bar, bool shown, int count, int page, int position) {
    ::ShowScrollBar(Window(), bar, shown);
    if (shown) SetScrollBar(Window(), bar, count, page, position);
  }

  int Scrolled(int bar, int how) const {
    const SCROLLINFO info = ScrollBarOf(Window(), bar);
    const int page = std::max(1, static_cast<int>(info.nPage));
    switch (how) {
      case SB_LINEUP:
        return std::max(0, info.nPos - 1);
      case SB_LINEDOWN:
        return std::min(info.nPos + 1, info.nMax - page + 1);
      case SB_PAGEUP:
        return std::max(0, info.nPos - page);
      case SB_PAGEDOWN:
        return std::min(info.nPos + page, info.nMax - page + 1);
      case SB_THUMBTRACK:
      case SB_THUMBPOSITION:
        return info.nTrackPos;
      case SB_TOP:
        return 0;
      case SB_BOTTOM:
        return info.nMax - page + 1;
      default:
        return info.nPos;
    }
  }

  void Wheel(int delta) {
    UINT lines = 3;
    ::SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    if (lines == WHEEL_PAGESCROLL) lines = static_cast<UINT>(grid_.VisibleRows());
    wheel_ += delta * static_cast<int>(lines);
    const int rows = wheel_ / WHEEL_DELTA;
    wheel_ -= rows * WHEEL_DELTA;
    if (rows != 0) grid_.SetTopRow(grid_.TopRow() - rows);
  }

  void Paint() {
    const Painting painting(Window());
    RECT client;
    ::GetClientRect(Window(), &client);
    const RECT& part = painting.Part();
    const UniqueGdi<HBITMAP> bitmap(::CreateCompatibleBitmap(painting.get(), std::max<int>(1, client.right),
                                                             std::max<int>(1, client.bottom)));
    const MemoryDc canvas(::CreateCompatibleDC(painting.get()));
    const Selected on(canvas.get(), bitmap.get()), written_in(canvas.get(), Parent().Font());
    PaintGrid(canvas.get(), client, part, grid_, {Parent(), focused_, high_contrast_});
    ::BitBlt(painting.get(), part.left, part.top, part.right - part.left, part.bottom - part.top,
             canvas.get(), part.left, part.top, SRCCOPY);
  }

  /// A screen reader hears what the current cell is and holds.
  void TellCell() {
    std::string told = grid_.AccessibleName();
    if (grid_.FixedRows() > 0 && grid_.Row() >= grid_.FixedRows())
      told +=
          ", " + std::to_string(grid_.Row()) + ", " + grid_.TextMatrix(0, grid_.Col()) + ": " + grid_.Text();
    if (told == told_) return;
    told_ = told;
    ::SetWindowTextW(Window(), Wide(told).c_str());
  }

  FlexGrid& grid_;
  std::string told_;
  bool focused_ = false, high_contrast_ = false, settling_ = false;
  int wheel_ = 0;
};

}  // namespace

std::unique_ptr<NativeControl> GridPeerFor(NativeForm& form, FlexGrid& grid) {
  return std::make_unique<GridPeer>(form, grid);
}

}  // namespace zuvi::native
