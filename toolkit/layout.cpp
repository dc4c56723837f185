#include "toolkit/layout.h"

#include <algorithm>
#include <utility>

namespace zuvi {
namespace {

/// Distances between controls stay as they are: only what is longer is stretched or squeezed.
constexpr std::int32_t kLongestGap = Dip(24);

}  // namespace

Axis::Axis(std::int32_t length, std::vector<AxisSpan> spans) : length_(length), spans_(std::move(spans)) {
  edges_ = {0, length};
  for (const AxisSpan& span : spans_) edges_.insert(edges_.end(), {span.from, span.from + span.extent});
  std::ranges::sort(edges_);
  edges_.erase(std::ranges::unique(edges_).begin(), edges_.end());
  places_ = edges_;
  // The shortest first: what they gain, those that span them need not.
  std::ranges::stable_sort(spans_, {}, &AxisSpan::extent);
  for (const AxisSpan& span : spans_)
    if (span.extent > 0) Stretch(IndexOf(span.from), IndexOf(span.from + span.extent), span.need);
}

void Axis::Stretch(std::size_t from, std::size_t to, std::int32_t need) {
  const std::int64_t more = need - (places_[to] - places_[from]);
  if (more <= 0) return;
  // In proportion, but for the distances between controls.
  const auto weight = [&](std::size_t i) -> std::int64_t {
    const std::int32_t length = places_[i] - places_[i - 1];
    return length > kLongestGap ? length : 0;
  };
  std::int64_t all = 0, seen = 0;
  for (std::size_t i = from + 1; i <= to; ++i) all += weight(i);
  std::vector<std::int64_t> shifts(places_.size(), more);
  for (std::size_t i = 0; i < to; ++i) {
    if (i > from) seen += weight(i);
    shifts[i] = all > 0 ? more * seen / all : 0;
  }
  for (std::size_t i = 0; i < places_.size(); ++i) places_[i] += static_cast<std::int32_t>(shifts[i]);
}

std::size_t Axis::IndexOf(std::int32_t designed) const {
  return static_cast<std::size_t>(std::ranges::lower_bound(edges_, designed) - edges_.begin());
}

std::int32_t Axis::At(std::int32_t designed) const {
  const std::size_t i = IndexOf(designed);
  if (i == edges_.size()) return places_.back() + designed - edges_.back();
  if (i == 0 || edges_[i] == designed) return places_[i] + designed - edges_[i];
  // No edge of a control that is shown: as far from the one before as it was.
  return std::min(places_[i - 1] + designed - edges_[i - 1], places_[i]);
}

Axis Axis::Squeezed(std::int32_t by) const {
  Axis squeezed = *this;
  if (by <= 0) return squeezed;
  std::vector<std::int64_t> spare(edges_.size(), 0);
  std::int64_t all = 0;
  for (std::size_t i = 1; i < edges_.size(); ++i) {
    const std::int64_t length = places_[i] - places_[i - 1];
    if (length <= kLongestGap) continue;
    bool covered = false;
    std::int64_t gives = length;
    for (const AxisSpan& span : spans_) {
      if (span.from >= edges_[i] || span.from + span.extent <= edges_[i - 1]) continue;
      const std::int64_t size = At(span.from + span.extent) - At(span.from);
      gives = std::min(
          gives, length * std::max<std::int64_t>(0, size - span.least) / std::max<std::int64_t>(1, size));
      covered = true;
    }
    if (covered) all += spare[i] = gives;
  }
  // Shared out in proportion, so that of several lists none disappears before the others.
  const std::int64_t taken = std::min<std::int64_t>(by, all);
  std::int64_t seen = 0;
  for (std::size_t i = 1; i < edges_.size(); ++i) {
    seen += spare[i];
    if (all > 0) squeezed.places_[i] -= static_cast<std::int32_t>(seen * taken / all);
  }
  return squeezed;
}

}  // namespace zuvi
