#include "base/date.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "base/error.h"
#include "base/text.h"

namespace zuvi {
namespace {

namespace ch = std::chrono;

constexpr double kSecondsPerDay = 86400.0;
constexpr ch::sys_days kEpoch{ch::year{1899} / 12 / 30};
constexpr double kFirst = -657434.0;  // 1-1-100
constexpr double kLast = 2958466.0;   // first day past 31-12-9999

int Digits(std::string_view text, std::size_t at, std::size_t count) {
  int result = 0;
  if (at + count > text.size()) throw HostError(ErrorNumber::TypeMismatch);
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') throw HostError(ErrorNumber::TypeMismatch);
    result = result * 10 + (c - '0');
  }
  return result;
}

ch::year_month_day Dia(const Date& fecha) {
  return kEpoch + ch::days{static_cast<int>(std::trunc(fecha.Serial()))};
}

Date DesdeDia(ch::sys_days dia) { return Date::FromSerial(static_cast<double>((dia - kEpoch).count())); }

}  // namespace

Date Date::FromSerial(double dias) {
  if (!(dias > kFirst - 1 && dias < kLast)) throw HostError(ErrorNumber::Overflow);
  return Date(dias);
}

Date Date::FromCivil(const CivilDate& c) {
  // The calendar's own types keep only the low byte of a month or a day.
  const bool day_ok = c.mes >= 1 && c.mes <= 12 && c.dia >= 1 && c.dia <= 31;
  const ch::year_month_day day{ch::year{c.anio}, ch::month{static_cast<unsigned>(c.mes)},
                               ch::day{static_cast<unsigned>(c.dia)}};
  const bool time_ok =
      c.hora >= 0 && c.hora < 24 && c.minuto >= 0 && c.minuto < 60 && c.segundo >= 0 && c.segundo < 60;
  if (c.anio < 100 || c.anio > 9999 || !day_ok || !day.ok() || !time_ok)
    throw HostError(ErrorNumber::TypeMismatch);
  const auto days = static_cast<double>((ch::sys_days{day} - kEpoch).count());
  const double time = (c.hora * 3600 + c.minuto * 60 + c.segundo) / kSecondsPerDay;
  // Before the epoch the fraction still counts forward from midnight while the whole part counts back.
  return Date(days < 0 ? days - time : days + time);
}

Date Date::FromText(std::string_view iso) {
  if (iso.size() < 10 || iso[4] != '-' || iso[7] != '-') throw HostError(ErrorNumber::TypeMismatch);
  CivilDate c{.anio = Digits(iso, 0, 4), .mes = Digits(iso, 5, 2), .dia = Digits(iso, 8, 2)};
  if (iso.size() > 10) {
    if ((iso[10] != ' ' && iso[10] != 'T') || iso.size() < 16 || iso[13] != ':')
      throw HostError(ErrorNumber::TypeMismatch);
    c.hora = Digits(iso, 11, 2);
    c.minuto = Digits(iso, 14, 2);
    if (iso.size() > 16) {
      const std::string_view fraction = iso.substr(std::min<std::size_t>(19, iso.size()));
      const bool fraction_ok =
          fraction.empty() || (fraction.size() > 1 && fraction[0] == '.' &&
                               fraction.find_first_not_of("0123456789", 1) == std::string_view::npos);
      if (iso[16] != ':' || !fraction_ok) throw HostError(ErrorNumber::TypeMismatch);
      c.segundo = Digits(iso, 17, 2);
    }
  }
  return FromCivil(c);
}

CivilDate Date::Civil() const {
  double days = std::trunc(dias_);
  double seconds = std::nearbyint(std::abs(dias_ - days) * kSecondsPerDay);
  if (seconds >= kSecondsPerDay && days + 1 >= kLast) {
    seconds = kSecondsPerDay - 1;
  } else if (seconds >= kSecondsPerDay) {
    seconds = 0;
    days += 1;
  }
  const ch::year_month_day day{kEpoch + ch::days{static_cast<int>(days)}};
  const int s = static_cast<int>(seconds);
  return {.anio = static_cast<int>(day.year()),
          .mes = static_cast<int>(static_cast<unsigned>(day.month())),
          .dia = static_cast<int>(static_cast<unsigned>(day.day())),
          .hora = s / 3600,
          .minuto = s / 60 % 60,
          .segundo = s % 60};
}

Date Date::DayOnly() const { return Date(std::trunc(dias_)); }

Date Date::PlusDays(std::int32_t dias) const { return FromSerial(dias_ + dias); }

Date Date::PlusMonths(std::int32_t meses) const {
  const ch::year_month_day desde = Dia(*this);
  const ch::year_month mes = desde.year() / desde.month() + ch::months{meses};
  return DesdeDia(mes / std::min(desde.day(), (mes / ch::last).day()));
}

Date Date::EndOfMonth() const {
  const ch::year_month_day dia = Dia(*this);
  return DesdeDia(dia.year() / dia.month() / ch::last);
}

std::string Date::Formatea(std::string_view patron) const {
  const CivilDate c = Civil();
  const struct {
    std::string_view mark;
    int value;
    std::size_t width;
  } fields[] = {{"yyyy", c.anio, 4}, {"dd", c.dia, 2},    {"MM", c.mes, 2},
                {"hh", c.hora, 2},   {"mm", c.minuto, 2}, {"ss", c.segundo, 2}};
  std::string out;
  while (!patron.empty()) {
    bool taken = false;
    for (const auto& field : fields) {
      if (!patron.starts_with(field.mark)) continue;
      out += ZeroPadded(field.value, field.width);
      patron.remove_prefix(field.mark.size());
      taken = true;
      break;
    }
    if (taken) continue;
    out += patron.front();
    patron.remove_prefix(1);
  }
  return out;
}

std::string Date::Texto() const {
  const bool has_time = dias_ != std::trunc(dias_);
  return Formatea(has_time ? "yyyy-MM-dd hh:mm:ss" : "yyyy-MM-dd");
}

}  // namespace zuvi
