#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "toolkit/desktop.h"

namespace zuvi {

/// A desktop without a screen: it keeps what would have been shown, runs scripted events when windows let
/// events run, and its clock moves when told to. For tests and for the command line.
class HeadlessDesktop final : public Desktop {
 public:
  void ShowMessage(const std::string& text) noexcept override;
  void PumpEvents() override;
  /// Runs the next scripted visit of a modal window; without one, or when it is still open afterwards, the
  /// window is closed as a user who walks away would.
  void RunModal(Form& form, Form* owner) override;
  /// This station's clock, unless it was set.
  Date Now() const override;

  const std::vector<std::string>& Avisos() const { return avisos_; }
  void Olvida() { avisos_.clear(); }
  void SetNow(const Date& now) { now_ = now; }
  /// Runs at the next `PumpEvents`, in the order given, one per pump.
  void Post(std::function<void()> event) { events_.push_back(std::move(event)); }
  /// What the user does in the next modal window.
  void OnModal(std::function<void(Form&)> visit) { modals_.push_back(std::move(visit)); }
  /// Lets time pass: timers of loaded windows that fall due run in their order.
  void Advance(std::int32_t milliseconds);

 protected:
  /// A modal window that others keep from returning ends all the same.
  void Gone(Form& form) override;

 private:
  struct Modal {
    Form* form;
    Form* owner;  // until it takes input again
  };
  /// The end of the newest modal window's run, whichever way that ends.
  struct Returning {
    ~Returning();
    HeadlessDesktop& desktop;
  };
  static void GiveBack(Modal& modal);

  std::vector<Modal> running_;  // the modal windows, the one opened last at the end
  std::vector<std::string> avisos_;
  std::deque<std::function<void()>> events_;
  std::deque<std::function<void(Form&)>> modals_;
  std::optional<Date> now_;
};

}  // namespace zuvi
