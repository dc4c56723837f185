// Controls that hold a date.
#pragma once

#include "base/date.h"
#include "toolkit/control.h"

namespace zuvi {

/// A field for one date, without its time of day for the user; code may set one and reads it back.
class DatePicker final : public Control {
 public:
  using Control::Control;
  const Date& Value() const { return value_; }
  /// Raises Change when it differs.
  void SetValue(const Date& value);
  /// The user picked a day.
  void UserPicked(const Date& day);
  std::function<void()> OnChange;
  /// Up and down arrow move a day.
  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  bool WantsKey(std::int16_t key) const override { return key == key::kUp || key == key::kDown; }
  Extent MinimumSize(const TextMeasure& texts) const override;
  const MemberTable* Members() const override;

 private:
  Date value_;
};

/// A month's calendar with one chosen day.
class MonthView final : public Control {
 public:
  using Control::Control;
  const Date& Value() const { return value_; }
  void SetValue(const Date& value);
  /// The user clicked a day, or moved there by keyboard: raises DateClick.
  void UserClicked(const Date& day);
  std::function<void(const Date& day)> OnDateClick;
  /// Arrows move by days and weeks.
  void DefaultKey(std::int16_t key, std::int16_t shift) override;
  bool WantsKey(std::int16_t key) const override { return key >= key::kPageUp && key <= key::kDown; }
  Extent MinimumSize(const TextMeasure& texts) const override;
  const MemberTable* Members() const override;

 private:
  Date value_;
};

}  // namespace zuvi
