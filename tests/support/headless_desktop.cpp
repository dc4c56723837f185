#include "tests/support/headless_desktop.h"

#include <algorithm>
#include <utility>

#include "base/clock.h"
#include "toolkit/form.h"
#include "toolkit/indicators.h"

namespace zuvi {

void HeadlessDesktop::ShowMessage(const std::string& text) noexcept {
  try {
    avisos_.push_back(text);
  } catch (...) {
    // Out of memory: what cannot be kept is lost, and whoever reports goes on.
  }
}

void HeadlessDesktop::PumpEvents() {
  if (events_.empty()) return;
  const auto event = std::move(events_.front());
  events_.pop_front();
  event();
}

void HeadlessDesktop::RunModal(Form& form, Form* owner) {
  const auto keep = form.Keep();
  running_.push_back({&form, owner && owner->Enabled() ? owner : nullptr});
  const Returning at_end{*this};
  if (owner) owner->SetEnabled(false);
  if (!modals_.empty()) {
    const auto visit = std::move(modals_.front());
    modals_.pop_front();
    visit(form);
  }
  if (form.Visible() && !form.Unload(UnloadMode::TitleBar)) form.Hide();
}

HeadlessDesktop::Returning::~Returning() {
  GiveBack(desktop.running_.back());
  desktop.running_.pop_back();
}

void HeadlessDesktop::GiveBack(Modal& modal) {
  if (Form* const owner = std::exchange(modal.owner, nullptr)) owner->SetEnabled(true);
}

void HeadlessDesktop::Gone(Form& form) {
  const auto modal = std::ranges::find(running_, &form, &Modal::form);
  // The newest one is about to return anyway.
  if (modal == running_.end() || modal + 1 == running_.end()) return;
  GiveBack(*modal);
  form.EndModal();
}

Date HeadlessDesktop::Now() const { return now_ ? *now_ : Date::FromCivil(Ahora()); }

void HeadlessDesktop::Advance(std::int32_t milliseconds) {
  while (milliseconds > 0) {
    // The timers that are next to fire, and how long until then.
    std::int32_t step = milliseconds;
    std::vector<std::shared_ptr<Timer>> running;
    for (const auto& form : Forms())
      for (const auto& control : form->Controls())
        if (auto timer = std::dynamic_pointer_cast<Timer>(control); timer && timer->Running()) {
          running.push_back(timer);
          step = std::min(step, std::max(1, timer->Interval() - timer->Elapsed()));
        }
    milliseconds -= step;
    for (const auto& timer : running) timer->SetElapsed(timer->Elapsed() + step);
    // A handler may stop another timer or start it anew: what is due is asked one by one.
    for (const auto& timer : running) {
      if (!timer->Running() || timer->Elapsed() < timer->Interval()) continue;
      timer->SetElapsed(0);
      timer->Tick();
    }
  }
}

}  // namespace zuvi
