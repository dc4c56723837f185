#include "toolkit/indicators.h"

#include <algorithm>

#include "toolkit/form.h"
#include "toolkit/plain_html.h"

namespace zuvi {

void ProgressBar::SetMin(double min) {
  min_ = min;
  max_ = std::max(max_, min_);
  Changed(Aspect::State);
  SetValue(value_);
}

void ProgressBar::SetMax(double max) {
  max_ = max;
  min_ = std::min(min_, max_);
  Changed(Aspect::State);
  SetValue(value_);
}

void ProgressBar::SetValue(double value) {
  // Written so that a value that is no number becomes the least.
  const double within = value > min_ ? std::min(value, max_) : min_;
  if (within == value_) return;
  value_ = within;
  Changed(Aspect::Value);
}

const MemberTable* ProgressBar::Members() const {
  using T = ProgressBar;
  static const MemberTable table = WithControlMembers(MemberTable::Of<T>()
                                                          .Property<&T::Value, &T::SetValue>("Value")
                                                          .AsDefault()
                                                          .Property<&T::Min, &T::SetMin>("Min")
                                                          .Property<&T::Max, &T::SetMax>("Max"));
  return &table;
}

Timer::Timer(Form& form, std::string name, std::int16_t index) : Control(form, std::move(name), index) {
  SetTabStop(false);
}

void Timer::SetInterval(std::int32_t milliseconds) {
  if (milliseconds < 0) throw HostError(ErrorNumber::InvalidCall);
  interval_ = milliseconds;
  elapsed_ = 0;
  Changed(Aspect::State);
}

void Timer::SetEnabled(bool enabled) {
  elapsed_ = 0;
  Control::SetEnabled(enabled);
  Changed(Aspect::State);
}

void Timer::Tick() {
  if (Running() && Window() && Window()->Loaded()) Raise(OnTimer);
}

const MemberTable* Timer::Members() const {
  using T = Timer;
  static const MemberTable table = WithControlMembers(
      MemberTable::Of<T>().Property<&T::Interval, &T::SetInterval>("Interval").AsDefault());
  return &table;
}

void AutoResizer::SetEnabled(bool enabled) {
  Control::SetEnabled(enabled);
  // The window may have been resized meanwhile.
  if (enabled && Window()) Window()->SetClientSize(Window()->ClientWidth(), Window()->ClientHeight());
}

const MemberTable* AutoResizer::Members() const {
  static const MemberTable table = WithControlMembers({});
  return &table;
}

void WebBrowser::Navigate(std::string url) {
  url_ = std::move(url);
  html_.clear();
  Changed(Aspect::State);
}

void WebBrowser::SetHtml(std::string html) {
  html_ = std::move(html);
  Changed(Aspect::State);
}

std::string WebBrowser::PlainText() const { return PlainTextOfHtml(html_); }

const MemberTable* WebBrowser::Members() const {
  using T = WebBrowser;
  static const MemberTable table = WithControlMembers(MemberTable::Of<T>()
                                                          .Property<&T::LocationURL>("LocationURL")
                                                          .AsDefault()
                                                          .Property<&T::Html, &T::SetHtml>("Html")
                                                          .Property<&T::PlainText>("PlainText")
                                                          .Method<&T::Navigate>("Navigate", {"url"}));
  return &table;
}

}  // namespace zuvi
