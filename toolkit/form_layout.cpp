// Where the controls of a window lie: their design, what their texts need, and the client area there is.
#include <algorithm>
#include <utility>

#include "toolkit/form.h"
#include "toolkit/indicators.h"

namespace zuvi {

void Form::DesignClientSize(std::int32_t width, std::int32_t height) {
  design_width_ = width;
  design_height_ = height;
  across_ = Axis(width);
  down_ = Axis(height);
  SetClientSize(width, height);
}

void Form::SetClientSize(std::int32_t width, std::int32_t height) {
  client_width_ = width;
  client_height_ = height;
  if (peer_) peer_->Update(Aspect::Bounds);
  LayOut();
}

bool Form::FollowsItsSize() const {
  return std::ranges::any_of(controls_, [](const std::shared_ptr<Control>& control) {
    return control->Enabled() && dynamic_cast<const AutoResizer*>(control.get());
  });
}

void Form::LayOut() {
  const bool follows = FollowsItsSize();
  if (!follows && !texts_) return;
  const std::int32_t dx = follows ? client_width_ - DesignWidth() : 0,
                     dy = follows ? client_height_ - DesignHeight() : 0;
  if (!texts_ && (dx < 0 || dy < 0)) Measure();
  const Axis across = across_.Squeezed(-dx), down = down_.Squeezed(-dy);
  content_ = {across.Length() + std::max(dx, 0), down.Length() + std::max(dy, 0)};
  for (const auto& control : controls_) {
    // What code has moved since belongs to it: an editor over a cell stays there.
    if (control->Bounds() != control->laid_out_) continue;
    const Rect& design = control->DesignBounds();
    Rect place{across.At(design.left), down.At(design.top), 0, 0};
    place.width = across.At(design.left + design.width) - place.left;
    place.height = down.At(design.top + design.height) - place.top;
    control->laid_out_ = Anchored(place, control->Anchors(), std::max(dx, 0), std::max(dy, 0));
    control->Move(control->laid_out_);
  }
}

void Form::FitTo(std::shared_ptr<const TextMeasure> texts) {
  texts_ = std::move(texts);
  for (const auto& control : controls_) control->FitTo(*texts_);
  Fit();
}

void Form::Fit() {
  if (!texts_ || closed_) return;
  // What the user has made it larger by stays; whole pixels of another scale do not count as that.
  const auto larger = [](std::int32_t inside, std::int32_t design) {
    return inside - design > Dip(2) ? inside - design : 0;
  };
  const std::int32_t more_width = larger(client_width_, DesignWidth()),
                     more_height = larger(client_height_, DesignHeight());
  Measure();
  client_width_ = DesignWidth() + more_width;
  client_height_ = DesignHeight() + more_height;
  LayOut();
}

void Form::Redesign() {
  if (!texts_ || closed_) return;
  const Extent before = content_;
  Measure();
  LayOut();
  if (content_ != before && peer_) peer_->Update(Aspect::Content);
}

void Form::Measure() {
  std::vector<AxisSpan> across, down;
  for (const auto& control : controls_) {
    const Rect& place = control->DesignBounds();
    // What is hidden has no room of its own: it may lie under what is shown.
    if (!control->Visible() || place.width <= 0 || place.height <= 0) continue;
    Extent needs = texts_ ? control->MinimumSize(*texts_) : Extent{};
    if (const Peer* const peer = control->NativeSide()) {
      const Extent native = peer->MinimumSize();
      needs = {std::max(needs.width, native.width), std::max(needs.height, native.height)};
    }
    const auto span = [&](std::int32_t from, std::int32_t extent, std::int32_t need, unsigned edges) {
      const bool stretches = (control->Anchors() & edges) == edges;
      const std::int32_t least = control->Scrolls() ? kMinimumStretched
                                 : stretches        ? std::max(need, kMinimumStretched)
                                                    : std::max(need, extent);
      return AxisSpan{from, extent, need, least};
    };
    across.push_back(span(place.left, place.width, needs.width, anchor::kLeft | anchor::kRight));
    down.push_back(span(place.top, place.height, needs.height, anchor::kTop | anchor::kBottom));
  }
  across_ = Axis(design_width_, std::move(across));
  down_ = Axis(design_height_, std::move(down));
}

void Form::Resized(std::int32_t width, std::int32_t height) {
  if (width == client_width_ && height == client_height_) return;
  const auto keep = Keep();
  client_width_ = width;
  client_height_ = height;
  LayOut();
  Form_Resize();
}

}  // namespace zuvi
