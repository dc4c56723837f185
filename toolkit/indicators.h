// Controls the user does not operate: progress bar, timer, the resizing helper, the page viewer.
#pragma once

#include "toolkit/control.h"

namespace zuvi {

/// A bar from Min to Max. A value outside is brought within.
class ProgressBar final : public Control {
 public:
  using Control::Control;
  double Min() const { return min_; }
  double Max() const { return max_; }
  double Value() const { return value_; }
  void SetMin(double min);
  void SetMax(double max);
  void SetValue(double value);
  bool TakesFocus() const override { return false; }
  const MemberTable* Members() const override;

 private:
  double min_ = 0, max_ = 100, value_ = 0;
};

/// Raises an event every `Interval` milliseconds while enabled; an interval of 0 keeps it still.
class Timer final : public Control {
 public:
  Timer(Form& form, std::string name, std::int16_t index);
  std::int32_t Interval() const { return interval_; }
  void SetInterval(std::int32_t milliseconds);
  /// Switching it starts the interval anew.
  void SetEnabled(bool enabled) override;
  bool Running() const { return Enabled() && interval_ > 0; }
  std::function<void()> OnTimer;
  /// The interval has passed.
  void Tick();
  /// Milliseconds passed since it started or last fired, where no native timer counts them.
  std::int32_t Elapsed() const { return elapsed_; }
  void SetElapsed(std::int32_t milliseconds) { elapsed_ = milliseconds; }
  bool TakesFocus() const override { return false; }
  const MemberTable* Members() const override;

 private:
  std::int32_t interval_ = 0, elapsed_ = 0;
};

/// While enabled, the controls of its window follow the window's size by their anchors.
class AutoResizer final : public Control {
 public:
  using Control::Control;
  void SetEnabled(bool enabled) override;
  bool TakesFocus() const override { return false; }
  const MemberTable* Members() const override;
};

/// Shows a page. A host hands it an address or the page itself.
class WebBrowser final : public Control {
 public:
  using Control::Control;
  const std::string& LocationURL() const { return url_; }
  /// Shows an address; the page handed over before is dropped.
  void Navigate(std::string url);
  /// The page as HTML text, where the host gives it so.
  const std::string& Html() const { return html_; }
  void SetHtml(std::string html);
  /// The page as plain text: what is shown where there is no browser engine, and read out by screen readers.
  std::string PlainText() const;
  bool Scrolls() const override { return true; }
  const MemberTable* Members() const override;

 private:
  std::string url_, html_;
};

}  // namespace zuvi
