#include "toolkit/win32/form_scroll.h"

#include <algorithm>

#include "toolkit/win32/native_control.h"
#include "toolkit/win32/native_form.h"

namespace zuvi::native {
namespace {

SIZE ClientSizeOf(HWND window) {
  RECT client{};
  ::GetClientRect(window, &client);
  return {client.right, client.bottom};
}

}  // namespace

void SetScrollBar(HWND window, int bar, int content, int page, int position) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = content - 1;
  info.nPage = static_cast<UINT>(page);
  info.nPos = position;
  ::SetScrollInfo(window, bar, &info, TRUE);
}

SCROLLINFO ScrollBarOf(HWND window, int bar) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  ::GetScrollInfo(window, bar, &info);
  return info;
}

POINT FormScroll::Farthest() const {
  const Extent& content = form_.Model().Content();
  const SIZE client = ClientSizeOf(form_.Window());
  return {std::max<LONG>(0, form_.Pixels(content.width) - client.cx),
          std::max<LONG>(0, form_.Pixels(content.height) - client.cy)};
}

void FormScroll::Switch(int bar, bool shown) {
  showing_ = true;
  ::ShowScrollBar(form_.Window(), bar, shown);
  showing_ = false;
}

void FormScroll::Hide() {
  if (::GetWindowLongPtrW(form_.Window(), GWL_STYLE) & (WS_HSCROLL | WS_VSCROLL)) Switch(SB_BOTH, false);
}

bool FormScroll::Show() {
  const LONG_PTR style = ::GetWindowLongPtrW(form_.Window(), GWL_STYLE);
  const POINT farthest = Farthest();
  const bool across = farthest.x > 0 && !(style & WS_HSCROLL), down = farthest.y > 0 && !(style & WS_VSCROLL);
  if (across) Switch(SB_HORZ, true);
  if (down) Switch(SB_VERT, true);
  MoveTo(at_);
  return across || down;
}

void FormScroll::MoveTo(POINT at) {
  const HWND window = form_.Window();
  const POINT farthest = Farthest();
  at = {std::clamp(at.x, LONG{0}, farthest.x), std::clamp(at.y, LONG{0}, farthest.y)};
  const SIZE client = ClientSizeOf(window);
  // Only of bars that are shown: setting one would show it, and with it change the client area.
  const auto shown = [&](LONG_PTR bar) { return (::GetWindowLongPtrW(window, GWL_STYLE) & bar) != 0; };
  if (farthest.x > 0 && shown(WS_HSCROLL))
    SetScrollBar(window, SB_HORZ, static_cast<int>(client.cx + farthest.x), client.cx, at.x);
  if (farthest.y > 0 && shown(WS_VSCROLL))
    SetScrollBar(window, SB_VERT, static_cast<int>(client.cy + farthest.y), client.cy, at.y);
  if (at.x == at_.x && at.y == at_.y) return;
  at_ = at;
  for (const auto& control : form_.Model().Controls())
    if (auto* const peer = static_cast<NativeControl*>(control->NativeSide()); peer && peer->Window())
      form_.Place(*peer);
  ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void FormScroll::Turn(int bar, int how) {
  const SCROLLINFO info = ScrollBarOf(form_.Window(), bar);
  const int line = form_.Pixels(Dip(24)), page = std::max(line, static_cast<int>(info.nPage) - line);
  POINT to = at_;
  LONG& along = bar == SB_HORZ ? to.x : to.y;
  switch (how) {
    case SB_LINEUP:
      along -= line;
      break;
    case SB_LINEDOWN:
      along += line;
      break;
    case SB_PAGEUP:
      along -= page;
      break;
    case SB_PAGEDOWN:
      along += page;
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      along = info.nTrackPos;
      break;
    case SB_TOP:
      along = 0;
      break;
    case SB_BOTTOM:
      along = info.nMax;
      break;
    default:
      return;
  }
  MoveTo(to);
}

void FormScroll::Wheel(int delta) {
  MoveTo({at_.x, at_.y - ::MulDiv(delta, form_.Pixels(Dip(72)), WHEEL_DELTA)});
}

void FormScroll::Reveal(const RECT& place) {
  const POINT farthest = Farthest();
  if (farthest.x == 0 && farthest.y == 0) return;
  const SIZE client = ClientSizeOf(form_.Window());
  // Of what does not fit the near edge counts.
  const auto moved = [](LONG at, LONG from, LONG to, LONG room) {
    if (from >= 0 && to <= room) return at;
    return from < 0 || to - from > room ? at + from : at + to - room;
  };
  MoveTo(
      {moved(at_.x, place.left, place.right, client.cx), moved(at_.y, place.top, place.bottom, client.cy)});
}

}  // namespace zuvi::native
