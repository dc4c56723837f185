#include "toolkit/dates.h"

#include "toolkit/text_measure.h"

namespace zuvi {
namespace {

/// Where `moved` leads from a day; the day itself where the calendar ends.
template <class Move>
Date Within(const Date& date, Move moved) {
  try {
    return moved(date.DayOnly());
  } catch (const HostError&) {
    return date.DayOnly();
  }
}

Date DaysFrom(const Date& date, int days) {
  return Within(date, [days](const Date& day) { return day.PlusDays(days); });
}

Date MonthsFrom(const Date& date, int months) {
  return Within(date, [months](const Date& day) { return day.PlusMonths(months); });
}

}  // namespace

void DatePicker::SetValue(const Date& value) {
  if (value == value_) return;
  value_ = value;
  Changed(Aspect::Value);
  Raise(OnChange);
}

void DatePicker::UserPicked(const Date& day) {
  // Without another day picked, a time of day that code has set stays.
  if (!(day.DayOnly() == value_.DayOnly())) SetValue(day.DayOnly());
}

void DatePicker::DefaultKey(std::int16_t key, std::int16_t /*shift*/) {
  if (key == key::kUp) UserPicked(DaysFrom(value_, 1));
  if (key == key::kDown) UserPicked(DaysFrom(value_, -1));
}

Extent DatePicker::MinimumSize(const TextMeasure& texts) const {
  return {texts.Width("00/00/0000") + Dip(36), texts.BoxHeight()};
}

const MemberTable* DatePicker::Members() const {
  using T = DatePicker;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>().Property<&T::Value, &T::SetValue>("Value").AsDefault());
  return &table;
}

void MonthView::SetValue(const Date& value) {
  if (value == value_) return;
  value_ = value;
  Changed(Aspect::Value);
}

void MonthView::UserClicked(const Date& day) {
  const Date clicked = day.DayOnly();
  SetValue(clicked);
  Raise(OnDateClick, clicked);
}

void MonthView::DefaultKey(std::int16_t key, std::int16_t /*shift*/) {
  switch (key) {
    case key::kLeft:
      return UserClicked(DaysFrom(value_, -1));
    case key::kRight:
      return UserClicked(DaysFrom(value_, 1));
    case key::kUp:
      return UserClicked(DaysFrom(value_, -7));
    case key::kDown:
      return UserClicked(DaysFrom(value_, 7));
    case key::kPageUp:
      return UserClicked(MonthsFrom(value_, -1));
    case key::kPageDown:
      return UserClicked(MonthsFrom(value_, 1));
    case key::kHome:
      return UserClicked(DaysFrom(value_, 1 - value_.Civil().dia));
    case key::kEnd:
      return UserClicked(value_.EndOfMonth());
    default:
      return;
  }
}

Extent MonthView::MinimumSize(const TextMeasure& texts) const {
  // Seven days; the month, the names of the days, six weeks and today.
  return {7 * (texts.Width("00") + Dip(12)) + Dip(8), 9 * (texts.LineHeight() + Dip(2)) + Dip(8)};
}

const MemberTable* MonthView::Members() const {
  using T = MonthView;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>().Property<&T::Value, &T::SetValue>("Value").AsDefault());
  return &table;
}

}  // namespace zuvi
