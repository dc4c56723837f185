// Where a window and its controls lie on the screen: at first, at another size, in another font or scale.
#include <algorithm>
#include <utility>

#include "toolkit/win32/native_control.h"
#include "toolkit/win32/native_form.h"

namespace zuvi::native {

RECT NativeForm::FrameOf(int width, int height) const {
  RECT frame{0, 0, width, height};
  Factory().AddFrame(frame, style_, extended_, dpi_);
  return frame;
}

RECT NativeForm::FirstPlace(int nth) const {
  const HWND front = ::GetForegroundWindow();
  const RECT area = WindowFactory::WorkArea(front);
  const RECT frame = FrameOf(Pixels(form_.ClientWidth()), Pixels(form_.ClientHeight()));
  const LONG width = std::min(frame.right - frame.left, area.right - area.left);
  const LONG height = std::min(frame.bottom - frame.top, area.bottom - area.top);
  const LONG step = nth * Metric(SM_CYCAPTION);
  const auto placed = [step](LONG from, LONG to, LONG extent) {
    const LONG centred = from + (to - from - extent) / 2;
    return std::clamp(centred + step % std::max<LONG>(1, to - extent - centred + 1), from,
                      std::max(from, to - extent));
  };
  RECT place{};
  place.left = placed(area.left, area.right, width);
  place.top = placed(area.top, area.bottom, height);
  place.right = place.left + width;
  place.bottom = place.top + height;
  return place;
}

void NativeForm::FitNative() {
  for (const auto& control : form_.Controls()) {
    const Peer* const peer = control->NativeSide();
    const Extent needs = peer ? peer->MinimumSize() : Extent{};
    if (needs.width > control->Width() || needs.height > control->Height()) return form_.Fit();
  }
}

void NativeForm::Place(NativeControl& control) {
  if (sizing_) {
    moved_.push_back(&control);
    return;
  }
  const RECT r = control.Place();
  ::SetWindowPos(control.Window(), nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void NativeForm::OnSize(WPARAM kind, int width, int height) {
  if (showing_ || scroll_.Showing()) return;
  if (kind == SIZE_MINIMIZED) {
    form_.SetState(WindowState::Minimized);
    return;
  }
  form_.SetState(kind == SIZE_MAXIMIZED ? WindowState::Maximized : WindowState::Normal);
  if (width == Pixels(form_.ClientWidth()) && height == Pixels(form_.ClientHeight())) return;
  LayOutWithBars();
}

void NativeForm::LayOutWithBars() {
  const auto life = life_;
  scroll_.Hide();
  LayOut();
  // A bar takes room, for which something may give way, or the other bar be needed.
  while (life->peer && scroll_.Show()) LayOut();
}

void NativeForm::LayOut() {
  const auto life = life_;
  RECT client;
  ::GetClientRect(Window(), &client);
  // Controls move together at the end.
  sizing_ = true;
  form_.Resized(Twips(client.right), Twips(client.bottom));
  if (!life->peer) return;
  sizing_ = false;
  const std::vector<NativeControl*> moved = std::exchange(moved_, {});
  HDWP together = ::BeginDeferWindowPos(static_cast<int>(moved.size()));
  for (NativeControl* control : moved) {
    if (!control->Window()) continue;
    const RECT r = control->Place();
    if (together)
      together = ::DeferWindowPos(together, control->Window(), nullptr, r.left, r.top, r.right - r.left,
                                  r.bottom - r.top, SWP_NOZORDER | SWP_NOACTIVATE);
  }
  if (together) ::EndDeferWindowPos(together);
}

void NativeForm::OnNewScale(UINT dpi, const RECT& place) {
  const auto life = life_;
  Dismiss();
  dpi_ = dpi;
  ::SetWindowPos(Window(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  if (life->peer) Rescale();
}

void NativeForm::Rescale() {
  const auto life = life_;
  // The controls hold the old ones until they have the new.
  const auto before = texts_;
  MakeFonts();
  for (const auto& control : form_.Controls()) {
    if (!life->peer) return;
    if (auto* peer = static_cast<NativeControl*>(control->NativeSide())) peer->Restyle();
  }
  form_.FitTo(texts_);
  if (!life->peer) return;
  PutOnScreen();
  ScaleToolTips();
  // What code has placed follows as it does when the user changes the size.
  if (life->peer) form_.Form_Resize();
  if (life->peer) ::RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void NativeForm::PutOnScreen() {
  RECT now;
  ::GetWindowRect(Window(), &now);
  if (::IsIconic(Window())) return;
  const auto life = life_;
  if (!::IsZoomed(Window())) {
    const RECT frame = FrameOf(Pixels(form_.ClientWidth()), Pixels(form_.ClientHeight()));
    const RECT area = WindowFactory::WorkArea(Window());
    const LONG width = std::min(frame.right - frame.left, area.right - area.left);
    const LONG height = std::min(frame.bottom - frame.top, area.bottom - area.top);
    ::SetWindowPos(Window(), nullptr, std::max(area.left, std::min(now.left, area.right - width)),
                   std::max(area.top, std::min(now.top, area.bottom - height)), width, height,
                   SWP_NOZORDER | SWP_NOACTIVATE);
  }
  // On a screen without room for all of it, and where it fills the screen, it has another client area than it
  // wants.
  RECT client;
  if (!life->peer || !::GetClientRect(Window(), &client)) return;
  OnSize(::IsZoomed(Window()) ? SIZE_MAXIMIZED : SIZE_RESTORED, client.right, client.bottom);
}

void NativeForm::SmallestSize(MINMAXINFO& info) const {
  const RECT frame = FrameOf(Pixels(form_.DesignWidth()), Pixels(form_.DesignHeight()));
  const RECT area = WindowFactory::WorkArea(Window());
  info.ptMinTrackSize = {std::min(frame.right - frame.left, area.right - area.left),
                         std::min(frame.bottom - frame.top, area.bottom - area.top)};
}

}  // namespace zuvi::native
