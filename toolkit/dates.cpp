#include "toolkit/dates.h"

#include <algorithm>

#include "toolkit/text_measure.h"

namespace zuvi {
namespace {

/// So many days on, without the time of day; the same day where the calendar ends.
Fecha DaysFrom(const Fecha& date, int days) {
  try {
    return Fecha::DesdeSerie(date.SoloDia().Serie() + days);
  } catch (const HostError&) {
    return date.SoloDia();
  }
}

int DaysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : kDays[month - 1];
}

/// The same day of another month, or its last where that has no such day.
Fecha MonthsFrom(const Fecha& date, int months) {
  const FechaCivil from = date.Civil();
  const int count = from.anio * 12 + (from.mes - 1) + months;
  FechaCivil to;
  to.anio = count / 12;
  to.mes = count % 12 + 1;
  to.dia = std::min(from.dia, DaysInMonth(to.anio, to.mes));
  try {
    return Fecha::DesdeCivil(to);
  } catch (const HostError&) {
    return date.SoloDia();
  }
}

}  // namespace

void DatePicker::SetValue(const Fecha& value) {
  if (value == value_) return;
  value_ = value;
  Changed(Aspect::Value);
  Raise(OnChange);
}

void DatePicker::UserPicked(const Fecha& day) {
  // Without another day picked, a time of day that code has set stays.
  if (!(day.SoloDia() == value_.SoloDia())) SetValue(day.SoloDia());
}

void DatePicker::DefaultKey(std::int16_t key, std::int16_t /*shift*/) {
  if (key == key::kUp) UserPicked(DaysFrom(value_, 1));
  if (key == key::kDown) UserPicked(DaysFrom(value_, -1));
}

Extent DatePicker::Needs(const TextMeasure& texts) const {
  return {texts.Width("00/00/0000") + Dip(36), texts.BoxHeight()};
}

const MemberTable* DatePicker::Members() const {
  using T = DatePicker;
  static const MemberTable table =
      WithControlMembers(MemberTable::Of<T>().Property<&T::Value, &T::SetValue>("Value").AsDefault());
  return &table;
}

void MonthView::SetValue(const Fecha& value) {
  if (value == value_) return;
  value_ = value;
  Changed(Aspect::Value);
}

void MonthView::UserClicked(const Fecha& day) {
  const Fecha clicked = day.SoloDia();
  SetValue(clicked);
  Raise(OnDateClick, clicked);
}

void MonthView::DefaultKey(std::int16_t key, std::int16_t /*shift*/) {
  const FechaCivil now = value_.Civil();
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
      return UserClicked(DaysFrom(value_, 1 - now.dia));
    case key::kEnd:
      return UserClicked(DaysFrom(value_, DaysInMonth(now.anio, now.mes) - now.dia));
    default:
      return;
  }
}

Extent MonthView::Needs(const TextMeasure& texts) const {
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
